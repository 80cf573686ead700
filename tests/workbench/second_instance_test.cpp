// Two workbenches on one project: what is said on opening, and what is asked before a save replaces
// what the other wrote.

#include "tests/workbench/WorkbenchFixture.h"

#include "shell/ProcessEditWidget.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/test_program.h"
#include "workbench/ProjectLock.h"

#include <QToolButton>
#include <QtTest>

class SecondInstanceTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void openedTwice();
    void savedByAnother_data();
    void savedByAnother();

private:
    static QString holderOf(const QString& project) { return ProjectLock(project).holder(); }
};

void SecondInstanceTest::openedTwice()
{
    using test_support::OrdinaryUser;
    const ProjectFolder project(m_folder->path());
    QProcess first;
    startProgram(first, {});
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(path(".workbench.lock")).size() > 0, Patience);
    {
        MainWindow window;
        m_value = text("不打开");
        QVERIFY(!window.openProject(project));
        QVERIFY(window.project().path().isEmpty());
        const QString asked = m_asked.value(0).text;
        QVERIFY2(asked.contains(project.path()) &&
                     asked.contains(QString::number(first.processId())),
                 qPrintable(asked));
        m_value = text("仍然打开");
        QVERIFY(window.openProject(project) && window.openProject(project));
        QCOMPARE(m_asked.size(), 2);
    }
    QVERIFY(!holderOf(project.path()).isEmpty()); // it has kept its lock

    QProcess headless;
    startProgram(headless, {text("--headless")});
    QVERIFY(headless.waitForFinished(Patience));
    const QString errors = QString::fromUtf8(headless.readAllStandardError());
    QVERIFY2(headless.exitCode() == 0 && errors.contains(text("已在另一个工作台中打开")),
             qPrintable(errors));

    // Who can't write replaces nothing, and could not take away what a dead process left.
    QVERIFY(OrdinaryUser::own(project.path()));
    const auto rights = QFile::permissions(project.path());
    QVERIFY(QFile::setPermissions(project.path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        QVERIFY(user.isOrdinary() && holderOf(project.path()).isEmpty());
    }
    QVERIFY(QFile::setPermissions(project.path(), rights));
    first.kill();
    QVERIFY(first.waitForFinished(Patience));
    MainWindow window;
    QVERIFY(window.openProject(project));
    QVERIFY(!holderOf(project.path()).isEmpty());
    QCOMPARE(m_asked.size(), 2);
    // What another machine left behind nobody here can judge: it goes with the person's word.
    const QTemporaryDir other;
    QVERIFY(test_support::putFile(other.filePath(text(".workbench.lock")),
                                  "1\nworkbench\nelsewhere\n"));
    QVERIFY(window.openProject(ProjectFolder(other.path())));
    QVERIFY2(m_asked.last().text.contains(text("elsewhere")), qPrintable(m_asked.last().text));
    QVERIFY(holderOf(other.path()).contains(QString::number(QCoreApplication::applicationPid())));
    QVERIFY(holderOf(project.path()).isEmpty());
}

void SecondInstanceTest::savedByAnother_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("isBefore"); // the other saves before that
    QTest::addColumn<QString>("choice");
    for (const char* choice : {"不保存", "替换"}) {
        for (const char* way : {"save", "close", "compile"})
            QTest::addRow("%s, %s", way, choice) << text(way) << true << text(choice);
        QTest::addRow("during a compile, %s", choice) << text("compile") << false << text(choice);
    }
    QTest::newRow("nobody is there") << text("save") << true << QString();
}

void SecondInstanceTest::savedByAnother()
{
    QFETCH(QString, way);
    QFETCH(bool, isBefore);
    QFETCH(QString, choice);
    m_value = choice;
    const bool isCompile = way == text("compile");
    const QByteArray theirs = R"({"logicview": {}, "other": 1})";
    openWindow();
    if (choice.isEmpty())
        m_window->setUnattended();
    m_window->openApplet(text("crash"));
    m_window->editor()->clearCurrentShowSequenceData();
    QVERIFY(m_window->isDocumentModified());
    QSignalSpy compiles(m_window->editor(), &ProcessEditWidget::sigCompileStart);
    QSignalSpy attempts(m_window.get(), &MainWindow::attemptFinished);
    if (isBefore)
        QVERIFY(test_support::putFile(document("crash"), theirs));
    if (way == text("close"))
        QCOMPARE(m_window->mayLeaveApplet(), choice == text("替换"));
    else
        m_window->findChild<QToolButton*>(way + text("Btn"))->click();
    if (!isBefore)
        QVERIFY(test_support::putFile(document("crash"), theirs));
    if (isCompile)
        QTRY_COMPARE_WITH_TIMEOUT(attempts.size(), 1, Patience);

    const auto asked = [this] {
        return std::count_if(m_asked.begin(), m_asked.end(), [](const auto& message) {
            return message.kind == user_dialogs::Kind::Choice;
        });
    };
    QTRY_COMPARE(asked(), choice.isEmpty() ? 0 : 1);
    const bool isLeft = choice == text("不保存");
    QTRY_COMPARE(m_window->isDocumentModified(), isLeft);
    QCOMPARE(test_support::content(document("crash")) == theirs, isLeft);
    QCOMPARE(test_support::content(document("crash") + text(".replaced")),
             isLeft ? QByteArray() : theirs);
    QCOMPARE(compiles.size(), isCompile && !(isBefore && isLeft) ? 1 : 0);
    QCOMPARE(status().contains(text("已被其他程序修改，未保存")), isLeft);
    QCOMPARE(asked(), choice.isEmpty() ? 0 : 1);
}

PE_WIDGET_TEST("second_instance", SecondInstanceTest)
#include "second_instance_test.moc"
