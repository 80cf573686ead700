#include "shell/ProcessEditWidget.h"

#include "edits/DocumentChange.h"
#include "model/process_blocks.h"
#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/VciTransThread.h"
#include "shell/documents/variable_use.h"
#include "standalone/compiler/compiler.h"
#include "standalone/host/Host.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

#include <future>

namespace processedit = sdk_ui_interface::processedit;
using sdk_ui_interface::capplet::isCAppletExist;
using standalone::SystemVariables;
using Editor = ProcessEditWidget;

// What a host can do with applets that no window shows; there isn't even a GUI here.
class WithoutWidgetTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void lifeOfAnApplet();
    void pathsOfApplets();
    void loadsADocument();
    void renamed();
    void clearedConversionThreadsAreGone();
    void compiles();
    void namesThatStepsUse();
    void usesOfAddedSteps();
    void changedSystemVariable();
    void changedTypeReachesDiagnosticSteps();

private:
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString makeSequence() const { return processedit::createSeuqence(m_name, text("main_seq")); }
    static void define(const char* name, DataCategoryType category)
    {
        SystemVariables::instance().define({text(name), QString(), 1, category, QString(), 2});
    }

    const QString m_name = text("headless");
    std::unique_ptr<QTemporaryDir> m_folder;
};

void WithoutWidgetTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    standalone::Host::instance().setProjectPath(m_folder->path());
    QVERIFY(Editor::createAppletShell(m_name));
}

void WithoutWidgetTest::cleanup()
{
    Editor::deleteCApplet(m_name, true);
    QVERIFY(!isCAppletExist(m_name));
}

void WithoutWidgetTest::lifeOfAnApplet()
{
    QVERIFY(isCAppletExist(m_name));
    QVERIFY(Editor::createAppletShell(m_name)); // there already: as good
    QVERIFY(!Editor::createAppletShell(QString()));
    makeSequence();
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    process_edit::addVariable(m_name.toStdString(), ProcessVariable, m_name.toStdString());
    // Nothing runs, so it goes at once, with its paths.
    Editor::deleteCApplet(m_name, false);
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
    QVERIFY(process_edit::getAllCAppletVariable(m_name.toStdString()).empty());
    QVERIFY(!isCAppletExist(m_name));
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    Editor::deleteCApplet(text("stranger"), false);
}

void WithoutWidgetTest::pathsOfApplets()
{
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    QVERIFY(!Editor::bindAppletScriptPath(m_name, QString()));
    QVERIFY(!Editor::bindAppletScriptPath(QString(), folder()));
    Editor::setAppletJsonAndVciPath(m_name, text("/a/"), text("/v/"));
    QVERIFY(Editor::bindAppletScriptPath(m_name, folder()));
    QCOMPARE(Editor::appletJsonPath(m_name), folder());
    QCOMPARE(Editor::appletVciPath(m_name), text("/v/"));
    // A path that comes with the creation is for an applet without one.
    QVERIFY(LogicMaster::instance()->createApplet(text("fresh"), text("/f/")));
    QCOMPARE(Editor::appletVciPath(text("fresh")), text("/f/"));
    Editor::deleteCApplet(text("fresh"), true);
}

void WithoutWidgetTest::loadsADocument()
{
    QVERIFY(!Editor::ensureAppPedtLoaded(m_name)); // it has no path yet
    QVERIFY(!Editor::ensureAppPedtLoaded(QString()));
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    for (const char* json : {"{\"logicview\":", "{\"logicview\":{\"sequences\":[]}}"}) {
        QVERIFY(test_support::putFile(folder() + text("processInfo.pedt"), json));
        QCOMPARE(Editor::ensureAppPedtLoaded(m_name), QByteArray(json).endsWith('}'));
    }
    QCOMPARE(errors.count(), 0);
}

void WithoutWidgetTest::renamed()
{
    const QString fresh = text("renamed");
    const QString id = makeSequence();
    process_edit::addVariable("headless", ProcessVariable, "headless");
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::sigRename);
    Editor::setAppletJsonAndVciPath(fresh, folder() + text("wrong/"), QString());
    QVERIFY(Editor::renameCApplet(m_name, fresh));
    QCOMPARE(told.at(0), QList<QVariant>({m_name, fresh}));
    QCOMPARE(Editor::appletJsonPath(fresh), folder());
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    QVERIFY(isCAppletExist(fresh));
    QCOMPARE(processedit::getSequence(fresh, id).name, std::string("main_seq"));
    QCOMPARE(int(process_edit::getAllCAppletVariable("renamed").size()), 1);
    // A name that is taken would mix two documents.
    makeSequence();
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    QVERIFY(!Editor::renameCApplet(m_name, fresh));
    QVERIFY(!Editor::renameCApplet(m_name, QString()));
    QCOMPARE(told.count(), 1);
    QCOMPARE(errors.count(), 2);
    QCOMPARE(Editor::appletJsonPath(fresh), folder());
    Editor::deleteCApplet(fresh, true);
}

void WithoutWidgetTest::clearedConversionThreadsAreGone()
{
    QVERIFY(Editor::createAppletShell(text("one")));
    QVERIFY(Editor::createAppletShell(text("two")));
    const auto threads = [] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return LogicMaster::instance()->findChildren<QThread*>().size();
    };
    QVERIFY(threads() >= 2);
    auto* running = LogicMaster::instance()->findChildren<VciTransThread*>().last();
    running->setTargetPath(folder() + text("converted"));
    running->startConversion({text("Sequence_0")});
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::vciTransFinish);
    Editor::clearTransVciThread();
    QTRY_COMPARE(threads(), 0);
    QVERIFY(told.count() <= 1); // it may have ended before
    // Only an applet that is created anew has one again.
    QVERIFY(Editor::createAppletShell(text("one")));
    QCOMPARE(threads(), 0);
    for (const char* name : {"one", "two"})
        Editor::deleteCApplet(text(name), true);
    QVERIFY(Editor::createAppletShell(text("one")));
    QCOMPARE(threads(), 1);
    Editor::deleteCApplet(text("one"), true);
}

void WithoutWidgetTest::compiles()
{
    QString sequence;
    QVERIFY(!Editor::compileProcessEdit(m_name, {}, sequence));
    const QString id = makeSequence();
    std::promise<compileResult> finished;
    QVERIFY(Editor::compileProcessEdit(
        m_name,
        [&](compileResult result, quint64, const char*, const char*) {
            finished.set_value(result);
        },
        sequence));
    QCOMPARE(sequence, id);
    auto outcome = finished.get_future();
    QVERIFY(outcome.wait_for(std::chrono::minutes(1)) == std::future_status::ready);
    QCOMPARE(outcome.get(), CompileSucceeded);
    // The host's own end is the only one: nothing is pending, nobody else is told.
    QVERIFY(LogicMaster::instance()->takePendingCompile(m_name).sequenceId.isEmpty());
    standalone::shutdownCompiler();
}

void WithoutWidgetTest::namesThatStepsUse()
{
    const auto namesIn = [](IProcessBlock&& block) {
        block.preCondition = "before > 0x10";
        QStringList names = variable_use::namesIn(block).values();
        names.sort();
        return names.join(u' ');
    };
    ConditionProcessBlock condition(step_type::While);
    condition.setFun1("left");
    condition.setFun2("right2 + 2");
    QCOMPARE(namesIn(std::move(condition)), text("before left right2"));
    ForProcessBlock loop;
    loop.setFun1("i = 0");
    loop.setFun2("i < n");
    loop.setFun3("i++");
    QCOMPARE(namesIn(std::move(loop)), text("before i n"));
    ExpressionProcessBlock expression;
    expression.leftValue = "a";
    expression.rightExpression = "f(b)*2";
    QCOMPARE(namesIn(std::move(expression)), text("a b before f"));
    StatementProcessBlock statement;
    statement.setCustomCode("x1=车速;");
    QCOMPARE(namesIn(std::move(statement)), text("before x1 车速"));
    ApiProcessBlock call;
    call.returnVariable = "result";
    ApiProcessBlock::Parameter parameter;
    parameter.value = "arg";
    call.setParameters({parameter});
    QCOMPARE(namesIn(std::move(call)), text("arg before result"));
    RecvMessageProcessBlock receive;
    receive.id = {"sys_id", true};
    receive.messageVariable = "frame";
    QCOMPARE(namesIn(std::move(receive)), text("before frame sys_id"));
    QCOMPARE(namesIn(DelayProcessBlock()), text("before"));
}

/// A step comes with all that lies under it, as a quick step does.
void WithoutWidgetTest::usesOfAddedSteps()
{
    const QString id = makeSequence();
    const auto loop =
        applet_fixture::addStep<ForProcessBlock>(m_name, id, text("1"), step_type::For, "循环");
    const QString loopId = QString::fromStdString(loop->uuid);
    const auto inner = applet_fixture::addStep<StatementProcessBlock>(m_name, id, loopId,
                                                                      step_type::Statement, "语句");
    inner->setCustomCode("speed = 1;");
    DocumentChange change;
    change.appName = m_name;
    change.items.push_back(
        {DocumentChange::Part::Step, DocumentChange::Kind::Added, id, loopId, nullptr, nullptr});
    variable_use::recordChange(change);
    const auto uses = LogicMaster::instance()->variableUse(m_name).value(id);
    QVERIFY(uses.value(QString::fromStdString(inner->uuid)).contains(text("speed")));
}

void WithoutWidgetTest::changedSystemVariable()
{
    const QString id = makeSequence();
    auto step = applet_fixture::addStep<StatementProcessBlock>(m_name, id, text("2"),
                                                               step_type::Statement, "语句");
    step->setCustomCode("speed = 1;");
    processedit::createSeuqence(m_name, text("other"));
    variable_use::recordApplet(m_name, false);

    auto& variables = SystemVariables::instance();
    QSignalSpy uses(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemVarChange);
    for (const char* name : {"speed", "torque"}) {
        define(name, DoubleCategory);
        variables.setValue(text(name), text("3"));
    }
    variables.waitForListeners();
    using Users = QVector<QPair<QString, QString>>;
    QCOMPARE(uses.count(), 1);
    QCOMPARE(uses.at(0).at(0).value<Users>(), Users({{m_name, id}}));

    Editor::uninstallVarNofity({m_name, text("stranger")});
    variables.setValue(text("speed"), text("4"));
    variables.waitForListeners();
    QCOMPARE(uses.count(), 1);
}

void WithoutWidgetTest::changedTypeReachesDiagnosticSteps()
{
    const auto block = std::make_shared<UdsProcessBlock>(2);
    block->uuid = "uds-1";
    Editor::setGetUDSProcessBlockUseVarsCallback([](const std::shared_ptr<UdsProcessBlock>&,
                                                    QMap<QString, DataCategoryType>& system,
                                                    QMap<QString, DrelVarType>& own) {
        system.insert(text("speed"), SignedCategory);
        own.insert(text("speed_own"), DrelU8);
        return true;
    });
    Editor::updateUdsVarInfo(m_name, block);
    QCOMPARE(LogicMaster::instance()->udsBlocks(m_name), QStringList{text("uds-1")});
    QSignalSpy types(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemUdsVarChange);
    const auto change = [](const char* name, DataCategoryType category) {
        define(name, NoCategory);
        define(name, category);
        SystemVariables::instance().waitForListeners();
    };
    change("speed", DoubleCategory);
    change("speed_own", DoubleCategory); // of the applet, not of the system
    change("speed", NoCategory);         // a category without a type
    QCOMPARE(types, QList<QVariantList>{{QStringList{m_name}}});
    Editor::clearUDSVarInfo();
    change("speed", SignedCategory);
    QCOMPARE(types.count(), 1);
    Editor::setGetUDSProcessBlockUseVarsCallback({});
}

PE_TEST("without_widget_test", WithoutWidgetTest)
#include "without_widget_test.moc"
