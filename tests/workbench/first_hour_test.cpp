// What a newcomer does in the first hour, in the window, on the example.

#include "tests/workbench/Person.h"

#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/folders.h"
#include "tests/support/own_settings.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "workbench/MainWindow.h"
#include "workbench/OutputPane.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace processedit = sdk_ui_interface::processedit;

class FirstHourTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void typingGoesIntoTheRowInSight();
    void whatWentIsTold();
    void usersOfARenamedVariableAreTold();
    void newStepHasTheKeys();
    void saveIsTold();
    void keysStandInToolTips();
    void hiddenToolBarsComeBack();
    void returnDeletesNoApplet();
    void backAfterARun();

private:
    /// The code of a statement step, by its name in the shown sequence.
    std::string codeOf(const char* step) const;
    QString status() const { return m_window->statusBar()->currentMessage(); }
    OutputPane* output() const
    {
        return qobject_cast<OutputPane*>(
            m_window->findChild<QDockWidget*>(text("outputDock"))->widget());
    }

    const QString m_app = QStringLiteral("ecu_check");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Person> m_person;
};

void FirstHourTest::initTestCase()
{
    test_support::useOwnSettings("first_hour");
}

void FirstHourTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), m_folder->path()));
    m_window = std::make_unique<MainWindow>();
    m_window->openProject(ProjectFolder(m_folder->path()));
    m_window->openApplet(m_app);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_person = std::make_unique<Person>(*m_window);
}

void FirstHourTest::cleanup()
{
    m_person.reset();
    m_window.reset();
}

std::string FirstHourTest::codeOf(const char* step) const
{
    for (const auto& block : processedit::getAllProcessBySequenceID(
             m_app, m_window->editor()->getCurrentShowSequenceId(),
             IProcessBlock::ProcessBlockBelong(0))) {
        const auto statement = std::dynamic_pointer_cast<StatementProcessBlock>(block);
        if (statement && statement->name == step)
            return statement->customCode();
    }
    return "no such step";
}

void FirstHourTest::typingGoesIntoTheRowInSight()
{
    m_person->clickStep("判定合格");
    const std::string before = codeOf("判定合格");
    m_person->pressInSteps(Qt::Key_End);
    QCOMPARE(m_person->steps()->currentIndex().data().toString(), text("记录用时"));
    m_person->type("textEdit", "log_info(\"here\");");
    m_window->editor()->syncAuthoringPanelsToSdk();
    QCOMPARE(codeOf("记录用时"), std::string("log_info(\"here\");"));
    QCOMPARE(codeOf("判定合格"), before);
}

void FirstHourTest::whatWentIsTold()
{
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
    m_person->pressRunCurrent();
    QCOMPARE(m_person->boxes().last(), text("警告: 无序列信息，请添加序列"));
}

void FirstHourTest::usersOfARenamedVariableAreTold()
{
    m_person->showTab("变量");
    m_person->renameVariable("fail_count", "failures");
    const QString told = text("变量 fail_count 已改名为 failures，仍有 6 个步骤使用旧名称");
    QCOMPARE(status(), told);
    // The line of the output leads to the first of them.
    const QTextBlock line = output()->document()->lastBlock();
    QVERIFY2(line.text().endsWith(told + text("，第一个: 步骤“初始化”")), qPrintable(line.text()));
    m_person->showTab("输出");
    const QPoint spot = output()->cursorRect(QTextCursor(line)).center() + QPoint(60, 0);
    QTest::mouseDClick(output()->viewport(), Qt::LeftButton, {}, spot);
    QCOMPARE(m_person->steps()->currentIndex().data().toString(), text("初始化"));

    // A name that nobody uses is nobody's concern; a step that is being written counts.
    m_person->renameVariable("failures", "spare");
    QCOMPARE(status(), told);
    m_person->type("textEdit", "spare = 1;");
    m_person->chooseForVariable("spare", "删除选中变量");
    QCOMPARE(status(), text("已删除变量 spare，仍有 1 个步骤使用它"));
}

void FirstHourTest::newStepHasTheKeys()
{
    m_person->clickStep("上电");
    m_person->chooseStep("延时");
    const QModelIndex added = m_person->steps()->currentIndex();
    const QString name = added.data().toString();
    QVERIFY2(name.startsWith(text("延时")), qPrintable(name));
    QWidget* receiver = QApplication::focusWidget();
    QTest::keyClick(receiver, Qt::Key_Delete);
    QCOMPARE(status(), text("已删除 ") + name);
}

void FirstHourTest::saveIsTold()
{
    m_person->pressTool("saveBtn");
    QCOMPARE(status(), text("已保存 ") + m_folder->filePath(text("CApplet/ecu_check/")) +
                           text("processInfo.pedt"));
}

void FirstHourTest::keysStandInToolTips()
{
    const auto tip = [this](const char* button) {
        return m_window->findChild<QToolButton*>(text(button))->toolTip();
    };
    QCOMPARE(tip("saveBtn"), text("保存 (Ctrl+S)"));
    QCOMPARE(tip("runBtn"), text("运行 (Ctrl+F5)"));
    m_window->editor()->setRuntimeStaleHint(true);
    m_person->pressTool("compileBtn");
    QTRY_COMPARE_WITH_TIMEOUT(tip("compileBtn"), text("编译 (F7)"), 120000);
    QStringList tips;
    for (const QAction* action : m_window->findChild<QToolBar*>(text("projectBar"))->actions())
        tips << action->toolTip();
    QVERIFY2(tips.contains(text("打开工程 (Ctrl+O)")), qPrintable(tips.join(QLatin1Char(' '))));
}

void FirstHourTest::hiddenToolBarsComeBack()
{
    const auto* menu = m_window->findChild<QMenu*>(text("viewMenu"));
    for (const char* name : {"projectBar", "editorBar"}) {
        auto* bar = m_window->findChild<QToolBar*>(text(name));
        bar->hide();
        const QList<QAction*> entries = menu->actions();
        QAction* entry = bar->toggleViewAction();
        QVERIFY(entries.contains(entry) && entry->text().endsWith(text("工具栏")));
        entry->trigger();
        QVERIFY(bar->isVisible());
    }
}

void FirstHourTest::returnDeletesNoApplet()
{
    const auto handler = user_dialogs::setHandler({});
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
    user_dialogs::setHandler(handler);
    QVERIFY2(asked.contains(m_app), qPrintable(asked));
    QVERIFY(m_window->editor() && ProjectFolder(m_folder->path()).applets().contains(m_app));
}

/// The main sequence is run while another one is edited, which it calls.
void FirstHourTest::backAfterARun()
{
    m_person->showTab("序列");
    m_person->clickSequence(1);
    m_person->clickStep("采样电压");
    m_person->showTab("变量");
    const QStringList edited = test_support::printTree(*m_person->variables()->model());
    const auto* name = m_window->findChild<QLabel*>(text("runSequenceLabel"));
    m_person->pressRunMain();
    QTRY_COMPARE_WITH_TIMEOUT(name->text(), text("序列: power_up"), 120000);
    QVERIFY(name->isVisible());
    const auto* variables = m_window->findChild<QWidget*>(text("widget_para"))
                                ->findChild<QTreeView*>(text("runTreeView"));
    QVERIFY(variables->isVisible());
    QCOMPARE(test_support::printTree(*variables->model()), edited);

    processedit::stopCApplet(m_app, false);
    QTRY_VERIFY_WITH_TIMEOUT(m_window->findChild<QToolButton*>(text("runBtn"))->isEnabled(), 60000);
    QVERIFY(m_person->variables()->isVisible());
    QCOMPARE(test_support::printTree(*m_person->variables()->model()), edited);
    m_person->showTab("编辑序列");
    QCOMPARE(m_person->steps()->currentIndex().data().toString(), text("采样电压"));
    QCOMPARE(m_person->sequences()->currentIndex().row(), 1);
}

PE_WIDGET_TEST("first_hour", FirstHourTest)
#include "first_hour_test.moc"
