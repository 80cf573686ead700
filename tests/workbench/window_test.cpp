#include "logic/LogicView.h"
#include "model/dialogs/user_dialogs.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "workbench/MainWindow.h"

#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include <signal.h>

// The window as its user has it: the example is loaded, buttons are pressed, rows are looked at.
class WindowTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void runOfTheMainSequence();
    void stopEndsAnEndlessLoop();
    void killedRunnerLeavesAUsableEditor();
    void unsavedChangesAreAskedFor();
    void appletsAreChosenCreatedRenamedRemoved();
    void anotherProjectHasItsOwnVariables();
    void changeAfterABuildShowsTheBadge();
    void runThatCannotBeginIsTold();
    void documentIsReloadedCopiedAndSavedElsewhere();
    void windowStateIsRemembered();
    void defaultWindowFitsTheScreen();
    void treeKeepsHalfOfTheHeight();
    void readOnlyProjectIsToldOnce();

private:
    template <class Widget> Widget* find(const char* name) const
    {
        return m_window->findChild<Widget*>(QString::fromLatin1(name));
    }
    /// A tree of the logic view; other panels have trees of the same names.
    QTreeView* logicTree(const char* name) const;
    QStringList editRows(const QList<int>& columns = {0}) const;
    /// An action of the window's own tool bar.
    void press(const char* text) const;
    void pressRunMain() const;
    bool isIdle() const { return find<QToolButton>("runBtn")->isEnabled(); }
    QStringList runRows() const;

    static constexpr int Patience = 120000;
    QTemporaryDir m_home; // with the trash
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    QStringList m_dialogs;
    user_dialogs::Answer m_answer;
};

void WindowTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    qputenv("HOME", QFile::encodeName(m_home.path()));
    QCoreApplication::setOrganizationName(QStringLiteral("process-edit-test"));
    QCoreApplication::setApplicationName(QStringLiteral("window_test"));
    QSettings().clear();
}

void WindowTest::init()
{
    m_dialogs.clear();
    m_answer = {user_dialogs::Button::Yes, QString()};
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        m_dialogs << message.title + QLatin1Char(':') + message.text;
        return m_answer;
    });
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), m_folder->path()));
    m_window = std::make_unique<MainWindow>();
    m_window->openProject(ProjectFolder(m_folder->path()));
    m_window->show();
}

void WindowTest::cleanup()
{
    m_window.reset();
    QTRY_VERIFY(test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner")
                    .isEmpty());
}

void WindowTest::pressRunMain() const
{
    auto* run = find<QToolButton>("runBtn");
    run->menu()->actions().at(1)->trigger();
    QTest::mouseClick(run, Qt::LeftButton, {}, QPoint(5, run->height() / 2));
}

QTreeView* WindowTest::logicTree(const char* name) const
{
    return find<LogicView>("center_wgt")->findChild<QTreeView*>(QString::fromLatin1(name));
}

QStringList WindowTest::editRows(const QList<int>& columns) const
{
    return test_support::printTree(*logicTree("treeView")->model(), columns);
}

void WindowTest::press(const char* text) const
{
    for (QAction* action : m_window->findChildren<QAction*>()) {
        if (action->text() == QString::fromUtf8(text))
            return action->trigger();
    }
    QFAIL(text);
}

QStringList WindowTest::runRows() const
{
    const QAbstractItemModel* model = logicTree("runTreeView")->model();
    return model ? test_support::printTree(*model, {0, 3}) : QStringList();
}

void WindowTest::runOfTheMainSequence()
{
    m_window->openApplet(QStringLiteral("ecu_check"));
    const QStringList edit = editRows({0, 1});
    QCOMPARE(edit.first(), QStringLiteral("[x] 初始流程 |"));
    QVERIFY2(edit.contains(QStringLiteral("  [x] 夹具到位 | 延时 500 毫秒")),
             qPrintable(edit.join(QLatin1Char('\n'))));

    pressRunMain();
    QVERIFY(!isIdle());
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
    const QStringList rows = runRows();
    const QString text = rows.join(QLatin1Char('\n'));
    const QString done = QStringLiteral(" | 执行成功");
    for (const char* step :
         {"初始化", "上电", "核对零件号", "核对标定数据", "全部合格", "下电", "记录用时"})
        QVERIFY2(text.contains(QString::fromUtf8(step) + done), qPrintable(text));
    // The branch that was not taken has no state, and a disabled step no row.
    QVERIFY2(text.contains(QStringLiteral("判定不合格 |")), qPrintable(text));
    QVERIFY2(!text.contains(QStringLiteral("判定不合格") + done), qPrintable(text));
    QVERIFY2(!text.contains(QStringLiteral("通知质检")), qPrintable(text));
    QVERIFY(!text.contains(QStringLiteral("执行失败")));
    QVERIFY(m_dialogs.isEmpty());
    QVERIFY(!m_window->isDocumentModified());
    QCOMPARE(find<QLabel>("activity")->text(), QStringLiteral("运行结束"));

    // Nothing changed: the second run starts without a compile, and the window tells of it too.
    pressRunMain();
    QCOMPARE(find<QLabel>("activity")->text(), QStringLiteral("正在运行"));
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
    QCOMPARE(find<QLabel>("activity")->text(), QStringLiteral("运行结束"));
}

void WindowTest::stopEndsAnEndlessLoop()
{
    m_window->openApplet(QStringLiteral("endless_loop"));
    pressRunMain();
    QTRY_VERIFY_WITH_TIMEOUT(runRows().join(QString()).contains(QStringLiteral("执行成功")),
                             Patience);
    find<QToolButton>("stopBtn")->click();
    QCOMPARE(m_dialogs.size(), 1);
    QVERIFY(m_dialogs.first().startsWith(QStringLiteral("警告:当前流程正在运行")));
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
    // The loop didn't come to its end, and nothing says that it did.
    QVERIFY2(runRows().join(u'\n').contains(QStringLiteral(" | 已停止")),
             qPrintable(runRows().join(u'\n')));
    QCOMPARE(find<QLabel>("activity")->text(), QStringLiteral("运行中止"));
}

void WindowTest::killedRunnerLeavesAUsableEditor()
{
    m_window->openApplet(QStringLiteral("endless_loop"));
    QStringList output;
    connect(m_window->editor(), &ProcessEditWidget::notifyRunResultSig, this,
            [&output](bool, const QString& text) { output << text; });
    for (int round = 0; round < 2; ++round) {
        pressRunMain();
        QList<qint64> runners;
        QTRY_VERIFY_WITH_TIMEOUT(!(runners = test_support::childProcesses(
                                       QCoreApplication::applicationPid(), "applet_runner"))
                                      .isEmpty(),
                                 Patience);
        QCOMPARE(kill(pid_t(runners.first()), SIGKILL), 0);
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
        QCOMPARE(output.last(), QStringLiteral("endless_loop 运行崩溃, 即将停止运行\n"));
        const auto* activity = find<QLabel>("activity");
        QCOMPARE(activity->text(), QStringLiteral("运行崩溃"));
        QVERIFY(activity->palette().color(QPalette::WindowText).red() > 150);
        QVERIFY(m_window->statusBar()->findChild<QProgressBar*>()->value() < 100);
    }
}

void WindowTest::unsavedChangesAreAskedFor()
{
    m_window->openApplet(QStringLiteral("crash"));
    const QTreeView* tree = logicTree("treeView");
    const QModelIndex step = tree->model()->index(0, 0, tree->model()->index(1, 0));
    QVERIFY(tree->model()->setData(step, Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(m_window->isDocumentModified());

    m_answer.button = user_dialogs::Button::Cancel;
    QVERIFY(!m_window->close());
    m_answer.button = user_dialogs::Button::Save;
    QVERIFY(m_window->mayLeaveApplet());
    QVERIFY(!m_window->isDocumentModified());
    QCOMPARE(m_dialogs.size(), 2);
    m_window->openApplet(QStringLiteral("crash"));
    const QStringList rows = editRows();
    QVERIFY2(rows.contains(QStringLiteral("  [ ] 第一步")),
             qPrintable(rows.join(QLatin1Char('\n'))));
}

void WindowTest::appletsAreChosenCreatedRenamedRemoved()
{
    m_window->openApplet(QStringLiteral("crash"));
    const auto applets = [this] {
        QStringList names;
        const auto* box = find<QComboBox>("appletBox");
        for (int index = 0; index < box->count(); ++index)
            names << (index == box->currentIndex() ? QStringLiteral("*") : QString()) +
                         box->itemText(index);
        return names.join(QLatin1Char(' '));
    };
    m_answer = {user_dialogs::Button::Ok, QStringLiteral("fresh")};
    press("新建小程序");
    QCOMPARE(applets(), QStringLiteral("ecu_check crash endless_loop *fresh"));
    QCOMPARE(editRows().size(), 3);
    m_answer.value = QStringLiteral("renamed");
    press("重命名小程序");
    QCOMPARE(applets(), QStringLiteral("ecu_check crash endless_loop *renamed"));
    m_answer = {user_dialogs::Button::Yes, QString()};
    press("删除小程序");
    QCOMPARE(applets(), QStringLiteral("*ecu_check crash endless_loop"));
    QVERIFY(m_window->windowTitle().startsWith(QStringLiteral("ecu_check")));
}

void WindowTest::anotherProjectHasItsOwnVariables()
{
    const auto globals = [this] {
        const auto* tree = find<QWidget>("widget_para")->findChild<QTreeView*>();
        return test_support::printTree(*tree->model()).join(QLatin1Char(' '));
    };
    m_window->openApplet(QStringLiteral("crash"));
    QVERIFY2(globals().contains(QStringLiteral("line_name")), qPrintable(globals()));

    QTemporaryDir other;
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), other.path()));
    QVERIFY(test_support::putFile(
        other.filePath(QStringLiteral("globalVariable.json")),
        R"({"variables": [{"name": "only_here", "type": "s32", "uuid": "u1", "value": "1"}]})"));
    m_answer = {user_dialogs::Button::Ok, other.path()};
    press("打开工程");
    QVERIFY2(globals().contains(QStringLiteral("only_here")), qPrintable(globals()));
    QVERIFY2(!globals().contains(QStringLiteral("line_name")), qPrintable(globals()));

    // Saving here leaves the first project's file as it was.
    find<QToolButton>("saveBtn")->click();
    QFile first(m_folder->filePath(QStringLiteral("globalVariable.json")));
    QVERIFY(first.open(QIODevice::ReadOnly));
    QVERIFY(first.readAll().contains("line_name"));
    m_window->openProject(ProjectFolder(m_folder->path()));
}

void WindowTest::changeAfterABuildShowsTheBadge()
{
    m_window->openApplet(QStringLiteral("crash"));
    const auto toggle = [this] {
        QAbstractItemModel* rows = logicTree("treeView")->model();
        const QModelIndex step = rows->index(0, 0, rows->index(1, 0));
        const bool isOn = step.data(Qt::CheckStateRole) == Qt::Checked;
        QVERIFY(rows->setData(step, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole));
    };
    const auto isStale = [this] { return !find<QLabel>("staleBadge")->isHidden(); };
    toggle();
    QVERIFY(!isStale()); // nothing is compiled yet
    for (int round = 0; round < 2; ++round) {
        find<QToolButton>("compileBtn")->click();
        QTRY_COMPARE_WITH_TIMEOUT(find<QLabel>("activity")->text(), QStringLiteral("编译完成"),
                                  Patience);
        QVERIFY(!isStale());
        toggle();
        QVERIFY(isStale());
    }
}

void WindowTest::runThatCannotBeginIsTold()
{
    m_window->openApplet(QStringLiteral("crash"));
    standalone::setRunnerPath(m_folder->filePath(QStringLiteral("no_runner")));
    QStringList log;
    connect(&standalone::Host::instance(), &standalone::Host::errorLogged, this,
            [&log](const QString& line) { log << line; });
    pressRunMain();
    QTRY_COMPARE_WITH_TIMEOUT(find<QLabel>("activity")->text(), QStringLiteral("运行未能开始"),
                              Patience);
    standalone::setRunnerPath(QString());
    QVERIFY(isIdle());
    QVERIFY2(log.join(u'\n').contains(QStringLiteral("无法运行: 找不到运行程序: ")),
             qPrintable(log.join(u'\n')));
}

void WindowTest::documentIsReloadedCopiedAndSavedElsewhere()
{
    m_window->openApplet(QStringLiteral("crash"));
    const QStringList asRead = editRows();
    const QString document = m_window->project().appletFolder(QStringLiteral("crash")) +
                             QStringLiteral("processInfo.pedt");
    QAbstractItemModel* rows = logicTree("treeView")->model();
    QVERIFY(rows->setData(rows->index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(editRows() != asRead);

    const QString copy = m_folder->filePath(QStringLiteral("copy.pedt"));
    m_answer = {user_dialogs::Button::Ok, copy};
    press("另存副本");
    QVERIFY(QFile::exists(copy));
    QVERIFY(m_window->isDocumentModified());

    m_answer.button = user_dialogs::Button::No;
    press("重新加载");
    QVERIFY(editRows() != asRead);
    m_answer.button = user_dialogs::Button::Yes;
    press("重新加载");
    QCOMPARE(editRows(), asRead);
    QVERIFY(!m_window->isDocumentModified());

    // A document that can't be replaced: the window offers another place.
    QVERIFY(QFile::remove(document));
    QVERIFY(QDir().mkpath(document + QStringLiteral("/in_the_way")));
    QVERIFY(QFile::remove(copy));
    m_dialogs.clear();
    user_dialogs::setHandler([this, copy](const user_dialogs::Message& message) {
        m_dialogs << message.title;
        const bool isFile = message.kind == user_dialogs::Kind::SaveFile;
        return user_dialogs::Answer{isFile ? user_dialogs::Button::Ok : user_dialogs::Button::Yes,
                                    copy};
    });
    m_window->editor()->save(QString());
    QTRY_COMPARE(m_dialogs, QStringList({QStringLiteral("警告"), QStringLiteral("另存副本")}));
    QVERIFY(QFile::exists(copy));
}

void WindowTest::windowStateIsRemembered()
{
    m_window->resize(900, 640);
    m_window->addDockWidget(Qt::RightDockWidgetArea, find<QDockWidget>("logDock"));
    m_window->resizeDocks({find<QDockWidget>("controlDock"), find<QDockWidget>("settingDock")},
                          {170, 330}, Qt::Horizontal);
    QCoreApplication::processEvents();
    const QSize size = m_window->size();
    const int width = find<QDockWidget>("controlDock")->width();
    QVERIFY(m_window->close());

    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QCOMPARE(m_window->size(), size);
    QCOMPARE(find<QDockWidget>("controlDock")->width(), width);
    QCOMPARE(m_window->dockWidgetArea(find<QDockWidget>("logDock")), Qt::RightDockWidgetArea);
    QCOMPARE(m_window->dockWidgetArea(find<QDockWidget>("outputDock")), Qt::BottomDockWidgetArea);
    QSettings().clear();
}

void WindowTest::defaultWindowFitsTheScreen()
{
    m_window->openApplet(QStringLiteral("ecu_check"));
    QCoreApplication::processEvents();
    // A full HD screen at twice the size.
    const QSize room(960, 540);
    const QSize size = MainWindow::firstSize(room);
    QVERIFY(size.width() <= room.width() && size.height() <= room.height());
    QCOMPARE(m_window->minimumSizeHint().boundedTo(size), m_window->minimumSizeHint());
    QCOMPARE(MainWindow::firstSize(QSize(1920, 1050)), MainWindow::firstSize(QSize()));
}

void WindowTest::treeKeepsHalfOfTheHeight()
{
    m_window->openApplet(QStringLiteral("ecu_check"));
    m_window->resize(1600, 960);
    QCoreApplication::processEvents();
    QVERIFY2(logicTree("treeView")->height() >= 480,
             qPrintable(QString::number(logicTree("treeView")->height())));
}

void WindowTest::readOnlyProjectIsToldOnce()
{
    using test_support::OrdinaryUser;
    const QString folder = m_folder->path();
    auto* offer = find<QToolButton>("readOnlyOffer");
    m_window->openApplet(QStringLiteral("crash"));
    QVERIFY(offer->isHidden());
    QVERIFY(OrdinaryUser::own(folder));
    const auto rights = QFile::permissions(folder);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        QVERIFY(user.isOrdinary());
        m_window->openProject(ProjectFolder(folder));
        m_window->openApplet(QStringLiteral("crash"));
        const QStatusBar* status = m_window->statusBar();
        QVERIFY2(status->currentMessage().contains(folder), qPrintable(status->currentMessage()));
        QVERIFY(offer->isVisible());

        const QTemporaryDir elsewhere;
        const QString copy = elsewhere.filePath(QStringLiteral("copy.pedt"));
        m_answer = {user_dialogs::Button::Ok, copy};
        offer->click();
        QVERIFY(QFile::exists(copy));
        m_window->openApplet(QStringLiteral("endless_loop"));
        QVERIFY(!status->currentMessage().contains(folder));
        QVERIFY(offer->isVisible());
    }
    QVERIFY(QFile::setPermissions(folder, rights));
}

PE_WIDGET_TEST("window_test", WindowTest)
#include "window_test.moc"
