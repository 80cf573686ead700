#include "shell/ProcessEditWidget.h"

#include "logic/LogicView.h"
#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "sequences/wgtSequenceTable.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/print_tree.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>
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
    void settingsAreReadOnce();
    void refusedSaveIsASignal();
    void tablesAreReadOnce();
    void droppedFiles_data();
    void droppedFiles();
    void draggedSequenceShowsTheTemplates();
    void sequencesBecomeTemplates();
    void sequenceTableDrivesThePanels();
    void removedSequencesLeaveThePanels();
    void hostAddsVariables();
    void changedSystemVariableReloadsThePanel();
    void loadTellsTheHost();
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

void ProcessEditWidgetTest::settingsAreReadOnce()
{
    auto* splitter = find<QSplitter>(m_editor.get(), "splitter");
    const auto reopen = [this](const char* widths) {
        m_editor.reset();
        QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("Widget/WidgetWidth"), QString::fromLatin1(widths));
        settings.sync();
        m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
        m_editor->resize(1200, 700);
        m_editor->createCApplet(m_name);
        m_editor->setProcessJsonAndVciPath(folder(), folder());
        m_editor->setSettingPath(folder());
        m_editor->show();
        const QList<int> sizes = find<QSplitter>(m_editor.get(), "splitter")->sizes();
        m_editor->load(false);
        return sizes;
    };
    // Two values are no sizes.
    const QList<int> own = reopen("250,600");
    splitter = find<QSplitter>(m_editor.get(), "splitter");
    QCOMPARE(splitter->sizes(), own);
    reopen("260,610,310");
    splitter = find<QSplitter>(m_editor.get(), "splitter");
    QVERIFY(splitter->sizes() != own);
    // What the user has dragged since stays when the document is loaded again.
    splitter->setSizes({300, 500, 380});
    const QList<int> dragged = splitter->sizes();
    m_editor->load(false);
    QCOMPARE(splitter->sizes(), dragged);
    // On the run tab the sizes to come back to are kept, not the run tab's own.
    m_editor->saveSplitterSizes();
    m_editor->onLogicWidgetTabChanged(1);
    m_editor->saveSplitterSizes();
    const QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
    QStringList texts;
    for (int size : dragged)
        texts << QString::number(size);
    QCOMPARE(settings.value(QStringLiteral("Widget/WidgetWidth")).toString(),
             texts.join(QLatin1Char(',')));
}

void ProcessEditWidgetTest::tablesAreReadOnce()
{
    const QString file = folder() + QStringLiteral("globalVariable.json");
    QVERIFY(test_support::putFile(
        file, R"({"variables": [{"name": "late", "type": "s32", "uuid": "g1", "value": "1"}]})"));
    const ProcessEditWidget second(QStringLiteral("Test"));
    for (const processVariable& variable : process_edit::getAllGlobalVariable())
        QVERIFY(variable.name != "late");
}

void ProcessEditWidgetTest::droppedFiles_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("dialogs");
    QTest::addColumn<int>("imports");
    const QStringList first{QStringLiteral("导入:存在多个文件, 即将默认导入第一个文件")};
    QTest::newRow("one") << QStringList{QStringLiteral("/x/a.dpe")} << QStringList() << 1;
    QTest::newRow("encrypted, in capitals")
        << QStringList{QStringLiteral("/x/a.DPEENC")} << QStringList() << 1;
    QTest::newRow("several") << QStringList{QStringLiteral("/x/a.dpe"), QStringLiteral("/x/b.dpe")}
                             << first << 1;
    QTest::newRow("another among them")
        << QStringList{QStringLiteral("/x/a.txt"), QStringLiteral("/x/b.dpe")} << QStringList()
        << 1;
    QTest::newRow("none of them") << QStringList{QStringLiteral("/x/a.txt")} << QStringList() << 0;
}

void ProcessEditWidgetTest::droppedFiles()
{
    QFETCH(QStringList, files);
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files)
        urls << QUrl::fromLocalFile(file);
    data.setUrls(urls);
    QStringList dialogs;
    user_dialogs::setHandler([&dialogs](const user_dialogs::Message& message) {
        dialogs << message.title + QLatin1Char(':') + message.text;
        return user_dialogs::Answer();
    });
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_editor.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_editor.get(), &drop);
    user_dialogs::setHandler({});
    QTEST(dialogs, "dialogs");
    QTEST(int(notices.count()), "imports");
}

void ProcessEditWidgetTest::draggedSequenceShowsTheTemplates()
{
    auto* tabs = find<QTabWidget>(m_editor.get(), "tabWidget");
    QMimeData other;
    other.setText(QStringLiteral("x"));
    QMimeData sequence;
    sequence.setData(QStringLiteral("application/sequence_drag"), QByteArray());
    for (const QMimeData* data : {&other, &sequence}) {
        QCOMPARE(tabs->currentIndex(), 0);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tabs->tabBar(), &enter);
    }
    QCOMPARE(tabs->currentIndex(), 1);
}

void ProcessEditWidgetTest::sequencesBecomeTemplates()
{
    addDelay(10);
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::sigUpdateTemplateWidget);
    m_editor->onAddTemplateSequence({QStringLiteral("no such sequence")});
    QCOMPARE(told.count(), 0);
    m_editor->onAddTemplateSequence({sequence()});
    QCOMPARE(told.count(), 1);
    QCOMPARE(find<QTabWidget>(m_editor.get(), "tabWidget")->currentIndex(), 1);
    QCOMPARE(find<QTreeView>(m_editor.get(), "template_treeView")->model()->rowCount(), 1);
    QFile file(folder() + QStringLiteral("processtemplate.peTemp"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("等待"));
    processedit::removeAllProcessTemplate(false);
}

void ProcessEditWidgetTest::sequenceTableDrivesThePanels()
{
    auto* table = m_editor->findChild<wgtSequenceTable*>();
    const auto* view = m_editor->findChild<LogicView*>();
    const QString first = sequence();
    auto call = applet_fixture::addStep<SequenceProcessBlock>(m_name, first, QStringLiteral("1"),
                                                              step_type::Sequence, "调用");
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    table->addSequenceSlot();
    const QString added = sequence();
    QVERIFY(added != first && view->editModel(added));
    QCOMPARE(modified.count(), 1);
    call->sourceKind = SequenceProcessBlock::AppletSequence;
    call->sequenceId = added.toStdString();
    call->sequenceName = "Sequence_1";
    processedit::updateProcess(m_name, first, call);
    m_editor->loadDataToUI(m_name, false);
    QCOMPARE(sequence(), first);
    // A new name reaches the row that calls the sequence.
    auto* rows = table->findChild<QTableWidget*>();
    rows->item(1, 0)->setText(QStringLiteral("renamed"));
    const QString text =
        test_support::printTree(*view->editModel(first), {0, 1}).join(QLatin1Char('\n'));
    QVERIFY2(text.contains(QStringLiteral("renamed")), qPrintable(text));
}

void ProcessEditWidgetTest::removedSequencesLeaveThePanels()
{
    addDelay(10);
    const QString second = processedit::createSeuqence(m_name, QStringLiteral("second"));
    m_editor->loadDataToUI(m_name, false);
    const QString first = sequence();
    const auto* variables = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
    const auto* view = m_editor->findChild<LogicView*>();
    QVERIFY(variables->model() && view->editModel(second));
    m_editor->onRemoveSelectSequence({first});
    QVERIFY(!view->editModel(first) && view->editModel(second));
    QVERIFY(!variables->model());
    QCOMPARE(sequence(), QString());
    m_editor->setCurrentShowSequence(second);
    QVERIFY(variables->model());
    m_editor->onRemoveAllSequence();
    QVERIFY(!view->editModel(second) && !variables->model());
}

void ProcessEditWidgetTest::hostAddsVariables()
{
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    const auto rows = [this] {
        const auto* tree = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
        const QStringList lines = test_support::printTree(*tree->model(), {0, 1, 2});
        return QString(lines.join(QLatin1Char('\n')));
    };
    m_editor->addVarToCurrentView(QStringLiteral("speed"), QStringLiteral(" 12 "), DrelU16,
                                  SequenceVariable, false);
    m_editor->addVarToCurrentView(QStringLiteral("title"), QString(), DrelString, ProcessVariable,
                                  false);
    QVERIFY2(rows().contains(QStringLiteral("speed | 12 | u16")), qPrintable(rows()));
    QVERIFY2(rows().contains(QStringLiteral("title | NULL | string")), qPrintable(rows()));
    // The one that is there takes the new value, wherever it stands.
    m_editor->addVarToCurrentView(QStringLiteral("title"), QStringLiteral("x"), DrelCharPtr,
                                  SequenceVariable, false);
    QVERIFY2(rows().contains(QStringLiteral("title | x | char*")), qPrintable(rows()));
    QCOMPARE(rows().count(QStringLiteral("title")), 1);
    QCOMPARE(modified.count(), 3);
    // A name that no variable may have.
    m_editor->addVarToCurrentView(QStringLiteral("1a"), QString(), DrelU8, SequenceVariable, true);
    QCOMPARE(modified.count(), 3);
}

void ProcessEditWidgetTest::changedSystemVariableReloadsThePanel()
{
    auto step = applet_fixture::addStep<StatementProcessBlock>(
        m_name, sequence(), QStringLiteral("1"), step_type::Statement, "语句");
    step->setCustomCode("speed = 1;");
    m_editor->updateUseSystemVarItemInfo(m_name, false);
    process_edit::addVariable(m_name.toStdString(), SequenceVariable, sequence().toStdString());
    const auto* tree = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
    const auto ownRows = [tree] { return tree->model()->rowCount(tree->model()->index(0, 0)); };
    QCOMPARE(ownRows(), 0);
    auto& variables = standalone::SystemVariables::instance();
    variables.define({QStringLiteral("speed"), QString(), 1, DoubleCategory, QString(), 2});
    variables.setValue(QStringLiteral("speed"), QStringLiteral("3"));
    variables.waitForListeners();
    QTRY_COMPARE(ownRows(), 1);
}

void ProcessEditWidgetTest::loadTellsTheHost()
{
    QStringList told;
    m_editor->setShouldDeferCodeGenCallback([&told] {
        told << QStringLiteral("defer?");
        return false;
    });
    m_editor->setOnCAppletLoadedCallback(
        [&told](const QString& name, bool dataOnly) { told << name + QString::number(dataOnly); });
    m_editor->load(true);
    QCOMPARE(told, QStringList({QStringLiteral("defer?"), m_name + QStringLiteral("1")}));
    // Before it has an applet there is nothing to load or save.
    ProcessEditWidget fresh(QStringLiteral("Test"));
    fresh.setOnCAppletLoadedCallback(
        [&told](const QString&, bool) { told << QStringLiteral("?"); });
    QSignalSpy refused(&fresh, &ProcessEditWidget::sigSave);
    fresh.load(false);
    fresh.save(QString());
    QCOMPARE(told.size(), 2);
    QCOMPARE(refused.count(), 0);
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
