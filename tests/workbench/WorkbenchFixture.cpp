#include "tests/workbench/WorkbenchFixture.h"

#include "shell/ProcessEditWidget.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/folders.h"
#include "tests/support/own_settings.h"
#include "tests/support/print_tree.h"
#include "workbench/OutputPane.h"

#include <QDockWidget>
#include <QLabel>
#include <QProcess>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

WorkbenchFixture::WorkbenchFixture() = default;
WorkbenchFixture::~WorkbenchFixture() = default;

void WorkbenchFixture::initTestCase()
{
    test_support::useOwnSettings(metaObject()->className());
}

void WorkbenchFixture::cleanupTestCase()
{
    standalone::shutdownRuntime();
}

void WorkbenchFixture::init()
{
    m_program = QCoreApplication::applicationDirPath() + text("/workbench");
    m_folder = std::make_unique<QTemporaryDir>();
    m_project = m_folder->path();
    QVERIFY(test_support::copyFolder(text(PE_EXAMPLE), m_project));
    m_asked.clear();
    m_agrees = true;
    m_value.clear();
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        using user_dialogs::Answer;
        using user_dialogs::Button;
        using user_dialogs::Kind;
        m_asked << message;
        switch (message.kind) {
        case Kind::YesNo:
            return Answer{m_agrees ? Button::Yes : Button::No, QString()};
        case Kind::SaveDiscardCancel:
            return Answer{m_agrees ? Button::Save : Button::Cancel, QString()};
        case Kind::Choice:
            for (const QString& choice : message.choices) {
                if (!m_value.isEmpty() && choice.startsWith(m_value))
                    return Answer{Button::Ok, choice};
            }
            return Answer();
        default:
            return Answer{Button::Ok, m_value};
        }
    });
}

void WorkbenchFixture::cleanup()
{
    m_person.reset();
    m_window.reset();
    user_dialogs::setHandler({});
}

void WorkbenchFixture::openWindow(const char* applet)
{
    m_person.reset();
    m_window = std::make_unique<MainWindow>();
    m_window->openProject(ProjectFolder(m_project));
    if (applet)
        m_window->openApplet(text(applet));
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_person = std::make_unique<Person>(*m_window);
}

void WorkbenchFixture::startProgram(QProcess& program, const QStringList& options) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(text("XDG_CONFIG_HOME"), m_folder->path());
    environment.insert(text("QT_QPA_PLATFORM"), text("offscreen"));
    program.setProcessEnvironment(environment);
    program.start(m_program, QStringList{text("--project"), m_project} + options);
    QVERIFY(program.waitForStarted());
}

bool WorkbenchFixture::isIdle() const
{
    return find<QToolButton>("runBtn")->isEnabled();
}

QString WorkbenchFixture::status() const
{
    return m_window->statusBar()->currentMessage();
}

QLabel* WorkbenchFixture::activity() const
{
    return find<QLabel>("activity");
}

OutputPane* WorkbenchFixture::output() const
{
    return qobject_cast<OutputPane*>(find<QDockWidget>("outputDock")->widget());
}

QStringList WorkbenchFixture::editRows(const QList<int>& columns) const
{
    return test_support::printTree(*m_person->steps()->model(), columns);
}

#include "moc_WorkbenchFixture.cpp"
