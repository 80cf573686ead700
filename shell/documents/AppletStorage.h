#pragma once

#include "shell/documents/applet_documents.h"

#include <QObject>
#include <QString>

#include <functional>

/// Saving for one editor: its own applet and any other, with the order in which panels are flushed,
/// the document is written, its backup is kept and the host is told. Needs no window.
///
/// GUI thread only. Paths come from LogicMaster.
class AppletStorage : public QObject
{
    Q_OBJECT
public:
    using SavedCallback = std::function<void(const QString& appName)>;

    /// @p flushPanels writes every edit that waits in a panel to the model.
    AppletStorage(std::function<void()> flushPanels, QObject* parent);

    /// The editor's applet.
    void setAppName(const QString& appName) { m_appName = appName; }
    void setStripCallback(applet_documents::StripFunction callback)
    {
        m_strip = std::move(callback);
    }
    /// Holds for the applets' own documents; where a copy goes has been asked for.
    void setRuleForOthers(applet_documents::Others rule) { m_others = rule; }
    /// Told the applet's name after each save.
    void setSavedCallback(SavedCallback callback) { m_saved = std::move(callback); }

    /// Saves the editor's applet; an empty path means its own document. The backup goes beside the
    /// written file. Nothing happens without an applet.
    void save(const QString& targetPath);

    /// Saves any applet; false, with a line in the log, if its document could not be written.
    /// @p strip applies the strip callback. Only its own document gets a backup, and only the
    /// first.
    bool saveApp(const QString& appName, bool strip, const QString& targetPath);

    /// Saves what the applets of the project share: its global variables and quick steps. Nothing
    /// happens without a project; a failure goes to the log.
    static void saveShared();

signals:
    /// The document of the editor's own applet could not be written.
    void refused();

private:
    applet_documents::Others ruleAt(const QString& targetPath) const;
    void tellSaved(const QString& appName) const;

    std::function<void()> m_flushPanels;
    QString m_appName;
    applet_documents::StripFunction m_strip;
    applet_documents::Others m_others = applet_documents::Others::Replace;
    SavedCallback m_saved;
};
