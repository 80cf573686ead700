#pragma once

#include "workbench/ProjectFolder.h"

#include <QMainWindow>

#include <memory>

class OutputPane;
class ProcessEditWidget;
class ProgressDisplay;
class ProjectLock;
class QAction;
class QComboBox;
class QDockWidget;
class QStackedWidget;
class QToolBar;
class QToolButton;

/// The host application's window: one project, one applet of it in the editor, and around it what
/// the editor offers a host: its tool bar, its property panels, its output.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    MainWindow();
    ~MainWindow() override;

    /// Nobody is at the screen: what a person would be asked about other workbenches becomes lines
    /// in the log, and the work goes on. To be said before a project is opened.
    void setUnattended() { m_isUnattended = true; }
    /// Opens a project without an applet. What is unsaved must have been asked for before. False,
    /// with everything as it was, if another workbench has it open and the person leaves it then.
    bool openProject(const ProjectFolder& project);
    /// Opens an applet of the project in a new editor; the one before is closed. Of one whose
    /// document is damaged the person chooses what to open, which may be nothing.
    void openApplet(const QString& name);
    const ProjectFolder& project() const { return m_project; }
    /// The editor of the open applet; null without one.
    ProcessEditWidget* editor() const { return m_editor; }
    bool isDocumentModified() const { return isWindowModified(); }

    /// The size of a window that nobody has given another, on a screen with that much room.
    /// An empty @p room bounds nothing.
    static QSize firstSize(const QSize& room);

    /// Asks about unsaved changes; false if the person wants to go on editing.
    bool mayLeaveApplet();

signals:
    /// An editor was made and its applet loaded.
    void appletOpened(const QString& name);
    /// What a press of Run or Compile began has come to its end, or to the start of a run.
    void attemptFinished(bool success);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildActions();
    void buildMenus();
    void buildDocks();
    void connectHost();
    void connectEditor();
    void connectBuild();
    void closeEditor();
    /// False if the applet isn't to be opened as it was read.
    bool isGoodEnough(const QString& folder);
    void leaveApplet();
    QDockWidget* addDock(const QString& name, const QString& title, Qt::DockWidgetArea area,
                         QWidget* content);
    void clearDocks();
    void sayThatDocksAreEmpty();
    void pressFunction(int function);
    void tellKeys();
    void showStale(bool isStale);
    void chooseProject();
    void chooseApplet(const QString& name);
    void createApplet();
    void renameApplet();
    void removeApplet();
    void reloadApplet();
    void saveCopy();
    void onSaveRefused();
    /// False if the document is another program's and the person leaves it so, who is told what
    /// that means: @p otherwise.
    bool mayReplaceDocument(const QString& otherwise);
    QString document() const;
    /// Whether a person is to be asked before a save.
    bool isDocumentOfAnother() const;
    void offerAnotherPlace();
    bool lockProject(const ProjectFolder& project);
    bool mayShareProject(const QString& path, ProjectLock& lock);
    void tellIfReadOnly();
    void refreshApplets();
    void complain(const QString& complaint);
    void showTitle();
    void showNotice(int level, const QString& text);
    void restoreWindow();
    void applyDefaultSizes();

    ProjectFolder m_project;
    std::unique_ptr<ProjectLock> m_lock; ///< of the project; null without one
    QString m_applet;
    ProcessEditWidget* m_editor = nullptr;
    QString m_outcome;             ///< of what was asked for last
    bool m_isFailure = false;      ///< and whether it is one
    bool m_isReadOnlyTold = false; ///< of the open project
    bool m_isUnattended = false;   ///< nobody is at the screen
    bool m_isBuilt = false;        ///< something compiled that a change of the document makes stale

    QByteArray m_dockState; ///< until the window is shown first

    QToolBar* m_projectBar;
    QToolBar* m_editorBar;
    QComboBox* m_appletBox;
    QList<QAction*> m_appletActions; ///< of the open applet
    QDockWidget* m_controlDock;
    QDockWidget* m_settingDock;
    OutputPane* m_output;
    OutputPane* m_log;
    ProgressDisplay* m_progress;
    QToolButton* m_readOnlyOffer; ///< seen while the open applet can't be saved in its place
    QStackedWidget* m_centre;     ///< a word for who has no applet open, and the editor
};
