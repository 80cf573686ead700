#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class QSettings;

/// The widths of an applet's panels in its "settings.ini". Until open() nothing is read and nothing
/// is written. GUI thread only.
class PanelSettings
{
public:
    PanelSettings();
    ~PanelSettings();

    /// Opens @p folder's file, and makes it if missing. Nothing for an empty folder, or if a file
    /// is open already.
    void open(const QString& folder);
    bool isOpen() const { return m_settings != nullptr; }

    /// Empty if nothing was stored or the file isn't open.
    QList<int> splitterSizes() const;
    QList<int> variableWidths() const;
    QList<int> editTreeWidths() const;
    QList<int> runTreeWidths() const;

    /// An empty list writes nothing.
    void setSplitterSizes(const QList<int>& sizes);
    void setVariableWidths(const QStringList& widths);
    void setTreeWidths(const QStringList& widths, bool isRun);

private:
    QList<int> read(const QString& key) const;
    void write(const QString& key, const QStringList& values);

    std::unique_ptr<QSettings> m_settings;
};
