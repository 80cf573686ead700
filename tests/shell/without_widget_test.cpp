#include "shell/ProcessEditWidget.h"

#include "model/process_blocks.h"
#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/VciTransThread.h"
#include "shell/documents/applet_documents.h"
#include "shell/documents/variable_use.h"
#include "standalone/compiler/compiler.h"
#include "standalone/host/Host.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <future>

namespace processedit = sdk_ui_interface::processedit;
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
    void loadsADocument_data();
    void loadsADocument();
    void faultsOfDocuments();
    void renamed();
    void clearedConversionThreadsAreGone();
    void compiles();
    void namesThatStepsUse_data();
    void namesThatStepsUse();
    void changedSystemVariable();
    void changedTypeReachesDiagnosticSteps();

private:
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString makeSequence();

    const QString m_name = QStringLiteral("headless");
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
    QVERIFY(!sdk_ui_interface::capplet::isCAppletExist(m_name));
}

QString WithoutWidgetTest::makeSequence()
{
    return processedit::createSeuqence(m_name, QStringLiteral("main_seq"));
}

void WithoutWidgetTest::lifeOfAnApplet()
{
    QVERIFY(sdk_ui_interface::capplet::isCAppletExist(m_name));
    QVERIFY(Editor::createAppletShell(m_name)); // there already: as good
    QVERIFY(!Editor::createAppletShell(QString()));
    makeSequence();
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    process_edit::addVariable(m_name.toStdString(), ProcessVariable, m_name.toStdString());
    // Nothing runs, so it goes at once, with its paths.
    Editor::deleteCApplet(m_name, false);
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
    QVERIFY(process_edit::getAllCAppletVariable(m_name.toStdString()).empty());
    QVERIFY(!sdk_ui_interface::capplet::isCAppletExist(m_name));
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    Editor::deleteCApplet(QStringLiteral("stranger"), false);
}

void WithoutWidgetTest::pathsOfApplets()
{
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    QVERIFY(!Editor::bindAppletScriptPath(m_name, QString()));
    QVERIFY(!Editor::bindAppletScriptPath(QString(), folder()));
    Editor::setAppletJsonAndVciPath(m_name, QStringLiteral("/a/"), QStringLiteral("/v/"));
    QVERIFY(Editor::bindAppletScriptPath(m_name, folder()));
    QCOMPARE(Editor::appletJsonPath(m_name), folder());
    QCOMPARE(Editor::appletVciPath(m_name), QStringLiteral("/v/"));
    // A path that comes with the creation is for an applet without one.
    LogicMaster* master = LogicMaster::instance();
    QVERIFY(master->createApplet(QStringLiteral("fresh"), QStringLiteral("/f/")));
    QCOMPARE(Editor::appletVciPath(QStringLiteral("fresh")), QStringLiteral("/f/"));
    Editor::deleteCApplet(QStringLiteral("fresh"), true);
}

void WithoutWidgetTest::loadsADocument_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isLoaded");
    const QString name = QStringLiteral("processInfo.pedt");
    QTest::newRow("no document") << QString() << QByteArray() << false;
    QTest::newRow("document") << name << QByteArray("{\"logicview\":{\"sequences\":[]}}") << true;
    QTest::newRow("without its main member") << name << QByteArray("{\"logicvar\":{}}") << false;
    QTest::newRow("damaged") << name << QByteArray("{\"logicview\":") << false;
    QTest::newRow("older version")
        << QStringLiteral("logicview.json") << QByteArray("{\"sequences\":[]}") << true;
}

void WithoutWidgetTest::loadsADocument()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    if (!file.isEmpty())
        QVERIFY(test_support::putFile(folder() + file, text));
    QVERIFY(!Editor::ensureAppPedtLoaded(m_name)); // it has no path yet
    QVERIFY(!Editor::ensureAppPedtLoaded(QString()));
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    QTEST(Editor::ensureAppPedtLoaded(m_name), "isLoaded");
    QCOMPARE(errors.count(), 0);
}

void WithoutWidgetTest::faultsOfDocuments()
{
    QCOMPARE(applet_documents::faultOf(folder()), QString()); // none there
    const rows::Table<QString> table{{"{}", QString()},
                                     {"{\"logicview\": {}}", QString()},
                                     {"[]", QStringLiteral("不是对象 (行 1 列 3)")},
                                     {"{\n\"a\":", QStringLiteral("内容不完整 (行 2 列 5)")},
                                     {"{} x", QStringLiteral("多余的内容 (行 1 列 4)")}};
    for (const auto& [content, fault] : table) {
        const rows::Named named(content);
        QVERIFY(test_support::putFile(folder() + QStringLiteral("processInfo.pedt"), content));
        QCOMPARE(applet_documents::faultOf(folder()), fault);
    }
}

void WithoutWidgetTest::renamed()
{
    const QString fresh = QStringLiteral("renamed");
    const QString id = makeSequence();
    process_edit::addVariable("headless", ProcessVariable, "headless");
    Editor::setAppletJsonAndVciPath(m_name, folder(), folder());
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::sigRename);
    Editor::setAppletJsonAndVciPath(fresh, folder() + QStringLiteral("wrong/"), QString());
    QVERIFY(Editor::renameCApplet(m_name, fresh));
    QCOMPARE(told.at(0), QList<QVariant>({m_name, fresh}));
    QCOMPARE(Editor::appletJsonPath(fresh), folder());
    QCOMPARE(Editor::appletJsonPath(m_name), QString());
    QVERIFY(sdk_ui_interface::capplet::isCAppletExist(fresh));
    QCOMPARE(QString::fromStdString(processedit::getSequence(fresh, id).name),
             QStringLiteral("main_seq"));
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
    QVERIFY(Editor::createAppletShell(QStringLiteral("one")));
    QVERIFY(Editor::createAppletShell(QStringLiteral("two")));
    const auto threads = [] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return LogicMaster::instance()->findChildren<QThread*>().size();
    };
    const int before = threads();
    QVERIFY(before >= 2);
    auto* running = LogicMaster::instance()->findChildren<VciTransThread*>().last();
    const QString target = folder() + QStringLiteral("converted");
    running->setTargetPath(target);
    running->startConversion({QStringLiteral("Sequence_0")});
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::vciTransFinish);
    Editor::clearTransVciThread();
    QTRY_COMPARE(threads(), 0);
    QVERIFY(told.count() <= 1); // it may have ended before
    // Only an applet that is created anew has one again.
    QVERIFY(Editor::createAppletShell(QStringLiteral("one")));
    QCOMPARE(threads(), 0);
    for (const char* name : {"one", "two"})
        Editor::deleteCApplet(QString::fromLatin1(name), true);
    QVERIFY(Editor::createAppletShell(QStringLiteral("one")));
    QCOMPARE(threads(), 1);
    Editor::deleteCApplet(QStringLiteral("one"), true);
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

void WithoutWidgetTest::namesThatStepsUse_data()
{
    QTest::addColumn<int>("stepType");
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char* title, int type, const char* names) {
        QTest::newRow(title) << type
                             << QString::fromUtf8(names).split(QLatin1Char(' '),
                                                               Qt::SkipEmptyParts);
    };
    row("condition", step_type::While, "before left right2");
    row("for", step_type::For, "before i n");
    row("expression", step_type::Expression, "a b before f");
    row("statement", step_type::Statement, "before x1 车速");
    row("call", step_type::Api, "arg before result");
    row("received message", step_type::RecvMessage, "before frame sys_id");
    row("delay", step_type::Delay, "before");
}

void WithoutWidgetTest::namesThatStepsUse()
{
    QFETCH(int, stepType);
    const QString uuid = processedit::createProcess(m_name, makeSequence(), QStringLiteral("1"),
                                                    BasicStep, stepType, -1);
    const auto block = processedit::getProcess(m_name, uuid);
    block->preCondition = "before > 0x10";
    if (auto condition = std::dynamic_pointer_cast<ConditionProcessBlock>(block)) {
        condition->setFun1("left");
        condition->setFun2("right2 + 2");
    } else if (auto loop = std::dynamic_pointer_cast<ForProcessBlock>(block)) {
        loop->setFun1("i = 0");
        loop->setFun2("i < n");
        loop->setFun3("i++");
    } else if (auto expression = std::dynamic_pointer_cast<ExpressionProcessBlock>(block)) {
        expression->leftValue = "a";
        expression->rightExpression = "f(b)*2";
    } else if (auto statement = std::dynamic_pointer_cast<StatementProcessBlock>(block)) {
        statement->setCustomCode("x1=车速;");
    } else if (auto call = std::dynamic_pointer_cast<ApiProcessBlock>(block)) {
        call->returnVariable = "result";
        ApiProcessBlock::Parameter parameter;
        parameter.value = "arg";
        call->setParameters({parameter});
    } else if (auto receive = std::dynamic_pointer_cast<RecvMessageProcessBlock>(block)) {
        receive->id = {"sys_id", true};
        receive->messageVariable = "frame";
    }
    const QSet<QString> found = variable_use::namesIn(*block);
    QStringList names = found.values();
    names.sort();
    QTEST(names, "names");
}

void WithoutWidgetTest::changedSystemVariable()
{
    const QString id = makeSequence();
    auto step = applet_fixture::addStep<StatementProcessBlock>(m_name, id, QStringLiteral("2"),
                                                               step_type::Statement, "语句");
    step->setCustomCode("speed = 1;");
    processedit::createSeuqence(m_name, QStringLiteral("other"));
    variable_use::recordApplet(m_name, false);

    auto& variables = standalone::SystemVariables::instance();
    QSignalSpy uses(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemVarChange);
    for (const char* name : {"speed", "torque"}) {
        variables.define({QString::fromLatin1(name), QString(), 1, DoubleCategory, QString(), 2});
        variables.setValue(QString::fromLatin1(name), QStringLiteral("3"));
    }
    variables.waitForListeners();
    using Users = QVector<QPair<QString, QString>>;
    QCOMPARE(uses.count(), 1);
    QCOMPARE(uses.at(0).at(0).value<Users>(), Users({{m_name, id}}));

    Editor::uninstallVarNofity({m_name, QStringLiteral("stranger")});
    variables.setValue(QStringLiteral("speed"), QStringLiteral("4"));
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
        system.insert(QStringLiteral("speed"), SignedCategory);
        own.insert(QStringLiteral("speed_own"), DrelU8);
        return true;
    });
    Editor::updateUdsVarInfo(m_name, block);
    QCOMPARE(LogicMaster::instance()->udsBlocks(m_name), QStringList{QStringLiteral("uds-1")});
    QSignalSpy types(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemUdsVarChange);
    auto& variables = standalone::SystemVariables::instance();
    const auto change = [&variables](const char* name, DataCategoryType category) {
        variables.define({QString::fromLatin1(name), QString(), 1, NoCategory, QString(), 2});
        variables.define({QString::fromLatin1(name), QString(), 1, category, QString(), 2});
        variables.waitForListeners();
    };
    change("speed", DoubleCategory);
    change("speed_own", DoubleCategory); // of the applet, not of the system
    change("speed", NoCategory);         // a category without a type
    QCOMPARE(types.count(), 1);
    QCOMPARE(types.at(0).at(0).toStringList(), QStringList{m_name});
    Editor::clearUDSVarInfo();
    change("speed", SignedCategory);
    QCOMPARE(types.count(), 1);
    Editor::setGetUDSProcessBlockUseVarsCallback({});
}

PE_TEST("without_widget_test", WithoutWidgetTest)
#include "without_widget_test.moc"
