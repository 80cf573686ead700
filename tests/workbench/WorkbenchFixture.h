#pragma once

#include "model/dialogs/user_dialogs.h"
#include "tests/support/text.h"
#include "tests/workbench/Person.h"
#include "workbench/MainWindow.h"

#include <QList>
#include <QObject>
#include <QTemporaryDir>

#include <memory>

class OutputPane;
class QLabel;
class QProcess;

/// A project that is a copy of the example, and the workbench's window on it with a person before
/// it. What the window asks is answered, and written down.
class WorkbenchFixture : public QObject
{
    Q_OBJECT
protected slots:
    void initTestCase();
    /// A fresh project, no window, and agreement to whatever is asked.
    void init();
    void cleanup();
    void cleanupTestCase();

protected:
    WorkbenchFixture();
    ~WorkbenchFixture() override;

    /// The window with that applet, or without any.
    void openWindow(const char* applet = nullptr);

    /// The program with these options, in settings of the test's own, on the project.
    void startProgram(QProcess& program, const QStringList& options) const;

    template <class Widget> Widget* find(const char* name) const
    {
        return m_window->findChild<Widget*>(text(name));
    }
    QString path(const char* name) const { return m_folder->filePath(text(name)); }
    QString document(const char* applet) const
    {
        return path("CApplet/") + text(applet) + text("/processInfo.pedt");
    }
    bool isIdle() const;
    /// What the status bar says, and what it says of a run or compile.
    QString status() const;
    QLabel* activity() const;
    OutputPane* output() const;
    QStringList editRows(const QList<int>& columns = {0}) const;

    static constexpr int Patience = 120000;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_project; ///< its path
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Person> m_person;
    QList<user_dialogs::Message> m_asked;
    bool m_agrees = true;
    QString m_value;   ///< what is typed where asked for, or the beginning of what is chosen
    QString m_program; ///< that startProgram() starts
};
