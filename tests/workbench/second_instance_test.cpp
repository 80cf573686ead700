// Two workbenches on one project: what is said on opening, and what is asked before a save replaces
// what the other wrote.

#include "model/dialogs/user_dialogs.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/own_settings.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "workbench/MainWindow.h"
#include "workbench/ProjectLock.h"

#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QtTest>

#include <memory>

class SecondInstanceTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { user_dialogs::setHandler({}); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void openedTwice();
    void savedByAnother_data();
    void savedByAnother();

private:
    QString path(const char* name) const { return m_folder->filePath(text(name)); }
    void start(QProcess& workbench, const QStringList& options) const;

    static constexpr int Patience = 120000;
    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_asked;
    QString m_choice;
};

void SecondInstanceTest::initTestCase()
{
    test_support::useOwnSettings("second_instance");
}

void SecondInstanceTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), m_folder->path()));
    m_asked.clear();
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        if (message.kind == user_dialogs::Kind::SaveDiscardCancel)
            return user_dialogs::Answer{user_dialogs::Button::Save, QString()};
        m_asked << message.text;
        return user_dialogs::Answer{user_dialogs::Button::Ok, m_choice};
    });
}

void SecondInstanceTest::start(QProcess& workbench, const QStringList& options) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder->path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    workbench.setProcessEnvironment(environment);
    workbench.start(QCoreApplication::applicationDirPath() + QStringLiteral("/workbench"),
                    QStringList{QStringLiteral("--project"), m_folder->path()} + options);
}

void SecondInstanceTest::openedTwice()
{
    using test_support::OrdinaryUser;
    const ProjectFolder project(m_folder->path());
    QProcess first;
    start(first, {});
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(path(".workbench.lock")).size() > 0, Patience);
    {
        MainWindow window;
        m_choice = text("不打开");
        QVERIFY(!window.openProject(project));
        QVERIFY(window.project().path().isEmpty());
        QVERIFY2(m_asked.value(0).contains(project.path()) &&
                     m_asked.value(0).contains(QString::number(first.processId())),
                 qPrintable(m_asked.join(u'\n')));
        m_choice = text("仍然打开");
        QVERIFY(window.openProject(project) && window.openProject(project));
        QCOMPARE(m_asked.size(), 2);
    }
    QVERIFY(!ProjectLock(project.path()).holder().isEmpty()); // it has kept its lock

    QProcess headless;
    start(headless, {QStringLiteral("--headless")});
    QVERIFY(headless.waitForFinished(Patience));
    const QString errors = QString::fromUtf8(headless.readAllStandardError());
    QVERIFY2(headless.exitCode() == 0 && errors.contains(text("已在另一个工作台中打开")),
             qPrintable(errors));

    // Who can't write replaces nothing, and could not take away what a dead process left.
    QVERIFY(OrdinaryUser::own(project.path()));
    QVERIFY(QFile::setPermissions(project.path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        QVERIFY(user.isOrdinary() && ProjectLock(project.path()).holder().isEmpty());
    }
    QVERIFY(QFile::setPermissions(project.path(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    first.kill();
    QVERIFY(first.waitForFinished(Patience));
    const QTemporaryDir other;
    MainWindow window;
    QVERIFY(window.openProject(project));
    QVERIFY(!ProjectLock(project.path()).holder().isEmpty());
    QCOMPARE(m_asked.size(), 2);
    // What another machine left behind nobody here can judge: it goes with the person's word.
    QVERIFY(test_support::putFile(other.filePath(text(".workbench.lock")),
                                  "1\nworkbench\nelsewhere\n"));
    QVERIFY(window.openProject(ProjectFolder(other.path())));
    QVERIFY2(m_asked.last().contains(text("elsewhere")), qPrintable(m_asked.last()));
    QVERIFY(ProjectLock(other.path())
                .holder()
                .contains(QString::number(QCoreApplication::applicationPid())));
    QVERIFY(ProjectLock(project.path()).holder().isEmpty());
}

void SecondInstanceTest::savedByAnother_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("isBefore"); // the other saves before that
    QTest::addColumn<QString>("choice");
    const auto row = [](const char* name, const char* way, bool isBefore, const char* choice) {
        QTest::newRow(name) << text(way) << isBefore << text(choice);
    };
    row("saved, left", "save", true, "不保存");
    row("saved, replaced", "save", true, "替换");
    row("closed, left", "close", true, "不保存");
    row("closed, replaced", "close", true, "替换");
    row("compiled, left", "compile", true, "不保存");
    row("compiled, replaced", "compile", true, "替换");
    row("during a compile, left", "compile", false, "不保存");
    row("during a compile, replaced", "compile", false, "替换");
    row("nobody is there", "save", true, "");
}

void SecondInstanceTest::savedByAnother()
{
    QFETCH(QString, way);
    QFETCH(bool, isBefore);
    QFETCH(QString, choice);
    m_choice = choice;
    const QString document = path("CApplet/crash/processInfo.pedt");
    const QByteArray theirs = R"({"logicview": {}, "other": 1})";
    const auto content = [](const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    MainWindow window;
    if (choice.isEmpty())
        window.setUnattended();
    QVERIFY(window.openProject(ProjectFolder(m_folder->path())));
    window.openApplet(QStringLiteral("crash"));
    window.editor()->clearCurrentShowSequenceData();
    QVERIFY(window.isDocumentModified());
    QSignalSpy compiles(window.editor(), &ProcessEditWidget::sigCompileStart);
    QSignalSpy attempts(&window, &MainWindow::attemptFinished);
    if (isBefore)
        QVERIFY(test_support::putFile(document, theirs));
    if (way == text("close"))
        QCOMPARE(window.mayLeaveApplet(), choice == text("替换"));
    else
        window.findChild<QToolButton*>(way + text("Btn"))->click();
    if (!isBefore)
        QVERIFY(test_support::putFile(document, theirs));
    if (way == text("compile"))
        QTRY_COMPARE_WITH_TIMEOUT(attempts.size(), 1, Patience);

    QTRY_COMPARE(m_asked.size(), choice.isEmpty() ? 0 : 1);
    const bool isLeft = choice == text("不保存");
    QTRY_COMPARE(window.isDocumentModified(), isLeft);
    QCOMPARE(content(document) == theirs, isLeft);
    QCOMPARE(content(document + text(".replaced")), isLeft ? QByteArray() : theirs);
    QCOMPARE(compiles.size(), way == text("compile") && !(isBefore && isLeft) ? 1 : 0);
    QCOMPARE(window.statusBar()->currentMessage().contains(text("已被其他程序修改，未保存")),
             isLeft);
    QCOMPARE(m_asked.size(), choice.isEmpty() ? 0 : 1);
}

PE_WIDGET_TEST("second_instance", SecondInstanceTest)
#include "second_instance_test.moc"
