#include "standalone/model_service/json/LoadReport.h"

#include "model/services/log.h"
#include "standalone/model_service/json/DocumentPlace.h"

#include <algorithm>

namespace standalone {

namespace {
// A broken document must not flood the log, nor one kind of fault hide the others.
constexpr int MaxLines = 40;
constexpr int MaxLinesOfAKind = 8;

/// What is wrong, without what it is wrong with.
QString kindOf(const QString& fault)
{
    const auto isDetail = [](QChar c) {
        return c.isDigit() || c == QChar(0xFF0C) || c == QLatin1Char('(');
    };
    return QString(fault.begin(),
                   int(std::find_if(fault.begin(), fault.end(), isDetail) - fault.begin()));
}
} // namespace

LoadReport::LoadReport(const QString& subject) : m_subject(subject) {}

LoadReport::~LoadReport()
{
    const QString opening = QStringLiteral("[流程编辑] %1: ").arg(m_subject);
    for (const auto& line : qAsConst(m_lines))
        sdk_ui_interface::log::log_error(opening + line);
    if (m_count > m_lines.size())
        sdk_ui_interface::log::log_error(
            opening + QStringLiteral("另有 %1 处问题").arg(m_count - m_lines.size()));
}

void LoadReport::add(const DocumentPlace& where, const QString& fault)
{
    ++m_count;
    if (m_lines.size() >= MaxLines || ++m_kinds[kindOf(fault)] > MaxLinesOfAKind)
        return;
    const QString place = where.text();
    m_lines.append(place.isEmpty() ? fault : place + QLatin1String(": ") + fault);
}

QString LoadReport::shown(const std::string& text)
{
    constexpr std::size_t longest = 64;
    if (text.size() <= longest)
        return QString::fromStdString(text);
    return QString::fromUtf8(text.data(), longest) + QStringLiteral("…");
}

} // namespace standalone
