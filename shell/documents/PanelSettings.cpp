#include "shell/documents/PanelSettings.h"

#include "base/file_writing.h"

#include <QFile>
#include <QSettings>

namespace {

const QString splitterKey = QStringLiteral("Widget/WidgetWidth");
const QString variableKey = QStringLiteral("Widget/VarWidgetWidth");
const QString editTreeKey = QStringLiteral("Widget/ProcessWidgetWidth");
const QString runTreeKey = QStringLiteral("Widget/ProcessRunWidgetWidth");

} // namespace

PanelSettings::PanelSettings() = default;
PanelSettings::~PanelSettings() = default;

void PanelSettings::open(const QString& folder)
{
    if (folder.isEmpty() || m_settings)
        return;
    const QString separator = folder.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/");
    const QString fileName = folder + separator + QStringLiteral("settings.ini");
    if (!QFile::exists(fileName) && !file_writing::replace(fileName, QByteArray()).isEmpty())
        return;
    m_settings = std::make_unique<QSettings>(fileName, QSettings::IniFormat);
}

QList<int> PanelSettings::splitterSizes() const
{
    return read(splitterKey);
}

QList<int> PanelSettings::variableWidths() const
{
    return read(variableKey);
}

QList<int> PanelSettings::editTreeWidths() const
{
    return read(editTreeKey);
}

QList<int> PanelSettings::runTreeWidths() const
{
    return read(runTreeKey);
}

void PanelSettings::setSplitterSizes(const QList<int>& sizes)
{
    QStringList values;
    for (int size : sizes)
        values.append(QString::number(size));
    write(splitterKey, values);
}

void PanelSettings::setVariableWidths(const QStringList& widths)
{
    write(variableKey, widths);
}

void PanelSettings::setTreeWidths(const QStringList& widths, bool isRun)
{
    write(isRun ? runTreeKey : editTreeKey, widths);
}

QList<int> PanelSettings::read(const QString& key) const
{
    QList<int> values;
    if (!m_settings)
        return values;
    // An unquoted comma in an INI file makes a list of it; joined, both forms read the same.
    const QString joined = m_settings->value(key).toStringList().join(QLatin1Char(','));
    for (const QString& value : joined.split(QLatin1Char(','), Qt::SkipEmptyParts))
        values.append(value.toInt());
    return values;
}

void PanelSettings::write(const QString& key, const QStringList& values)
{
    if (!m_settings || values.isEmpty())
        return;
    m_settings->setValue(key, values.join(QLatin1Char(',')));
    m_settings->sync();
}
