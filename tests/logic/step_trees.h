#pragma once

#include "logic/rows/logic_roles.h"
#include "model/step_kinds.h"
#include "tests/support/text.h"

#include <QHash>
#include <QStandardItemModel>
#include <QString>
#include <QStringList>

#include <vector>

/// Trees of steps as one line of text: "a for[b- break] endfor" is a plain step, a loop with a
/// disabled step and a break in it, and the loop's end. The three flows are separated by " | "; a
/// line without is the main flow alone. A step is "-" disabled, "~" partly enabled; the state of a
/// flow stands before its steps, as "~:". ">" stands before the step or the ":" of the flow that a
/// test is about, "*" before one that is dragged there. A name that is no kind of its own is a
/// plain step's.
namespace step_trees {

struct Kind
{
    int baseType = BasicStep;
    int stepType = step_type::Delay;
    bool takesChildren = false;
};

inline const QHash<QString, Kind>& kinds()
{
    using namespace step_type;
    static const QHash<QString, Kind> kinds{{QStringLiteral("初始流程"), {InitialFlow, None, true}},
                                            {QStringLiteral("主流程"), {MainFlow, None, true}},
                                            {QStringLiteral("结束流程"), {EndFlow, None, true}},
                                            {QStringLiteral("if"), {BasicStep, If, true}},
                                            {QStringLiteral("elseif"), {BasicStep, ElseIf, true}},
                                            {QStringLiteral("else"), {BasicStep, Else, true}},
                                            {QStringLiteral("endif"), {BasicStep, EndIf}},
                                            {QStringLiteral("for"), {BasicStep, For, true}},
                                            {QStringLiteral("endfor"), {BasicStep, EndFor}},
                                            {QStringLiteral("while"), {BasicStep, While, true}},
                                            {QStringLiteral("endwhile"), {BasicStep, EndWhile}},
                                            {QStringLiteral("dowhile"), {BasicStep, DoWhile, true}},
                                            {QStringLiteral("enddowhile"), {BasicStep, EndDoWhile}},
                                            {QStringLiteral("break"), {BasicStep, Break}},
                                            {QStringLiteral("continue"), {BasicStep, Continue}},
                                            {QStringLiteral("goto"), {BasicStep, Goto}},
                                            {QStringLiteral("statement"), {BasicStep, Statement}},
                                            {QStringLiteral("group"), {BasicStep, Custom, true}},
                                            // Diagnostic steps bear the numbers of basic ones.
                                            {QStringLiteral("uds1"), {DiagnosticStep, If}},
                                            {QStringLiteral("uds3"), {DiagnosticStep, ElseIf}},
                                            {QStringLiteral("uds4"), {DiagnosticStep, EndIf}},
                                            {QStringLiteral("uds5"), {DiagnosticStep, For, true}}};
    return kinds;
}

/// The name of what closes @p opener; empty if it opens nothing.
inline QString closerOf(const QString& opener)
{
    const QString closer = QLatin1String("end") + opener;
    return kinds().contains(closer) ? closer : QString();
}

struct Step
{
    QString name;
    Qt::CheckState state = Qt::Checked;
    bool isMarked = false;
    bool isDragged = false;
    std::vector<Step> children = {};
};

/// Takes a step from the beginning of @p line. Ends the test program for a line that is none.
inline Step takeStep(QString& line)
{
    Step step;
    const auto takes = [&line](char mark) {
        const bool is = line.startsWith(QLatin1Char(mark));
        line.remove(0, is);
        return is;
    };
    step.isDragged = takes('*');
    step.isMarked = takes('>');
    while (!line.isEmpty() && !text("-~:[] ").contains(line[0])) {
        step.name += line[0];
        line.remove(0, 1);
    }
    if (takes('-'))
        step.state = Qt::Unchecked;
    else if (takes('~'))
        step.state = Qt::PartiallyChecked;
    if (step.name.isEmpty() && !line.startsWith(QLatin1Char(':')))
        qFatal("no step: %s", qPrintable(line));
    if (takes('[')) {
        while (!takes(']')) {
            step.children.push_back(takeStep(line));
            takes(' ');
        }
    }
    return step;
}

/// The flows that a line writes down, with their steps.
inline std::vector<Step> parse(const QString& line)
{
    QStringList parts = line.split(QLatin1Char('|'));
    if (parts.size() == 1)
        parts.prepend(QString());
    const QString names[] = {text("初始流程"), text("主流程"), text("结束流程")};
    std::vector<Step> flows;
    for (int i = line.contains(QLatin1Char('|')) ? 0 : 1; i < parts.size(); ++i) {
        QString rest = parts[i].trimmed();
        Step flow;
        if (rest.section(QLatin1Char(' '), 0, 0).endsWith(QLatin1Char(':'))) {
            flow = takeStep(rest);
            rest = rest.mid(1).trimmed();
        }
        flow.name = names[i];
        for (; !rest.isEmpty(); rest = rest.trimmed())
            flow.children.push_back(takeStep(rest));
        flows.push_back(flow);
    }
    return flows;
}

inline QString printMark(const QStandardItem* row)
{
    const QVariant state = row->data(Qt::CheckStateRole);
    return state.isValid() && state != Qt::Checked ? text(state == Qt::Unchecked ? "-" : "~")
                                                   : QString();
}

inline QString printChildren(const QStandardItem* row)
{
    QStringList steps;
    for (int i = 0; i < row->rowCount(); ++i) {
        const QStandardItem* child = row->child(i);
        const QString children = printChildren(child);
        steps.append(
            child->text().remove(QLatin1Char(' ')) + printMark(child) +
            (children.isEmpty() ? QString() : QLatin1Char('[') + children + QLatin1Char(']')));
    }
    return steps.join(QLatin1Char(' '));
}

/// A model of the edit tree as such a line, without marks of the test.
inline QString print(const QStandardItemModel& model)
{
    QStringList flows;
    for (int i = 0; i < model.rowCount(); ++i) {
        const QString mark = printMark(model.item(i));
        flows.append((mark.isEmpty() ? QString() : mark + QLatin1String(": ")) +
                     printChildren(model.item(i)));
    }
    return flows.join(QLatin1String(" | "));
}

/// Rows with the types and boxes that a line writes down, and no blocks.
template <class Model> struct RowsOf
{
    template <class... Arguments>
    explicit RowsOf(const char* line, Arguments... arguments) : model(arguments...)
    {
        for (const Step& flow : parse(text(line)))
            model.appendRow(makeRow(flow));
    }
    QStandardItem* makeRow(const Step& step)
    {
        auto* row = new QStandardItem(step.name);
        const Kind kind = kinds().value(step.name);
        row->setData(kind.baseType, logic_roles::BaseType);
        row->setData(kind.stepType, logic_roles::StepType);
        row->setData(text("row %1").arg(++made), logic_roles::BlockUuid);
        row->setDropEnabled(kind.takesChildren);
        row->setCheckState(step.state);
        for (const Step& child : step.children)
            row->appendRow(makeRow(child));
        if (step.isMarked)
            marked = row;
        if (step.isDragged)
            dragged = row;
        return row;
    }

    Model model;
    QStandardItem* marked = nullptr;
    QStandardItem* dragged = nullptr;
    int made = 0;
};

using Rows = RowsOf<QStandardItemModel>;

} // namespace step_trees
