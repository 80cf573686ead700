#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace facade = sdk_ui_interface::processedit;
using namespace process_edit;
using namespace process_json_edit;

namespace {

const std::string variablesApp = "var_app";
const QString appName = QStringLiteral("var_app");

QString listing(const std::vector<processVariable>& variables)
{
    QStringList names;
    for (const auto& v : variables)
        names.append(QString::fromStdString(v.name + ":" + v.ownerId));
    return names.join(QLatin1Char(' '));
}

QJsonObject parsed(const std::string& json)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
}

std::string addNamed(processVariableType scope, const std::string& owner, const std::string& name)
{
    auto variable = getVariable(addVariable(variablesApp, scope, owner));
    variable.name = name;
    updateVariable(variablesApp, variable, scope);
    return variable.uuid;
}

} // namespace

class ModelVariablesTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        loadDefaultVariable(R"({"variables": [{"uuid": "ret", "name": "global_ret", "type": "s32",
                                               "value": "0", "isEditable": false}]})");
        QVERIFY(isDefaultGlobalVarLoaded());
    }

    void cleanup()
    {
        samples::forget(appName);
        samples::forget(text("copy"));
        samples::forget(text("renamed"));
        loadGlobalVariable({});
    }

    void newVariablesGetFreeNames()
    {
        const QRegularExpression rule(text("^[a-zA-Z_][a-zA-Z0-9_]{0,19}$"));
        QStringList names;
        for (int round = 0; round < 3; ++round) {
            for (const auto& uuid : {addVariable(variablesApp, SequenceVariable, "s1"),
                                     addVariable(variablesApp, ProcessVariable, variablesApp),
                                     addVariable(variablesApp, GlobalVariable, {})}) {
                const auto variable = getVariable(uuid);
                QCOMPARE(variable.type, std::string("s32"));
                QCOMPARE(variable.value, std::string("0"));
                names.append(QString::fromStdString(variable.name));
                QVERIFY(rule.match(names.last()).hasMatch());
            }
        }
        QCOMPARE(names.removeDuplicates(), 0);
        // Another sequence doesn't see the first one's variables.
        const auto other = getVariable(addVariable(variablesApp, SequenceVariable, "s2"));
        QVERIFY(names.indexOf(QString::fromStdString(other.name)) % 3 <= 0);
        QVERIFY(addVariable(variablesApp, SequenceVariable, {}).empty());
        QVERIFY(addVariable({}, ProcessVariable, {}).empty());
        QVERIFY(getVariable("no such").uuid.empty());
    }

    void orderIsKeptAndScopesCanChange()
    {
        addNamed(SequenceVariable, "s1", "a");
        const auto b = addNamed(SequenceVariable, "s1", "b");
        addNamed(SequenceVariable, "s1", "c");
        addNamed(ProcessVariable, variablesApp, "p");
        QCOMPARE(listing(getAllSequenceVariable(variablesApp, "s1")), text("a:s1 b:s1 c:s1"));

        auto variable = getVariable(b);
        variable.scope = ProcessVariable;
        variable.ownerId = variablesApp;
        updateVariable(variablesApp, variable, 0);
        QCOMPARE(listing(getAllSequenceVariable(variablesApp, "s1")), text("a:s1 c:s1"));
        QCOMPARE(listing(getAllCAppletVariable(variablesApp)), text("p:var_app b:var_app"));
        variable.scope = GlobalVariable;
        variable.ownerId.clear();
        updateVariable(variablesApp, variable, 0);
        QCOMPARE(listing(getAllGlobalVariable()), text("global_ret: b:"));

        removeVariables(variablesApp, {b, "no such", "ret"});
        QCOMPARE(listing(getAllGlobalVariable()), text("global_ret:"));
        removeAllVarBySequenceId(variablesApp, "s1");
        QVERIFY(getAllSequenceVariable(variablesApp, "s1").empty());
        removeAllVarByAppName(variablesApp);
        QVERIFY(getAllCAppletVariable(variablesApp).empty());
    }

    void pastedVariablesAreNew()
    {
        const auto a = addNamed(SequenceVariable, "s1", "speed");
        auto copy = copyVariable(a);
        QVERIFY(copy.uuid.empty());
        for (const char* expected : {"speed_1", "speed_2"}) {
            auto pasted = copy;
            pasted.ownerId = "s1";
            pasteVariable(variablesApp, pasted, SequenceVariable);
            QCOMPARE(pasted.name, std::string(expected));
            QCOMPARE(getVariable(pasted.uuid).name, std::string(expected));
        }
        auto elsewhere = copy;
        elsewhere.ownerId = "s2";
        pasteVariable(variablesApp, elsewhere, SequenceVariable);
        QCOMPARE(elsewhere.name, std::string("speed"));
        auto fromDefault = copyVariable("ret");
        pasteVariable(variablesApp, fromDefault, ProcessVariable);
        QCOMPARE(fromDefault.name, std::string("global_ret_1"));
        QVERIFY(!getVariable(fromDefault.uuid).isLocked);
    }

    void lockedVariablesStayAsTheyAre()
    {
        auto variable = getVariable("ret");
        QVERIFY(variable.isLocked);
        variable.name = "mine";
        variable.value = "1";
        updateVariable(variablesApp, variable, GlobalVariable);
        QCOMPARE(getVariable("ret").name, std::string("global_ret"));
        QCOMPARE(getVariable("ret").value, std::string("0"));
    }

    void aNewTypeBringsItsLength()
    {
        auto variable = getVariable(addVariable(variablesApp, ProcessVariable, variablesApp));
        const std::vector<std::pair<std::string, int>> cases{
            {"u8*", 64}, {"string", 256}, {"pu16", 64}, {"double", 1}, {"char*", 256}};
        for (const auto& [type, length] : cases) {
            variable.type = type;
            updateVariable(variablesApp, variable, 0);
            variable = getVariable(variable.uuid);
            QCOMPARE(variable.length, length);
        }
        variable.length = 9;
        updateVariable(variablesApp, variable, 0);
        QCOMPARE(getVariable(variable.uuid).length, 9);
    }

    void documentsRoundTrip()
    {
        const std::string json = R"({"future": 1, "process": [
            {"uuid": "p", "name": "speed", "type": "u8*", "value": "1,2", "unit": "km/h",
             "description": ["第一行", "第二行"], "isLocked": true, "isEditable": false,
             "length": 64}],
          "sequences": {"s1": [{"uuid": "a", "name": "x", "type": "s32", "value": "0"},
                               {"uuid": "b", "name": "y", "type": "string", "value": ""}]}})";
        loadAppVariableJson(variablesApp, json);
        QCOMPARE(listing(getAllCAppletVariable(variablesApp)), text("speed:var_app"));
        QCOMPARE(listing(getAllSequenceVariable(variablesApp, "s1")), text("x:s1 y:s1"));
        QCOMPARE(getVariable("p").description, std::string("第一行\n第二行"));
        // An empty text is the default.
        const auto expected = parsed(QString::fromStdString(json)
                                         .replace(text(R"(, "value": "")"), QString())
                                         .toStdString());
        QVERIFY(expected != parsed(json));
        QCOMPARE(parsed(generateAppAndSequenceVariableJson(variablesApp)), expected);

        // The same document in another applet: the variables are others, under ids of their own.
        loadAppVariableJson("copy", json);
        removeAllVarByAppName("copy");
        QCOMPARE(getVariable("p").name, std::string("speed"));
        QCOMPARE(generateAppAndSequenceVariableJson("copy"), std::string("{}"));

        loadAppVariableJson(variablesApp, "[]");
        QCOMPARE(parsed(generateAppAndSequenceVariableJson(variablesApp)), expected);
        loadAppVariableJson(variablesApp, "{}");
        QCOMPARE(generateAppAndSequenceVariableJson(variablesApp), std::string("{}"));
    }

    void damagedDocumentsAreReadAsFarAsTheyGo()
    {
        samples::LogCatcher log;
        loadAppVariableJson(variablesApp, R"({"process": [{"uuid": "a", "name": "x"}, 5,
            {"uuid": "a", "name": "y", "length": "long"}, {"name": "z"}], "sequences": {"s": 1}})");
        QCOMPARE(listing(getAllCAppletVariable(variablesApp)),
                 text("x:var_app y:var_app z:var_app"));
        QVERIFY2(log.lines.size() == 5, qPrintable(log.lines.join(u'\n')));
        QCOMPARE(getVariable("a").name, std::string("x"));
    }

    void globalVariablesGoToTheProjectFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(text("globalVariable.json"));
        const std::string json =
            R"({"future": 1, "variables": [{"uuid": "g", "name": "vin", "type": "string",
                "value": "LSV", "length": 17, "unit": "x"}]})";
        loadGlobalVariable(json);
        QVERIFY(isUserGlobalVarLoaded());
        facade::saveGlobalVarJsonStr(folder.path(), EveryBusiness);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto written = file.readAll().toStdString();
        QCOMPARE(parsed(written), parsed(json));
        loadGlobalVariable({});
        QCOMPARE(listing(getAllGlobalVariable()), text("global_ret:"));
        loadGlobalVariable(written);
        QCOMPARE(listing(getAllGlobalVariable()), text("global_ret: vin:"));

        samples::LogCatcher log;
        facade::saveGlobalVarJsonStr(folder.filePath(text("missing")), EveryBusiness);
        QCOMPARE(log.lines.size(), 1);
        QVERIFY(log.lines.first().startsWith(text("[流程编辑]")));
    }

    void aRenamedAppletTakesItsVariablesAlong()
    {
        facade::createSeuqence(appName, text("s"));
        const auto p = addNamed(ProcessVariable, variablesApp, "p");
        addNamed(SequenceVariable, "s1", "a");
        facade::renameProcessCAppletName(appName, text("renamed"));
        QCOMPARE(listing(getAllCAppletVariable("renamed")), text("p:renamed"));
        QCOMPARE(listing(getAllSequenceVariable("renamed", "s1")), text("a:s1"));
        QVERIFY(getAllCAppletVariable(variablesApp).empty());
        removeVariables("renamed", {p});
        QVERIFY(getAllCAppletVariable("renamed").empty());
    }

    void compositeVariablesInUseAreFound()
    {
        const rows::Table<const char*, const char*, bool> table{
            {"used", "PDrelCan", "x = frame->id;", true},
            {"part of a word", "PDrelCan", "x = my_frame + frames;", false},
            {"basic", "s32", "x = frame;", false},
            {"a pointer that counts as basic", "XcpProgramFormat*", "x = frame;", false}};
        for (const auto& [row, type, code, isFound] : table) {
            const rows::Named named(row);
            cleanup();
            const QString sequence = facade::createSeuqence(appName, text("s"));
            const auto loop = applet_fixture::addStep<IProcessBlock>(appName, sequence, text("2"),
                                                                     step_type::While, "");
            applet_fixture::addStep<StatementProcessBlock>(
                appName, sequence, QString::fromStdString(loop->uuid), step_type::Statement, "")
                ->setCustomCode(code);
            auto variable =
                getVariable(addNamed(SequenceVariable, sequence.toStdString(), "frame"));
            variable.type = type;
            updateVariable(variablesApp, variable, 0);
            QCOMPARE(isHaveStuVar(variablesApp, sequence.toStdString()), isFound);
        }
    }
};

PE_TEST("model_variables_test", ModelVariablesTest)
#include "model_variables_test.moc"
