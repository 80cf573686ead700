#include "standalone/compiler/error_location.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

namespace standalone {

namespace {

const codegen::LineRange* ownerOf(const codegen::GeneratedCode& code, const QString& fileName,
                                  int line)
{
    const std::string name = fileName.toStdString();
    const codegen::LineRange* owner = nullptr;
    for (const codegen::LineRange& range : code.lines) {
        if (range.firstLine <= line && code.files[range.file].name == name &&
            (!owner || owner->firstLine <= range.firstLine))
            owner = &range;
    }
    return owner;
}

} // namespace

QString errorLocation(const QByteArray& compilerOutput, const codegen::GeneratedCode& code)
{
    // The word depends on the language that the compiler speaks.
    static const QRegularExpression errorLine(
        QStringLiteral("^(.+?):(\\d+):(?:\\d+:)? (?:fatal )?(?:error|错误)(?::|：)"),
        QRegularExpression::MultilineOption);
    auto matches = errorLine.globalMatch(QString::fromUtf8(compilerOutput));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const int line = match.captured(2).toInt();
        const auto* owner = ownerOf(code, QFileInfo(match.captured(1)).fileName(), line);
        if (!owner || owner->sequence.empty())
            continue;
        const QString sequence = QString::fromStdString(owner->sequence);
        if (owner->step.empty())
            return QCoreApplication::translate("standalone::errorLocation",
                                               "出错位置: 序列“%1” (第 %2 行)")
                .arg(sequence, QString::number(line));
        return QCoreApplication::translate("standalone::errorLocation",
                                           "出错步骤: 序列“%1”, 步骤“%2” (第 %3 行)")
            .arg(sequence, QString::fromStdString(owner->step), QString::number(line));
    }
    return QString();
}

} // namespace standalone
