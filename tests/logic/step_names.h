#pragma once

#include "model/step_kinds.h"

#include <QHash>
#include <QString>

/// The names by which trees of text call the kinds of steps.
namespace step_names {

struct Kind
{
    int baseType = NoBlock;
    int stepType = step_type::None;
    bool takesChildren = false;
};

/// Ends the test program for a name that is none: the tree of text is wrong.
inline Kind kindOf(const QString& name)
{
    using namespace step_type;
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("初始流程"), {InitialFlow, None, true}},
        {QStringLiteral("主流程"), {MainFlow, None, true}},
        {QStringLiteral("if"), {BasicStep, If, true}},
        {QStringLiteral("else if"), {BasicStep, ElseIf, true}},
        {QStringLiteral("else"), {BasicStep, Else, true}},
        {QStringLiteral("endif"), {BasicStep, EndIf}},
        {QStringLiteral("for"), {BasicStep, For, true}},
        {QStringLiteral("endfor"), {BasicStep, EndFor}},
        {QStringLiteral("while"), {BasicStep, While, true}},
        {QStringLiteral("endwhile"), {BasicStep, EndWhile}},
        {QStringLiteral("do while"), {BasicStep, DoWhile, true}},
        {QStringLiteral("end dowhile"), {BasicStep, EndDoWhile}},
        {QStringLiteral("break"), {BasicStep, Break}},
        {QStringLiteral("continue"), {BasicStep, Continue}},
        {QStringLiteral("语句"), {BasicStep, Statement}},
        {QStringLiteral("延时"), {BasicStep, Delay}},
        {QStringLiteral("分组"), {BasicStep, Custom, true}},
        // Diagnostic steps bear the numbers of basic ones.
        {QStringLiteral("诊断 1"), {DiagnosticStep, If}},
        {QStringLiteral("诊断 3"), {DiagnosticStep, ElseIf}},
        {QStringLiteral("诊断 4"), {DiagnosticStep, EndIf}},
        {QStringLiteral("诊断 5"), {DiagnosticStep, For, true}}};
    const Kind kind = kinds.value(name);
    if (kind.baseType == NoBlock)
        qFatal("no kind is called %s", qPrintable(name));
    return kind;
}

/// The name of what closes @p opener; empty if it opens nothing.
inline QString closerOf(const QString& opener)
{
    static const QHash<QString, QString> closers{
        {QStringLiteral("if"), QStringLiteral("endif")},
        {QStringLiteral("for"), QStringLiteral("endfor")},
        {QStringLiteral("while"), QStringLiteral("endwhile")},
        {QStringLiteral("do while"), QStringLiteral("end dowhile")}};
    return closers.value(opener);
}

} // namespace step_names
