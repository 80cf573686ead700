#include "standalone/model_service/LoadReport.h"

#include "model/services/log.h"

namespace standalone {

namespace {
constexpr int MaxLines = 20; ///< a broken document must not flood the log
}

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

void LoadReport::add(const QString& where, const QString& fault)
{
    ++m_count;
    if (m_lines.size() < MaxLines)
        m_lines.append(where.isEmpty() ? fault : where + QLatin1String(": ") + fault);
}

} // namespace standalone
