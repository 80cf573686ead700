#include "shell/ProcessEditWidget.h"

#include "logic/LogicView.h"
#include "model/process_blocks.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/child_processes.h"

#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

class ProcessEditWidgetTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void emptyAppletGetsASequence();
    void savingWritesWhatWaitsInAPanel();
    void panelsFollowTheClickedStep();
    void panelsSayWhyTheyAreEmpty();
    void runTabKeepsTheUsersSizes();
    void widthsGoToTheSettings();
    void refusedSaveIsASignal();
    void destroyedInTheMiddleOfARun();
    void outlivesItsWidgetOnRequest();

private:
    template <class Widget> Widget* find(const QWidget* parent, const char* name) const
    {
        return parent->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString sequence() const { return m_editor->getCurrentShowSequenceId(); }
    std::shared_ptr<IProcessBlock> addDelay(int milliseconds);
    void click(const std::shared_ptr<IProcessBlock>& block);

    static constexpr int Patience = 60000;
    const QString m_name = QStringLiteral("widget_test");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProcessEditWidget> m_editor;
};

void ProcessEditWidgetTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    standalone::Host::instance().setProjectPath(m_folder->path());
    m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
    m_editor->createCApplet(m_name);
    m_editor->setProcessJsonAndVciPath(folder(), folder());
    m_editor->setSettingPath(folder());
    m_editor->load(false);
    m_editor->resize(1200, 700);
    m_editor->show();
}

void ProcessEditWidgetTest::cleanup()
{
    m_editor.reset();
    LogicMaster::instance()->removeApplet(m_name, true);
}

std::shared_ptr<IProcessBlock> ProcessEditWidgetTest::addDelay(int milliseconds)
{
    auto step = applet_fixture::addStep<DelayProcessBlock>(m_name, sequence(), QStringLiteral("1"),
                                                           step_type::Delay, "等待");
    step->delay = milliseconds;
    processedit::updateProcess(m_name, sequence(), step);
    m_editor->loadDataToUI(m_name, false);
    return step;
}

void ProcessEditWidgetTest::click(const std::shared_ptr<IProcessBlock>& block)
{
    m_editor->processItemClickedSlot(block->baseType(), QString::fromStdString(block->uuid));
}

void ProcessEditWidgetTest::emptyAppletGetsASequence()
{
    const auto sequences = processedit::getAllSequenceByAppName(m_name);
    QCOMPARE(int(sequences.size()), 1);
    QCOMPARE(QString::fromStdString(sequences[0].name), QStringLiteral("Sequence_0"));
    QCOMPARE(sequence(), QString::fromStdString(sequences[0].id));
    QVERIFY(m_editor->currentShowSequenceIsEmpty());
}

void ProcessEditWidgetTest::savingWritesWhatWaitsInAPanel()
{
    const auto step = addDelay(10);
    click(step);
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    QStringList saved;
    m_editor->setOnAuthoringSavedCallback([&saved](const QString& name) { saved << name; });
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(QStringLiteral("改名"));
    QCOMPARE(step->name, std::string("等待"));
    m_editor->save(QString());
    QCOMPARE(step->name, std::string("改名"));
    QCOMPARE(modified.count(), 1);
    QCOMPARE(saved, QStringList{m_name});
    QFile document(folder() + QStringLiteral("processInfo.pedt"));
    QVERIFY(document.open(QIODevice::ReadOnly));
    QVERIFY(document.readAll().contains("改名"));
}

void ProcessEditWidgetTest::panelsFollowTheClickedStep()
{
    const auto first = addDelay(10);
    const auto second = addDelay(20);
    click(first);
    auto* name = find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit");
    name->setText(QStringLiteral("第一"));
    click(second);
    // What was typed goes to the step that it was typed for.
    QCOMPARE(first->name, std::string("第一"));
    QCOMPARE(second->name, std::string("等待"));
    QCOMPARE(name->text(), QStringLiteral("等待"));
    QCOMPARE(find<QLineEdit>(m_editor->getSettingWgt(), "editPreview")->text(),
             QString::fromStdString(second->description()));
}

void ProcessEditWidgetTest::panelsSayWhyTheyAreEmpty()
{
    const QWidget* panel = m_editor->getControlWgt();
    const auto* message = find<QLabel>(panel, "label_12");
    m_editor->processItemClickedSlot(MainFlow, QStringLiteral("1"));
    QCOMPARE(message->text(), QStringLiteral("该节点不可编辑"));
    m_editor->processItemClickedSlot(NoBlock, QString());
    QCOMPARE(message->text(), QStringLiteral("当前未选中步骤节点"));
    const auto step = applet_fixture::addStep<PlainProcessBlock>(
        m_name, sequence(), QStringLiteral("1"), step_type::Break, "跳出");
    step->property.editable = true;
    click(step);
    QVERIFY(message->isHidden());
    QCOMPARE(find<QLabel>(panel, "label_3")->text(), QStringLiteral("此步骤类型无需设置属性"));
}

void ProcessEditWidgetTest::runTabKeepsTheUsersSizes()
{
    auto* splitter = find<QSplitter>(m_editor.get(), "splitter");
    splitter->setSizes({250, 600, 350});
    const QList<int> sizes = splitter->sizes();
    QSignalSpy mode(m_editor.get(), &ProcessEditWidget::sigPrcoessMode);
    m_editor->onLogicWidgetTabChanged(1);
    QVERIFY(splitter->sizes() != sizes);
    QVERIFY(!find<QWidget>(m_editor.get(), "treeWidget")->isEnabled());
    QVERIFY(!find<QTabWidget>(m_editor.get(), "attribute_tab")->isTabEnabled(1));
    m_editor->onLogicWidgetTabChanged(1);
    m_editor->onLogicWidgetTabChanged(0);
    QCOMPARE(splitter->sizes(), sizes);
    QVERIFY(find<QWidget>(m_editor.get(), "treeWidget")->isEnabled());
    QCOMPARE(mode.count(), 3);
}

void ProcessEditWidgetTest::widthsGoToTheSettings()
{
    m_editor->onSaveProcessTreeWidthSlot({QStringLiteral("11"), QStringLiteral("12")}, true);
    m_editor->onSaveVarTreeWidthSlot({});
    const QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("Widget/ProcessRunWidgetWidth")).toString(),
             QStringLiteral("11,12"));
    QVERIFY(!settings.contains(QStringLiteral("Widget/VarWidgetWidth")));
}

void ProcessEditWidgetTest::refusedSaveIsASignal()
{
    QSignalSpy refused(m_editor.get(), &ProcessEditWidget::sigSave);
    m_editor->save(folder() + QStringLiteral("missing/copy.pedt"));
    QCOMPARE(refused.count(), 1);
    QVERIFY(!m_editor->saveApp(m_name, false, folder() + QStringLiteral("missing/copy.pedt")));
    QVERIFY(m_editor->saveApp(m_name, false, folder() + QStringLiteral("copy.pedt")));
    QVERIFY(QFile::exists(folder() + QStringLiteral("copy.pedt")));
    QCOMPARE(refused.count(), 2);
}

void ProcessEditWidgetTest::destroyedInTheMiddleOfARun()
{
    addDelay(60000);
    // Told on the runner's thread: only a queued receiver may count.
    int states = 0;
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runStateSignal, m_editor.get(),
        [&states] { ++states; }, Qt::QueuedConnection);
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QTRY_VERIFY_WITH_TIMEOUT(states > 0, Patience);
    m_editor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner").isEmpty(),
        Patience);
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
}

void ProcessEditWidgetTest::outlivesItsWidgetOnRequest()
{
    addDelay(10);
    m_editor->setProcessEditReset(false);
    m_editor.reset();
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), folder());
    QVERIFY(ProcessEditWidget::ensureAppPedtLoaded(m_name));
}

QTEST_MAIN(ProcessEditWidgetTest)
#include "process_edit_widget_test.moc"
