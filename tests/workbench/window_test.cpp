// The window as its user has it: what a newcomer does in the first hour, on the example.

#include "tests/workbench/WorkbenchFixture.h"

#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "workbench/OutputPane.h"

#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

class WindowTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void endsOfRuns();
    void unsavedChangesAreAskedFor();
    void appletsAreChosenCreatedRenamedRemoved();
    void returnDeletesNoApplet();
    void anotherProjectHasItsOwnVariables();
    void changeAfterABuildShowsTheBadge();
    void documentIsReloadedCopiedAndSavedElsewhere();
    void windowStateIsRemembered();
    void sizesAreEnough();
    void readOnlyProjectIsToldOnce();
    void whatWentIsTold();
    void usersOfARenamedVariableAreTold();
    void hiddenToolBarsComeBack();
    void calledSequenceIsNamedInARun();

private:
    QString variables() const
    {
        return test_support::printTree(*m_person->variables()->model()).join(u' ');
    }

    QTemporaryDir m_home; // with the trash
};

void WindowTest::initTestCase()
{
    qputenv("HOME", QFile::encodeName(m_home.path()));
    WorkbenchFixture::initTestCase();
}

void WindowTest::cleanup()
{
    WorkbenchFixture::cleanup();
    QTRY_VERIFY(test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner")
                    .isEmpty());
}

void WindowTest::endsOfRuns()
{
    openWindow("crash");
    QSignalSpy log(&standalone::Host::instance(), &standalone::Host::errorLogged);
    standalone::setRunnerPath(path("no_runner"));
    m_person->pressRunMain();
    QTRY_COMPARE_WITH_TIMEOUT(activity()->text(), text("运行未能开始"), Patience);
    standalone::setRunnerPath(QString());
    QVERIFY(isIdle());
    QVERIFY(log.last().at(0).toString().contains(text("无法运行: 找不到运行程序: ")));

    for (int round = 0; round < 2; ++round) {
        m_person->pressRunMain();
        QVERIFY(!isIdle());
        QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
        QCOMPARE(activity()->text(), text("运行崩溃"));
        QVERIFY(activity()->palette().color(QPalette::WindowText).red() > 150);
        QVERIFY(m_window->statusBar()->findChild<QProgressBar*>()->value() < 100);
    }
    QVERIFY(m_asked.isEmpty());

    m_window->openApplet(text("endless_loop"));
    m_person->pressRunMain();
    const auto rows = [this] {
        const QAbstractItemModel* model = m_person->runSteps()->model();
        return model ? test_support::printTree(*model, {0, 3}).join(u'\n') : QString();
    };
    QTRY_VERIFY_WITH_TIMEOUT(rows().contains(text("执行成功")), Patience);
    m_person->pressTool("stopBtn");
    QCOMPARE(m_asked.size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
    // The loop didn't come to its end, and nothing says that it did.
    QVERIFY2(rows().contains(text(" | 已停止")), qPrintable(rows()));
    QCOMPARE(activity()->text(), text("运行中止"));
}

void WindowTest::unsavedChangesAreAskedFor()
{
    openWindow("crash");
    m_person->toggleStep("第一步");
    QVERIFY(m_window->isDocumentModified());
    m_agrees = false;
    QVERIFY(!m_window->close());
    m_agrees = true;
    QVERIFY(m_window->mayLeaveApplet());
    QVERIFY(!m_window->isDocumentModified());
    QCOMPARE(m_asked.size(), 2);
    m_window->openApplet(text("crash"));
    QVERIFY2(editRows().contains(text("  [ ] 第一步")), qPrintable(editRows().join(u'\n')));
    m_person->toggleStep("第一步");
    m_person->pressTool("saveBtn");
    QVERIFY(!m_window->isDocumentModified());
    QCOMPARE(status(), text("已保存 ") + document("crash"));
}

void WindowTest::appletsAreChosenCreatedRenamedRemoved()
{
    openWindow("crash");
    const auto applets = [this] {
        QStringList names;
        const auto* box = find<QComboBox>("appletBox");
        for (int index = 0; index < box->count(); ++index)
            names << (index == box->currentIndex() ? text("*") : QString()) + box->itemText(index);
        return names.join(u' ');
    };
    m_value = text("fresh");
    m_person->press("新建小程序");
    QCOMPARE(applets(), text("ecu_check crash endless_loop *fresh"));
    QCOMPARE(editRows().size(), 3);
    m_value = text("renamed");
    m_person->press("重命名小程序");
    QCOMPARE(applets(), text("ecu_check crash endless_loop *renamed"));
    m_person->press("删除小程序");
    QCOMPARE(applets(), text("*ecu_check crash endless_loop"));
    QVERIFY(m_window->windowTitle().startsWith(text("ecu_check")));
}

void WindowTest::returnDeletesNoApplet()
{
    openWindow("ecu_check");
    user_dialogs::setHandler({});
    QString asked;
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            asked = box->text();
            QTest::keyClick(box, Qt::Key_Return);
        }
    });
    answer.start(0);
    m_person->press("删除小程序");
    QVERIFY2(asked.contains(text("ecu_check")), qPrintable(asked));
    QVERIFY(m_window->editor() && QFile::exists(document("ecu_check")));
}

void WindowTest::anotherProjectHasItsOwnVariables()
{
    openWindow("crash");
    m_person->showTab("变量");
    QVERIFY2(variables().contains(text("line_name")), qPrintable(variables()));
    QTemporaryDir other;
    QVERIFY(test_support::copyFolder(text(PE_EXAMPLE), other.path()));
    QVERIFY(test_support::putFile(
        other.filePath(text("globalVariable.json")),
        R"({"variables": [{"name": "only_here", "type": "s32", "uuid": "u1", "value": "1"}]})"));
    m_value = other.path();
    m_person->press("打开工程");
    QVERIFY2(variables().contains(text("only_here")), qPrintable(variables()));
    QVERIFY2(!variables().contains(text("line_name")), qPrintable(variables()));
    // Saving here leaves the first project's file as it was.
    m_person->pressTool("saveBtn");
    QVERIFY(test_support::content(path("globalVariable.json")).contains("line_name"));
    m_window->openProject(ProjectFolder(m_folder->path()));
}

void WindowTest::changeAfterABuildShowsTheBadge()
{
    openWindow("crash");
    const auto isStale = [this] { return !find<QLabel>("staleBadge")->isHidden(); };
    const auto tip = [this](const char* button) { return find<QToolButton>(button)->toolTip(); };
    m_person->toggleStep("第一步");
    QVERIFY(!isStale()); // nothing is compiled yet
    for (int round = 0; round < 2; ++round) {
        m_person->pressTool("compileBtn");
        QTRY_COMPARE_WITH_TIMEOUT(activity()->text(), text("编译完成"), Patience);
        QVERIFY(!isStale());
        QCOMPARE(tip("compileBtn"), text("编译 (F7)")); // the window's keys
        m_person->toggleStep("第一步");
        QVERIFY(isStale());
    }
    QCOMPARE(tip("saveBtn"), text("保存 (Ctrl+S)"));
    QCOMPARE(tip("runBtn"), text("运行 (Ctrl+F5)"));
}

void WindowTest::documentIsReloadedCopiedAndSavedElsewhere()
{
    openWindow("crash");
    const QStringList asRead = editRows();
    m_person->toggleStep("主流程");
    QVERIFY(editRows() != asRead);
    const QString copy = m_value = path("copy.pedt");
    m_person->press("另存副本");
    QVERIFY(QFile::exists(copy));
    QVERIFY(m_window->isDocumentModified());

    m_agrees = false;
    m_person->press("重新加载");
    QVERIFY(editRows() != asRead);
    m_agrees = true;
    m_person->press("重新加载");
    QCOMPARE(editRows(), asRead);
    QVERIFY(!m_window->isDocumentModified());

    // A document that can't be replaced: the window offers another place.
    QVERIFY(QFile::remove(document("crash")));
    QVERIFY(QDir().mkpath(document("crash") + text("/in_the_way")));
    QVERIFY(QFile::remove(copy));
    m_asked.clear();
    m_person->pressTool("saveBtn");
    QTRY_COMPARE(m_asked.size(), 2);
    QVERIFY(m_asked[0].kind == user_dialogs::Kind::YesNo);
    QVERIFY(m_asked[1].kind == user_dialogs::Kind::SaveFile);
    QVERIFY(QFile::exists(copy));
}

void WindowTest::windowStateIsRemembered()
{
    openWindow();
    m_window->resize(900, 640);
    m_window->addDockWidget(Qt::RightDockWidgetArea, find<QDockWidget>("logDock"));
    m_window->resizeDocks({find<QDockWidget>("controlDock"), find<QDockWidget>("settingDock")},
                          {170, 330}, Qt::Horizontal);
    QCoreApplication::processEvents();
    const QSize size = m_window->size();
    const int width = find<QDockWidget>("controlDock")->width();
    QVERIFY(m_window->close());
    openWindow();
    QCOMPARE(m_window->size(), size);
    QCOMPARE(find<QDockWidget>("controlDock")->width(), width);
    QCOMPARE(m_window->dockWidgetArea(find<QDockWidget>("logDock")), Qt::RightDockWidgetArea);
    QCOMPARE(m_window->dockWidgetArea(find<QDockWidget>("outputDock")), Qt::BottomDockWidgetArea);
    QSettings().clear();
}

void WindowTest::sizesAreEnough()
{
    openWindow("ecu_check");
    // A full HD screen at twice the size.
    const QSize room(960, 540);
    const QSize size = MainWindow::firstSize(room);
    QVERIFY(size.width() <= room.width() && size.height() <= room.height());
    QCOMPARE(m_window->minimumSizeHint().boundedTo(size), m_window->minimumSizeHint());
    QCOMPARE(MainWindow::firstSize(QSize(1920, 1050)), MainWindow::firstSize(QSize()));
    // The tree keeps half of the height.
    m_window->resize(1600, 960);
    QCoreApplication::processEvents();
    const int height = m_person->steps()->height();
    QVERIFY2(height >= 480, qPrintable(QString::number(height)));
}

void WindowTest::readOnlyProjectIsToldOnce()
{
    using test_support::OrdinaryUser;
    const QString folder = m_folder->path();
    openWindow("crash");
    auto* offer = find<QToolButton>("readOnlyOffer");
    QVERIFY(offer->isHidden());
    QVERIFY(OrdinaryUser::own(folder));
    const auto rights = QFile::permissions(folder);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        QVERIFY(user.isOrdinary());
        m_window->openProject(ProjectFolder(folder));
        m_window->openApplet(text("crash"));
        QVERIFY2(status().contains(folder), qPrintable(status()));
        QVERIFY(offer->isVisible());

        const QTemporaryDir elsewhere;
        m_value = elsewhere.filePath(text("copy.pedt"));
        offer->click();
        QVERIFY(QFile::exists(m_value));
        m_window->openApplet(text("endless_loop"));
        QVERIFY(!status().contains(folder));
        QVERIFY(offer->isVisible());
    }
    QVERIFY(QFile::setPermissions(folder, rights));
}

void WindowTest::whatWentIsTold()
{
    openWindow("ecu_check");
    m_person->clickStep("上电");
    m_person->chooseStep("延时");
    const QString added = m_person->steps()->currentIndex().data().toString();
    QVERIFY2(added.startsWith(text("延时")), qPrintable(added));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete); // the new step has the keys
    QCOMPARE(status(), text("已删除 ") + added);
    m_person->clickStep("全部合格");
    m_person->pressInSteps(Qt::Key_Delete);
    QCOMPARE(status(), text("已删除 全部合格 及其 5 个步骤"));
    m_person->clickStep("上电");
    m_person->pressInSteps(Qt::Key_Delete);
    QCOMPARE(status(), text("已删除 上电"));
    m_person->showTab("序列");
    for (int row : {3, 2, 1})
        m_person->chooseForSequence(row, "删除所选序列");
    QVERIFY2(status().contains(QRegularExpression(text("^已删除序列 power_up（含 \\d+ 个步骤）$"))),
             qPrintable(status()));
    m_person->chooseForSequence(0, "删除所选序列");
    QCOMPARE(status(), text("已删除序列 ecu_check（含 11 个步骤），小程序中已没有序列"));
    // Where one would add something it says what is missing, and when one tries.
    const auto hint = [](const QWidget* view) {
        const auto* label = view->findChild<QLabel*>(text("emptyHint"));
        return label && label->isVisible() ? label->text() : QString();
    };
    QTRY_COMPARE(hint(m_person->sequences()), text("没有序列，右键单击此处添加"));
    QTRY_COMPARE(hint(m_person->steps()), text("没有序列，请先在“序列”中添加"));
    m_person->chooseStep("延时");
    QCOMPARE(status(), text("没有序列，请先在“序列”中添加"));
    m_person->showTab("变量");
    QTRY_COMPARE(hint(m_person->variables()), text("没有序列，无法添加变量"));
}

void WindowTest::usersOfARenamedVariableAreTold()
{
    openWindow("ecu_check");
    m_person->showTab("变量");
    m_person->renameVariable("fail_count", "failures");
    const QString told = text("变量 fail_count 已改名为 failures，仍有 6 个步骤使用旧名称");
    QCOMPARE(status(), told);
    // The line of the output leads to the first of them.
    const QTextBlock line = output()->document()->lastBlock();
    QVERIFY2(line.text().endsWith(told + text("，第一个: 步骤“初始化”")), qPrintable(line.text()));
    m_person->showTab("输出");
    m_person->doubleClickLine(output(), line.blockNumber());
    QCOMPARE(m_person->steps()->currentIndex().data().toString(), text("初始化"));

    // A name that nobody uses is nobody's concern; a step that is being written counts.
    m_person->renameVariable("failures", "spare");
    QCOMPARE(status(), told);
    m_person->type("textEdit", "spare = 1;");
    m_person->chooseForVariable("spare", "删除选中变量");
    QCOMPARE(status(), text("已删除变量 spare，仍有 1 个步骤使用它"));
}

void WindowTest::hiddenToolBarsComeBack()
{
    openWindow();
    const QList<QAction*> entries = find<QMenu>("viewMenu")->actions();
    for (const char* name : {"projectBar", "editorBar"}) {
        auto* bar = find<QToolBar>(name);
        bar->hide();
        QAction* entry = bar->toggleViewAction();
        QVERIFY(entries.contains(entry) && entry->text().endsWith(text("工具栏")));
        entry->trigger();
        QVERIFY(bar->isVisible());
    }
    QCOMPARE(find<QToolBar>("projectBar")->actions().first()->toolTip(), text("打开工程 (Ctrl+O)"));
}

/// The main sequence is run while another one is edited, which it calls.
void WindowTest::calledSequenceIsNamedInARun()
{
    openWindow("ecu_check");
    m_person->showTab("序列");
    m_person->clickSequence(1);
    m_person->clickStep("采样电压");
    m_person->showTab("变量");
    const QString edited = variables();
    const auto* name = find<QLabel>("runSequenceLabel");
    m_person->pressRunMain();
    QTRY_COMPARE_WITH_TIMEOUT(name->text(), text("序列: power_up"), Patience);
    QVERIFY(name->isVisible());
    const auto* shown = find<QWidget>("widget_para")->findChild<QTreeView*>(text("runTreeView"));
    QVERIFY(shown->isVisible());
    QCOMPARE(test_support::printTree(*shown->model()).join(u' '), edited);

    sdk_ui_interface::processedit::stopCApplet(text("ecu_check"), false);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), Patience);
    QVERIFY(m_person->variables()->isVisible());
    QCOMPARE(variables(), edited);
    m_person->showTab("编辑序列");
    QCOMPARE(m_person->steps()->currentIndex().data().toString(), text("采样电压"));
    QCOMPARE(m_person->sequences()->currentIndex().row(), 1);
}

PE_WIDGET_TEST("window_test", WindowTest)
#include "window_test.moc"
