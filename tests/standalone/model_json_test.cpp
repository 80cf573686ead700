#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace facade = sdk_ui_interface::processedit;
using samples::BlockPtr;

namespace {

const QString app = QStringLiteral("json_app");
const QString copyApp = QStringLiteral("json_copy");

QJsonObject parsed(const QString& json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

/// The flow array of the document's first sequence.
QJsonArray flowOf(const QJsonObject& document, const char* flow)
{
    const auto sequences = document.value(QLatin1String("sequences")).toArray();
    return sequences.at(0).toObject().value(QLatin1String(flow)).toArray();
}

/// Puts a block with all its fields into the model.
bool put(const QString& sequenceId, const QString& parent, const BlockPtr& block)
{
    return standalone::appletStore().find(app)->insert(block, sequenceId.toStdString(),
                                                       parent.toStdString(), -1);
}

} // namespace

class ModelJsonTest : public QObject
{
    Q_OBJECT
private slots:
    void cleanup()
    {
        samples::forget(app);
        samples::forget(copyApp);
    }

    void roundTripKeepsEveryField()
    {
        auto blocks = samples::everyClass();
        const auto children = samples::everyClass();
        QVERIFY(blocks.size() > 20);
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            IProcessBlock& block = *blocks[i];
            const rows::Named named(qPrintable(QString::number(block.stepType())));
            cleanup();
            children[i]->uuid = "child";
            block.children.push_back(children[i]);
            const QString sequence = facade::createSeuqence(app, text("s"));
            QVERIFY(put(sequence, text("1"), blocks[i]));
            const QString json = facade::generateProcessJson(app);
            facade::loadProcessJson(copyApp, json);
            const auto loaded = facade::getProcess(copyApp, QString::fromStdString(block.uuid));
            QVERIFY(loaded && loaded != blocks[i]);
            QCOMPARE(samples::fieldsOf(*loaded), samples::fieldsOf(block));
            const auto copy = loaded->copyAlone();
            const IProcessBlock &copied = *copy, &sameKind = *loaded;
            QVERIFY(typeid(copied) == typeid(sameKind));
            QCOMPARE(samples::fieldsOf(*loaded->clone()), samples::fieldsOf(block));
            QCOMPARE(facade::generateProcessJson(copyApp), json);
        }
    }

    void roundTripKeepsSequencesAndFlows()
    {
        const QString first = facade::createSeuqence(app, text("first"));
        const QString second = facade::createSeuqence(app, text("second"));
        auto info = facade::getSequence(app, first);
        info.comment = "说明 \"a\"\r\n\\";
        info.reserved = 0xFFFFFFFFu;
        facade::updateSequence(app, info);
        const auto blocks = samples::everyClass();
        for (std::size_t i = 0; i < blocks.size(); ++i)
            QVERIFY(put(i % 2 ? first : second, QString::number(i % 3), blocks[i]));
        facade::loadProcessJson(copyApp, facade::generateProcessJson(app));
        const auto listing = [](const QString& name) {
            QString all;
            for (const auto& sequence : facade::getAllSequenceByAppName(name)) {
                const QString id = QString::fromStdString(sequence.id);
                all += id + u' ' + QString::fromStdString(sequence.name + ' ' + sequence.comment) +
                       QString::number(sequence.isMain) + QString::number(sequence.reserved) +
                       u'\n' + samples::printTree(name, id);
            }
            return all;
        };
        QCOMPARE(listing(copyApp), listing(app));
        QVERIFY(listing(app).contains(text("\"a\"\r\n\\")));
        QCOMPARE(listing(app).count(text("  ")), int(blocks.size()));
    }

    /// A newer version's document passes through unharmed.
    void unknownMembersAreKept()
    {
        const auto json = text(R"({"future": {"a": [1, 2]}, "version": 2,
            "stepKinds": {"3/24": {"name": "延时", "stepType": 24, "flag": true},
                          "8/1": {"name": "new kind", "baseType": 8, "stepType": 1, "x": 1}},
            "sequences": [{"id": "s", "name": "n", "color": "red",
              "initialFlow": [], "endFlow": [],
              "mainFlow": [
                {"uuid": "a", "stepType": 24, "name": "wait", "unit": "s", "delay": 7},
                {"uuid": "b", "baseType": 8, "stepType": 1, "name": "new", "enableState": 2,
                 "tag": "", "secret": {"deep": [null, 1.5]},
                 "children": [{"uuid": "c", "stepType": 24}]},
                {"uuid": "d", "stepType": 4711, "data": "x", "name": "other"},
                {"uuid": "e", "stepType": 17, "parameters": [{"type": "s32", "unit": "V"}],
                 "property": {"name": "API", "stepType": 17, "more": 1}},
                {"uuid": "f", "stepType": 26, "id": {"variable": "v", "mask": 3}}
              ]}]})");
        facade::loadProcessJson(app, json);
        QJsonObject written = parsed(facade::generateProcessJson(app));

        // Kinds that the document didn't tell are told now; all else is as it was.
        QJsonObject kinds = written.value(QLatin1String("stepKinds")).toObject();
        kinds.remove(text("3/26"));
        kinds.remove(text("3/17"));
        written.insert(text("stepKinds"), kinds);
        QCOMPARE(written, parsed(json));
        QCOMPARE(samples::printTree(app, text("s")),
                 text("main\n  wait\n  new\n    \n  other\n  \n  \n"));
    }

    void keptMembersFollowABlockIntoItsCopies()
    {
        facade::loadProcessJson(app, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
            [{"uuid": "a", "stepType": 24, "unit": "s"}]}]})"));
        const QString quickStep = facade::addQuickStepInfo(app, text("a"));
        facade::createProcessInfoByQuickStep(app, text("s"), text("1"), quickStep, -1);
        const auto flow = flowOf(parsed(facade::generateProcessJson(app)), "mainFlow");
        QCOMPARE(flow.size(), 2);
        for (const auto& block : flow)
            QCOMPARE(block.toObject().value(QLatin1String("unit")).toString(), text("s"));
    }

    void brokenTextsChangeNothing()
    {
        for (const QString& json : {QString(), text("{\"sequences\": ["), text("[1, 2]"),
                                    QString(5000, QLatin1Char('['))}) {
            samples::LogCatcher log;
            facade::loadProcessJson(copyApp, json);
            QVERIFY(!facade::getCAppletDataIsExist(copyApp));
            QCOMPARE(facade::generateProcessJson(copyApp), text("{}"));
            QCOMPARE(log.lines.isEmpty(), json.isEmpty());
            QVERIFY(json.isEmpty() || log.lines.first().startsWith(text("[流程编辑]")));
        }
    }

    /// What a damaged document still holds is read, and every fault is told.
    void damagedDocumentsAreReadAsFarAsTheyGo()
    {
        const QString sequence = text(R"([{"id": "s", "name": "n", "mainFlow": %1}])");
        const rows::Table<QString, const char*, int> table{
            {"sequences are an object", text("{}"), "", 1},
            {"a sequence is a number", text(R"([3, {"id": "s", "name": "n"}])"), "", 1},
            {"a flow is a text", sequence.arg(text(R"("x")")), "", 1},
            {"a block is a text",
             sequence.arg(text(R"(["x", {"uuid": "a", "stepType": 24, "name": "ok"}])")),
             "main\n  ok\n", 1},
            {"duplicate and missing uuids",
             sequence.arg(text(R"([{"uuid": "a", "stepType": 24, "name": "1"},
                {"uuid": "a", "stepType": 24, "name": "2"}, {"stepType": 24, "name": "3"},
                {"uuid": "1", "stepType": 24, "name": "4", "children":
                    [{"uuid": "a", "stepType": 24, "name": "5"}]}])")),
             "main\n  1\n  2\n  3\n  4\n    5\n", 4},
            {"fields of wrong types",
             sequence.arg(text(R"([{"uuid": "a", "stepType": 24, "name": "ok", "delay": "long",
                "loopCount": 1.5, "tagEnabled": 1, "preCondition": ["a", 1], "children": 7}])")),
             "main\n  ok\n", 5},
            {"a kind that is no number",
             sequence.arg(text(R"([{"uuid": "a", "stepType": "if", "name": "ok"}])")),
             "main\n  ok\n", 2},
            {"sequences without id and name", text(R"([{"id": "s", "name": "n"}, {}])"), "", 2}};
        for (const auto& [row, sequences, tree, faults] : table) {
            const rows::Named named(row);
            cleanup();
            samples::LogCatcher log;
            facade::loadProcessJson(app, text("{\"sequences\": %1}").arg(sequences));
            QCOMPARE(samples::printTree(app, text("s")), text(tree));
            QVERIFY2(log.lines.size() == faults, qPrintable(log.lines.join(QLatin1Char('\n'))));
            // A second reading of what is written then gives the same.
            const QString written = facade::generateProcessJson(app);
            facade::loadProcessJson(app, written);
            QCOMPARE(facade::generateProcessJson(app), written);
        }
    }

    void stepsThatAreNoneAreTold()
    {
        samples::LogCatcher log;
        facade::loadProcessJson(app, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
            [{"uuid": "a", "stepType": 1, "children": [{"uuid": "b", "stepType": 1, "children":
                [7, 8]}]}]}]})"));
        const QString told = log.lines.join(u'\n');
        for (const char* place :
             {"mainFlow[0].children[0].children[0]: ", "mainFlow[0].children[0].children[1]: "})
            QVERIFY2(told.contains(text(place)), qPrintable(told));
    }

    void wrongMembersStayInTheDocument()
    {
        facade::loadProcessJson(app, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
            [{"uuid": "a", "stepType": 24, "delay": "long"}]}]})"));
        const auto block = [&] {
            return flowOf(parsed(facade::generateProcessJson(app)), "mainFlow").at(0).toObject();
        };
        QCOMPARE(block().value(QLatin1String("delay")).toString(), text("long"));
        std::dynamic_pointer_cast<DelayProcessBlock>(facade::getProcess(app, text("a")))->delay = 5;
        QCOMPARE(block().value(QLatin1String("delay")).toInt(), 5);
    }

    void deepNestingIsFlattenedNotLost()
    {
        constexpr int depth = 400;
        QString blocks = text("[]");
        for (int i = 0; i < depth; ++i)
            blocks =
                text("[{\"uuid\": \"b%1\", \"stepType\": 1, \"children\": %2}]").arg(i).arg(blocks);
        samples::LogCatcher log;
        facade::loadProcessJson(
            app, text("{\"sequences\": [{\"id\": \"s\", \"name\": \"n\", \"mainFlow\": %1}]}")
                     .arg(blocks));
        const auto all =
            facade::getAllProcessBySequenceID(app, text("s"), IProcessBlock::MainFlowBlocks);
        QCOMPARE(all.size(), std::size_t(depth));
        QVERIFY(!log.lines.isEmpty());
        const QString written = facade::generateProcessJson(app);
        facade::loadProcessJson(copyApp, written);
        QCOMPARE(facade::generateProcessJson(copyApp), written);
    }

    void escapesOfAllKinds()
    {
        const rows::Table<QByteArray, QByteArray> table{
            {"letters", "\\/\\b\\f\\r\\t\\\"\\\\u", "/\b\f\r\t\"\\u"},
            {"numbers", R"(a\u4e2d\uD83d\uDE00\u0001z)", "a中😀\x01z"},
            {"halves", R"(\ude00\ud83d\u0041\ud83dx)", "\uFFFD\uFFFDA\uFFFDx"}};
        for (const auto& [row, json, name] : table) {
            const rows::Named named(row);
            samples::LogCatcher log;
            const QByteArray document =
                "{\"sequences\": [{\"id\": \"s\", \"name\": \"" + json + "\"}]}";
            facade::loadProcessJson(app, QString::fromUtf8(document));
            QCOMPARE(QByteArray::fromStdString(facade::getAllSequenceByAppName(app).at(0).name),
                     name);
            QCOMPARE(log.lines.isEmpty(), !name.contains("\uFFFD"));
            const QJsonValue written = parsed(facade::generateProcessJson(app));
            const auto sequence = written[QLatin1String("sequences")][0];
            QCOMPARE(sequence[QLatin1String("name")].toString(), QString::fromUtf8(name));
        }
    }

    void documentsAreReadableInADiff()
    {
        const QString sequence = facade::createSeuqence(app, text("s"));
        const QString a =
            facade::createProcess(app, sequence, text("1"), BasicStep, step_type::Statement, -1);
        facade::createProcess(app, sequence, text("1"), BasicStep, step_type::Statement, -1);
        std::dynamic_pointer_cast<StatementProcessBlock>(facade::getProcess(app, a))
            ->setCustomCode("a = 1;\nb = 2;");
        const auto flow = flowOf(parsed(facade::generateProcessJson(app)), "mainFlow");
        // Only what differs from the defaults, the kind's record once for the whole document, and
        // code by lines.
        QCOMPARE(flow.at(0).toObject().keys(),
                 QStringList({text("code"), text("name"), text("stepType"), text("uuid")}));
        QCOMPARE(flow.at(0).toObject().value(QLatin1String("code")).toArray(),
                 QJsonArray({text("a = 1;"), text("b = 2;")}));
    }
};

PE_TEST("model_json_test", ModelJsonTest)
#include "model_json_test.moc"
