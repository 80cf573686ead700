#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <set>

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

/// Every getter and public field of the block's class, so that equality doesn't rest on the code
/// that writes the JSON.
std::string fingerprint(const IProcessBlock& b)
{
    std::string all;
    const auto add = [&](const auto&... values) {
        const auto one = [&](const auto& value) {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>)
                all += std::to_string(static_cast<long long>(value));
            else
                all += value;
            all += '\x01';
        };
        (one(values), ...);
    };
    add(b.uuid, b.name, b.remark, b.tagEnabled, b.tag, b.preCondition, b.loopType,
        b.loopResultInReport, b.loopCount, b.loopVariable, b.loopInit, b.loopCondition, b.loopStep,
        b.trueAction, b.trueTarget, b.falseAction, b.falseTarget, b.postConditionCode,
        b.preStatements, b.postStatements, b.enableState, b.baseType(), b.stepType());
    const auto& p = b.property;
    add(p.name, p.baseType, p.stepType, p.showInPalette, p.reserved1, p.hasChildren, p.editable,
        p.draggable, p.reserved2, p.nameEditable, p.tagEnabled, p.loopEnabled,
        p.preConditionEnabled, p.postActionEnabled, p.statementsEnabled, p.reserved3,
        p.children.size());
    for (const auto& [key, value] : p.extra)
        add(key, value);
    if (const auto* c = dynamic_cast<const ConditionProcessBlock*>(&b))
        add(c->getFun1(), c->getFun2(), c->getOperator(), c->getOperatorIsArray(),
            c->getArraySize());
    if (const auto* f = dynamic_cast<const ForProcessBlock*>(&b))
        add(f->getCustom(), f->getVariableName(), f->isNeedDefine(), f->getBeginValue(),
            f->getEndValue(), f->getStepValue(), f->getFun1(), f->getFun2(), f->getFun3());
    if (const auto* g = dynamic_cast<const GotoProcessBlock*>(&b))
        add(g->targetTag, g->targetUuid);
    if (const auto* s = dynamic_cast<const StatementProcessBlock*>(&b))
        add(s->customCode(), s->getSplitFile());
    if (const auto* e = dynamic_cast<const ExpressionProcessBlock*>(&b))
        add(e->leftValue, e->rightExpression);
    if (const auto* d = dynamic_cast<const DelayProcessBlock*>(&b))
        add(d->delay);
    if (const auto* z = dynamic_cast<const BuzzProcessBlock*>(&b))
        add(z->firstFrequency, z->firstDuration, z->secondFrequency, z->secondDuration,
            z->repeatCount, z->channel);
    if (const auto* m = dynamic_cast<const SendMessageProcessBlock*>(&b))
        add(m->frameType, m->frameFormat, m->idType, m->frameId, m->dataSize, m->channel, m->data,
            m->messageVariable);
    if (const auto* r = dynamic_cast<const RecvMessageProcessBlock*>(&b))
        add(r->id.variable, r->id.isSystem, r->dataSize.variable, r->dataSize.isSystem,
            r->channel.variable, r->channel.isSystem, r->data.variable, r->data.isSystem,
            r->messageVariable, r->waitTime, r->successStatement);
    if (const auto* q = dynamic_cast<const SequenceProcessBlock*>(&b))
        add(q->sourceKind, q->sequenceName, q->sequenceId, q->templateJson, q->templateName,
            q->templateId, q->carried.id, q->carried.json, q->carried.name);
    if (const auto* u = dynamic_cast<const UdsProcessBlock*>(&b))
        add(u->udsConfig(), u->stepText, u->callCode, u->taskCode, u->declareCode);
    if (const auto* a = dynamic_cast<const ApiProcessBlock*>(&b)) {
        add(a->returnVariable, a->returnType, a->callText, a->userFunction);
        for (const auto& parameter : a->parameters())
            add(parameter.type, parameter.value, parameter.description);
    }
    if (const auto* w = dynamic_cast<const PopupWindowProcessBlock*>(&b)) {
        add(w->title, w->content, w->assignmentKind, w->value, w->variableSource, w->variableName,
            w->variableIsSystem);
        for (const auto& button : w->buttons())
            add(button.name, button.code);
    }
    for (const auto& child : b.children)
        all += "[" + fingerprint(*child) + "]";
    return all;
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

    void roundTripKeepsEveryField_data()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const auto& block : samples::everyClass()) {
            const auto name = QStringLiteral("%1/%2").arg(block->baseType()).arg(block->stepType());
            QTest::newRow(qPrintable(name)) << index++;
        }
    }

    void roundTripKeepsEveryField()
    {
        QFETCH(int, index);
        const auto block = samples::everyClass().at(static_cast<std::size_t>(index));
        const auto child = samples::everyClass().at(static_cast<std::size_t>(index));
        child->uuid = "child";
        block->children.push_back(child);
        const QString sequence = facade::createSeuqence(app, QStringLiteral("s"));
        QVERIFY(put(sequence, QStringLiteral("1"), block));

        const QString json = facade::generateProcessJson(app);
        facade::loadProcessJson(copyApp, json);
        const auto loaded = facade::getProcess(copyApp, QString::fromStdString(block->uuid));
        QVERIFY(loaded && loaded != block);
        QCOMPARE(fingerprint(*loaded), fingerprint(*block));
        const IProcessBlock& sameKind = *loaded;
        const auto copy = loaded->copyAlone();
        const IProcessBlock& copied = *copy;
        QVERIFY(typeid(copied) == typeid(sameKind));
        QCOMPARE(fingerprint(*loaded->clone()), fingerprint(*block));
        QCOMPARE(facade::generateProcessJson(copyApp), json);
    }

    void roundTripKeepsSequencesAndFlows()
    {
        const QString first = facade::createSeuqence(app, QStringLiteral("first"));
        const QString second = facade::createSeuqence(app, QStringLiteral("second"));
        auto info = facade::getSequence(app, first);
        info.comment = samples::awkwardText("comment");
        info.reserved = 0xFFFFFFFFu;
        facade::updateSequence(app, info);
        const auto blocks = samples::everyClass();
        for (std::size_t i = 0; i < blocks.size(); ++i)
            QVERIFY(put(i % 2 ? first : second, QString::number(i % 3), blocks[i]));

        facade::loadProcessJson(copyApp, facade::generateProcessJson(app));
        const auto before = facade::getAllSequenceByAppName(app);
        const auto after = facade::getAllSequenceByAppName(copyApp);
        QCOMPARE(after.size(), std::size_t(2));
        for (std::size_t i = 0; i < 2; ++i) {
            QCOMPARE(after[i].id, before[i].id);
            QCOMPARE(after[i].name, before[i].name);
            QCOMPARE(after[i].comment, before[i].comment);
            QCOMPARE(after[i].isMain, before[i].isMain);
            QCOMPARE(after[i].reserved, before[i].reserved);
            QCOMPARE(after[i].initialFlow, before[i].initialFlow);
            QCOMPARE(after[i].mainFlow, before[i].mainFlow);
            QCOMPARE(after[i].endFlow, before[i].endFlow);
        }
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
        kinds.remove(QStringLiteral("3/26"));
        kinds.remove(QStringLiteral("3/17"));
        written.insert(QStringLiteral("stepKinds"), kinds);
        QCOMPARE(written, parsed(json));
        QCOMPARE(samples::printTree(app, QStringLiteral("s")),
                 text("main\n  wait\n  new\n    \n  other\n  \n  \n"));
    }

    void keptMembersFollowABlockIntoItsCopies()
    {
        facade::loadProcessJson(app, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
            [{"uuid": "a", "stepType": 24, "unit": "s"}]}]})"));
        const QString quickStep = facade::addQuickStepInfo(app, QStringLiteral("a"));
        facade::createProcessInfoByQuickStep(app, QStringLiteral("s"), QStringLiteral("1"),
                                             quickStep, -1);
        const auto flow = flowOf(parsed(facade::generateProcessJson(app)), "mainFlow");
        QCOMPARE(flow.size(), 2);
        for (const auto& block : flow)
            QCOMPARE(block.toObject().value(QLatin1String("unit")).toString(), QStringLiteral("s"));
    }

    void brokenTextsChangeNothing_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<bool>("isReported");
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("not json") << text("{\"sequences\": [") << true;
        QTest::newRow("an array") << text("[1, 2]") << true;
        QTest::newRow("absurd nesting") << QString(5000, QLatin1Char('[')) << true;
    }

    void brokenTextsChangeNothing()
    {
        QFETCH(QString, json);
        QFETCH(bool, isReported);
        samples::LogCatcher log;
        facade::loadProcessJson(copyApp, json);
        QVERIFY(!facade::getCAppletDataIsExist(copyApp));
        QCOMPARE(facade::generateProcessJson(copyApp), QStringLiteral("{}"));
        QCOMPARE(!log.lines.isEmpty(), isReported);
        if (isReported)
            QVERIFY2(log.lines.first().startsWith(text("[流程编辑]")),
                     qPrintable(log.lines.first()));
    }

    /// What a damaged document still holds is read, and every fault is told.
    void damagedDocumentsAreReadAsFarAsTheyGo_data()
    {
        QTest::addColumn<QString>("sequences");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("faults");
        const auto row = [](const char* name, const char* json, const char* tree, int faults) {
            QTest::newRow(name) << text(json) << text(tree) << faults;
        };
        row("sequences are an object", R"({})", "", 1);
        row("a sequence is a number", R"([3, {"id": "s", "name": "n"}])", "", 1);
        row("a flow is a text", R"([{"id": "s", "name": "n", "mainFlow": "x"}])", "", 1);
        row("a block is a text",
            R"([{"id": "s", "name": "n", "mainFlow": ["x", {"uuid": "a", "stepType": 24, "name": "ok"}]}])",
            "main\n  ok\n", 1);
        row("duplicate and missing uuids",
            R"([{"id": "s", "name": "n", "mainFlow": [{"uuid": "a", "stepType": 24, "name": "1"},
                {"uuid": "a", "stepType": 24, "name": "2"}, {"stepType": 24, "name": "3"},
                {"uuid": "1", "stepType": 24, "name": "4", "children":
                    [{"uuid": "a", "stepType": 24, "name": "5"}]}]}])",
            "main\n  1\n  2\n  3\n  4\n    5\n", 4);
        row("fields of wrong types",
            R"([{"id": "s", "name": "n", "mainFlow": [{"uuid": "a", "stepType": 24, "name": "ok",
                "delay": "long", "loopCount": 1.5, "tagEnabled": 1, "preCondition": ["a", 1],
                "children": 7}]}])",
            "main\n  ok\n", 5);
        row("a kind that is no number",
            R"([{"id": "s", "name": "n", "mainFlow": [{"uuid": "a", "stepType": "if", "name": "ok"}]}])",
            "main\n  ok\n", 2);
        row("sequences without id and name", R"([{"id": "s", "name": "n"}, {}])", "", 2);
    }

    void damagedDocumentsAreReadAsFarAsTheyGo()
    {
        QFETCH(QString, sequences);
        QFETCH(QString, tree);
        QFETCH(int, faults);
        samples::LogCatcher log;
        const QString json = QStringLiteral("{\"sequences\": %1}").arg(sequences);
        facade::loadProcessJson(app, json);
        QCOMPARE(samples::printTree(app, QStringLiteral("s")), tree);
        QVERIFY2(log.lines.size() == faults, qPrintable(log.lines.join(QLatin1Char('\n'))));

        // A second reading of what is written then gives the same.
        const QString written = facade::generateProcessJson(app);
        facade::loadProcessJson(app, written);
        QCOMPARE(facade::generateProcessJson(app), written);
    }

    void wrongMembersStayInTheDocument()
    {
        facade::loadProcessJson(app, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
            [{"uuid": "a", "stepType": 24, "delay": "long"}]}]})"));
        const auto block = [&] {
            return flowOf(parsed(facade::generateProcessJson(app)), "mainFlow").at(0).toObject();
        };
        QCOMPARE(block().value(QLatin1String("delay")).toString(), QStringLiteral("long"));
        std::dynamic_pointer_cast<DelayProcessBlock>(facade::getProcess(app, QStringLiteral("a")))
            ->delay = 5;
        QCOMPARE(block().value(QLatin1String("delay")).toInt(), 5);
    }

    void deepNestingIsFlattenedNotLost()
    {
        constexpr int depth = 400;
        QString blocks = QStringLiteral("[]");
        for (int i = 0; i < depth; ++i)
            blocks = QStringLiteral("[{\"uuid\": \"b%1\", \"stepType\": 1, \"children\": %2}]")
                         .arg(i)
                         .arg(blocks);
        samples::LogCatcher log;
        facade::loadProcessJson(
            app,
            QStringLiteral("{\"sequences\": [{\"id\": \"s\", \"name\": \"n\", \"mainFlow\": %1}]}")
                .arg(blocks));
        const auto all = facade::getAllProcessBySequenceID(app, QStringLiteral("s"),
                                                           IProcessBlock::MainFlowBlocks);
        QCOMPARE(all.size(), std::size_t(depth));
        QVERIFY(!log.lines.isEmpty());
        const QString written = facade::generateProcessJson(app);
        facade::loadProcessJson(copyApp, written);
        QCOMPARE(facade::generateProcessJson(copyApp), written);
    }

    void escapesOfAllKinds_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("name");
        const auto row = [](const char* title, const char* json, const char* name) {
            QTest::newRow(title) << QByteArray(json) << QByteArray(name);
        };
        row("letters", "\\/\\b\\f\\r\\t\\\"\\\\u", "/\b\f\r\t\"\\u");
        row("numbers", R"(a\u4e2d\uD83d\uDE00\u0001z)", "a中😀\x01z");
        row("halves", R"(\ude00\ud83d\u0041\ud83dx)", "\uFFFD\uFFFDA\uFFFDx");
    }

    void escapesOfAllKinds()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, name);
        samples::LogCatcher log;
        const QByteArray text = "{\"sequences\": [{\"id\": \"s\", \"name\": \"" + json + "\"}]}";
        facade::loadProcessJson(app, QString::fromUtf8(text));
        QCOMPARE(QByteArray::fromStdString(facade::getAllSequenceByAppName(app).at(0).name), name);
        QCOMPARE(log.lines.isEmpty(), !name.contains("\uFFFD"));
        const QJsonValue written = parsed(facade::generateProcessJson(app));
        const auto sequence = written[QLatin1String("sequences")][0];
        QCOMPARE(sequence[QLatin1String("name")].toString(), QString::fromUtf8(name));
    }

    void documentsAreReadableInADiff()
    {
        const QString sequence = facade::createSeuqence(app, QStringLiteral("s"));
        const QString a = facade::createProcess(app, sequence, QStringLiteral("1"), BasicStep,
                                                step_type::Statement, -1);
        facade::createProcess(app, sequence, QStringLiteral("1"), BasicStep, step_type::Statement,
                              -1);
        std::dynamic_pointer_cast<StatementProcessBlock>(facade::getProcess(app, a))
            ->setCustomCode("a = 1;\nb = 2;");
        const auto flow = flowOf(parsed(facade::generateProcessJson(app)), "mainFlow");
        // Only what differs from the defaults, the kind's record once for the whole document, and
        // code by lines.
        QCOMPARE(flow.at(0).toObject().keys(),
                 QStringList({QStringLiteral("code"), QStringLiteral("name"),
                              QStringLiteral("stepType"), QStringLiteral("uuid")}));
        QCOMPARE(flow.at(0).toObject().value(QLatin1String("code")).toArray(),
                 QJsonArray({QStringLiteral("a = 1;"), QStringLiteral("b = 2;")}));
    }

    void fiftyThousandBlocksKeepTheirPlaces()
    {
        constexpr int loops = 500;
        constexpr int inEach = 99;
        const QString sequence = facade::createSeuqence(app, QStringLiteral("s"));
        for (int i = 0; i < loops; ++i) {
            const QString loop = facade::createProcess(app, sequence, QStringLiteral("1"),
                                                       BasicStep, step_type::While, -1);
            for (int k = 0; k < inEach; ++k)
                facade::createProcess(app, sequence, loop, BasicStep, step_type::Delay, -1);
        }
        const QString json = facade::generateProcessJson(app);
        facade::loadProcessJson(copyApp, json);
        const auto all =
            facade::getAllProcessBySequenceID(copyApp, sequence, IProcessBlock::MainFlowBlocks);
        QCOMPARE(all.size(), std::size_t(loops * (inEach + 1)));
        std::set<std::string> uuids;
        for (const auto& block : all) {
            uuids.insert(block->uuid);
            QVERIFY(facade::getProcess(copyApp, QString::fromStdString(block->uuid)) == block);
        }
        QCOMPARE(uuids.size(), all.size());
        QCOMPARE(facade::getSequence(copyApp, sequence).mainFlow.size(), std::size_t(loops));
        QCOMPARE(facade::generateProcessJson(copyApp), json);
    }
};

PE_TEST("model_json_test", ModelJsonTest)
#include "model_json_test.moc"
