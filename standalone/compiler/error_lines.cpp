#include "standalone/compiler/error_lines.h"

#include "model/step_reference.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include <limits>

namespace standalone {

namespace {

QString placeWords(const char* source)
{
    return QCoreApplication::translate("standalone::errorLine", source);
}

/// A name as a part of one line.
QString shown(const std::string& name)
{
    QString text = QString::fromStdString(name);
    for (QChar& character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

QString placeText(const codegen::CodePlace& place)
{
    const QString sequence = shown(place.owner.sequence);
    if (place.owner.step.empty() && place.owner.stepId.empty())
        return placeWords("出错位置: 序列“%1”").arg(sequence);
    const QString step =
        placeWords("出错步骤: 序列“%1”, 步骤“%2”").arg(sequence, shown(place.owner.step));
    if (place.text.empty())
        return step;
    const QString part = step + QStringLiteral(", ") + QString::fromStdString(place.text);
    return place.line > 0 ? part + placeWords("第 %1 行").arg(place.line) : part;
}

QString withReference(const codegen::CodePlace& place, const QString& line)
{
    if (place.owner.sequenceId.empty())
        return line;
    return withStepReference(line, QString::fromStdString(place.owner.sequenceId),
                             QString::fromStdString(place.owner.stepId));
}

/// Lines of "file:line:column: error: words", where the word depends on the language that the
/// compiler speaks; what led into a header; and what a linker misses in an object.
const QRegularExpression& errorPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:(.+?):(\\d+):(?:\\d+:)? +(?:(?:fatal )?(?:error|错误)(?::|：) ?(.*)"
                       "|required from here|从这里需要)"
                       "|.*?([^ :\n]+\\.cpp):\\(\\.text.*?\\): (undefined reference .*))$"),
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption);
    return pattern;
}

constexpr int MostLines = 200; // of them only some are told

} // namespace

codegen::CodePlace unitPlace(const codegen::GeneratedCode& code, const QString& fileName)
{
    // The last line of a unit is the sequence's own.
    codegen::CodePlace place =
        codegen::placeOf(code, fileName.toStdString(), std::numeric_limits<int>::max());
    place.owner.step.clear();
    place.owner.stepId.clear();
    return place;
}

QString errorLine(const codegen::CodePlace& place, const QString& words)
{
    if (place.owner.sequence.empty())
        return words;
    return withReference(place, placeText(place) + QStringLiteral(": ") + words);
}

QString warningLine(const codegen::CodePlace& place, const QString& words)
{
    const QString text = placeWords("警告: 序列“%1”, 步骤“%2”: ");
    return withReference(place,
                         text.arg(shown(place.owner.sequence), shown(place.owner.step)) + words);
}

QStringList errorLines(const QByteArray& compilerOutput, const codegen::GeneratedCode& code)
{
    QStringList lines;
    codegen::CodePlace origin; // of what is being instantiated
    auto matches = errorPattern().globalMatch(QString::fromUtf8(compilerOutput));
    while (matches.hasNext() && lines.size() < MostLines) {
        const QRegularExpressionMatch match = matches.next();
        const bool isLink = !match.captured(4).isEmpty();
        const QString file = QFileInfo(match.captured(isLink ? 4 : 1)).fileName();
        codegen::CodePlace place =
            isLink ? unitPlace(code, file)
                   : codegen::placeOf(code, file.toStdString(), match.captured(2).toInt());
        if (!isLink && match.capturedStart(3) < 0) {
            if (!place.owner.sequence.empty())
                origin = place;
            continue;
        }
        if (place.owner.sequence.empty())
            place = origin;
        origin = codegen::CodePlace();
        if (place.owner.sequence.empty())
            continue;
        const QString line = errorLine(place, match.captured(isLink ? 5 : 3).trimmed());
        if (!lines.contains(line))
            lines << line;
    }
    return lines;
}

} // namespace standalone
