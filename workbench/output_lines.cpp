#include "workbench/output_lines.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

using Kind = OutputLine::Kind;

QString paneText(const char* source)
{
    return QCoreApplication::translate("OutputPane", source);
}

OutputLine lineOf(const QString& text)
{
    if (text.endsWith(u']')) {
        if (const auto reference = stepReference(text))
            return {reference->text, reference->sequenceId, reference->stepId, Kind::Plain};
    }
    return {text, QString(), QString(), Kind::Plain};
}

/// "words:" with indented lines behind it.
void foldLists(QVector<OutputLine>& lines)
{
    for (int i = 0; i + 1 < lines.size(); ++i) {
        if (!lines[i].text.endsWith(u':') || lines[i].text.startsWith(u' ') ||
            !lines[i].target.isEmpty())
            continue;
        int end = i + 1;
        for (; end < lines.size() && lines[end].text.startsWith(QLatin1String("  ")); ++end)
            lines[end].kind = Kind::Detail;
        if (end > i + 1)
            lines[i].kind = Kind::Heading;
        i = end - 1;
    }
}

/// From behind the errors with places to the line that says how long it took.
void foldCompilerWords(QVector<OutputLine>& lines)
{
    const auto leads = [](const OutputLine& line) { return !line.target.isEmpty(); };
    const auto errors = std::find_if(lines.begin(), lines.end(), leads);
    const auto words = std::find_if_not(errors, lines.end(), leads);
    const QString duration = QCoreApplication::translate("LogicMaster", "编译用时");
    const auto end = std::find_if(words, lines.end(), [&duration](const OutputLine& line) {
        return line.text.startsWith(duration);
    });
    if (errors == lines.end() || end == lines.end() || words == end)
        return;
    std::for_each(words, end, [](OutputLine& line) { line.kind = Kind::Detail; });
    const int count = int(end - words);
    lines.insert(words, {paneText("编译器的原文 (%1 行):").arg(count), {}, {}, Kind::Heading});
}

} // namespace

QVector<OutputLine> outputLines(const QString& text)
{
    int begin = 0;
    while (begin < text.size() && text.at(begin) == u'\n')
        ++begin;
    const int end = text.size() > begin && text.endsWith(u'\n') ? text.size() - 1 : text.size();
    QVector<OutputLine> lines;
    for (const QString& line : text.mid(begin, end - begin).split(u'\n'))
        lines.append(lineOf(line));
    foldCompilerWords(lines);
    foldLists(lines);
    return lines;
}
