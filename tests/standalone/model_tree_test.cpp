#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "standalone/model_service/stores/compile_marks.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

namespace facade = sdk_ui_interface::processedit;
using samples::printTree;

namespace {

const QString treeApp = QStringLiteral("流程_1");

std::string localName()
{
    return treeApp.toLocal8Bit().toStdString();
}

} // namespace

/// Sequences and the order of blocks.
class ModelTreeTest : public QObject
{
    Q_OBJECT

    QString m_sequence;
    QHash<QString, QString> m_uuids; ///< by the names of the rows

    QString add(const QString& name, const QString& parent, int index = -1)
    {
        const QString uuid = facade::createProcess(
            treeApp, m_sequence, m_uuids.value(parent, parent), BasicStep, step_type::While, index);
        if (const auto block = facade::getProcess(treeApp, uuid)) {
            block->name = name.toStdString();
            m_uuids.insert(name, uuid);
        }
        return uuid;
    }

private slots:
    /// main: a(a1(a11) a2 a3) b c, end: z
    void init()
    {
        samples::forget(treeApp);
        m_uuids.clear();
        m_sequence = facade::createSeuqence(treeApp, QStringLiteral("main"));
        for (const char* name : {"a", "b", "c"})
            add(text(name), QStringLiteral("1"));
        for (const char* name : {"a1", "a2", "a3"})
            add(text(name), QStringLiteral("a"));
        add(QStringLiteral("a11"), QStringLiteral("a1"));
        add(QStringLiteral("z"), QStringLiteral("2"));
        m_uuids.insert(QStringLiteral("unknown"), QStringLiteral("no-such-block"));
    }

    void insertionsKeepTheirPlace_data()
    {
        QTest::addColumn<QString>("parent");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("tree");
        const auto row = [](const char* name, const char* parent, int index, const char* tree) {
            QTest::newRow(name) << text(parent) << index << text(tree);
        };
        row("first of a flow", "1", 0,
            "main\n  new\n  a\n    a1\n      a11\n    a2\n    a3\n  b\n  c\nend\n  z\n");
        row("between", "a", 1,
            "main\n  a\n    a1\n      a11\n    new\n    a2\n    a3\n  b\n  c\nend\n  z\n");
        row("index beyond the end", "a", 99,
            "main\n  a\n    a1\n      a11\n    a2\n    a3\n    new\n  b\n  c\nend\n  z\n");
        row("negative index", "1", -5,
            "main\n  a\n    a1\n      a11\n    a2\n    a3\n  b\n  c\n  new\nend\n  z\n");
        row("an empty flow", "0", 3,
            "initial\n  new\nmain\n  a\n    a1\n      a11\n    a2\n    a3\n  b\n  c\nend\n  z\n");
    }

    void insertionsKeepTheirPlace()
    {
        QFETCH(QString, parent);
        QFETCH(int, index);
        QVERIFY(!add(QStringLiteral("new"), parent, index).isEmpty());
        QTEST(printTree(treeApp, m_sequence), "tree");
    }

    void impossibleInsertionsMakeNothing()
    {
        const QString other = facade::createSeuqence(treeApp, QStringLiteral("other"));
        const QString tree = printTree(treeApp, m_sequence);
        QVERIFY(add(QStringLiteral("new"), QStringLiteral("unknown")).isEmpty());
        QVERIFY(add(QStringLiteral("new"), QString()).isEmpty());
        QVERIFY(facade::createProcess(treeApp, other, m_uuids[QStringLiteral("a")], BasicStep,
                                      step_type::If, 0)
                    .isEmpty());
        for (const int type : {0, 11, 14, 18, 19, 28, 10000, 10001})
            QVERIFY(
                facade::createProcess(treeApp, m_sequence, QStringLiteral("1"), BasicStep, type, -1)
                    .isEmpty());
        QVERIFY(
            facade::createProcess(treeApp, m_sequence, QStringLiteral("1"), DiagnosticStep, 1, -1)
                .isEmpty());
        QCOMPARE(printTree(treeApp, m_sequence), tree);
    }

    void movesReorderTheTree_data()
    {
        QTest::addColumn<QString>("block");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("tree");
        const auto row = [](const char* name, const char* block, const char* parent, int index,
                            const char* tree) {
            QTest::newRow(name) << text(block) << text(parent) << index << text(tree);
        };
        const char* const unchanged =
            "main\n  a\n    a1\n      a11\n    a2\n    a3\n  b\n  c\nend\n  z\n";
        row("down among siblings", "a", "1", 1,
            "main\n  b\n  a\n    a1\n      a11\n    a2\n    a3\n  c\nend\n  z\n");
        row("up among siblings", "a3", "a", 0,
            "main\n  a\n    a3\n    a1\n      a11\n    a2\n  b\n  c\nend\n  z\n");
        row("to its own place", "b", "1", 1, unchanged);
        row("out of its parent", "a1", "1", 1,
            "main\n  a\n    a2\n    a3\n  a1\n    a11\n  b\n  c\nend\n  z\n");
        row("into another", "a", "b", 0,
            "main\n  b\n    a\n      a1\n        a11\n      a2\n      a3\n  c\nend\n  z\n");
        row("to another flow, beyond its end", "a", "2", 9,
            "main\n  b\n  c\nend\n  z\n  a\n    a1\n      a11\n    a2\n    a3\n");
        row("under itself", "a", "a", 0, unchanged);
        row("under its own child", "a", "a11", 0, unchanged);
        row("under nothing", "a", "unknown", 0, unchanged);
        row("an unknown block", "unknown", "1", 0, unchanged);
    }

    void movesReorderTheTree()
    {
        QFETCH(QString, block);
        QFETCH(QString, parent);
        QFETCH(int, index);
        process_edit::updateProcessInfoIndex(localName(), m_sequence.toStdString(),
                                             m_uuids[block].toStdString(),
                                             m_uuids.value(parent, parent).toStdString(), index);
        QTEST(printTree(treeApp, m_sequence), "tree");
    }

    /// After a move to another flow the nested blocks belong to it too.
    void movedChildrenCanBeMovedOn()
    {
        const auto move = [&](const char* block, const QString& parent) {
            process_edit::updateProcessInfoIndex(localName(), m_sequence.toStdString(),
                                                 m_uuids[text(block)].toStdString(),
                                                 parent.toStdString(), 0);
        };
        move("a", QStringLiteral("2"));
        move("a11", QStringLiteral("0"));
        add(QStringLiteral("new"), QStringLiteral("a2"));
        facade::removeProcess(treeApp, m_sequence, m_uuids[QStringLiteral("a1")]);
        QCOMPARE(
            printTree(treeApp, m_sequence),
            text("initial\n  a11\nmain\n  b\n  c\nend\n  a\n    a2\n      new\n    a3\n  z\n"));
        facade::removeAllProcessBySequenceID(treeApp, m_sequence, EndFlow);
        QVERIFY(!facade::getProcess(treeApp, m_uuids[QStringLiteral("new")]));
        QCOMPARE(printTree(treeApp, m_sequence), text("initial\n  a11\nmain\n  b\n  c\n"));
    }

    void nestingHasALimit()
    {
        QString parent = QStringLiteral("1");
        int depth = 0;
        for (QString uuid; depth < 1000; ++depth, parent = uuid) {
            uuid = facade::createProcess(treeApp, m_sequence, parent, BasicStep, step_type::If, -1);
            if (uuid.isEmpty())
                break;
        }
        QCOMPARE(depth, 200);
        const QString tree = printTree(treeApp, m_sequence);
        process_edit::updateProcessInfoIndex(localName(), m_sequence.toStdString(),
                                             m_uuids[QStringLiteral("b")].toStdString(),
                                             parent.toStdString(), 0);
        QCOMPARE(printTree(treeApp, m_sequence), tree);
        facade::loadProcessJson(treeApp, facade::generateProcessJson(treeApp));
        QCOMPARE(printTree(treeApp, m_sequence), tree);
    }

    void removalsTakeTheChildrenAlong()
    {
        facade::removeProcess(treeApp, m_sequence, m_uuids[QStringLiteral("a")]);
        QCOMPARE(printTree(treeApp, m_sequence), text("main\n  b\n  c\nend\n  z\n"));
        for (const char* name : {"a", "a1", "a11", "a2", "a3"})
            QVERIFY(!facade::getProcess(treeApp, m_uuids[text(name)]));
        facade::removeAllProcessBySequenceID(treeApp, m_sequence, MainFlow);
        QCOMPARE(printTree(treeApp, m_sequence), text("end\n  z\n"));
        add(QStringLiteral("again"), QStringLiteral("1"));
        facade::removeAllProcessBySequenceID(treeApp, m_sequence, NoBlock);
        QCOMPARE(printTree(treeApp, m_sequence), QString());
    }

    void blocksAreListedParentsFirst()
    {
        const auto namesOf = [&](int flow) {
            QStringList names;
            for (const auto& block : facade::getAllProcessBySequenceID(
                     treeApp, m_sequence, static_cast<IProcessBlock::ProcessBlockBelong>(flow)))
                names.append(QString::fromStdString(block->name));
            return names.join(QLatin1Char(' '));
        };
        QCOMPARE(namesOf(IProcessBlock::InitialFlowBlocks), QString());
        QCOMPARE(namesOf(IProcessBlock::MainFlowBlocks), text("a a1 a11 a2 a3 b c"));
        QCOMPARE(namesOf(IProcessBlock::EndFlowBlocks), text("z"));
        QCOMPARE(namesOf(0), text("a a1 a11 a2 a3 b c z"));
        QCOMPARE(facade::getProcessListBySequenceID(treeApp, m_sequence).size(), std::size_t(4));
    }

    void aWrittenBackCopyTakesThePlaceOfItsBlock()
    {
        const QString uuid = m_uuids[QStringLiteral("a")];
        const auto copy = facade::getProcess(treeApp, uuid)->copyAlone();
        copy->name = "changed";
        copy->children.clear();
        facade::updateProcess(treeApp, m_sequence, copy);
        facade::removeProcess(treeApp, m_sequence, m_uuids[QStringLiteral("a2")]);
        QCOMPARE(printTree(treeApp, m_sequence),
                 text("main\n  changed\n    a1\n      a11\n    a3\n  b\n  c\nend\n  z\n"));
        facade::updateProcess(treeApp, m_sequence, nullptr);
    }

    void twoAppletsMayHoldTheSameUuids()
    {
        const QString other = QStringLiteral("other_app");
        facade::loadProcessJson(other, facade::generateProcessJson(treeApp));
        facade::removeProcess(other, m_sequence, m_uuids[QStringLiteral("a")]);
        QCOMPARE(printTree(other, m_sequence), text("main\n  b\n  c\nend\n  z\n"));
        QVERIFY(printTree(treeApp, m_sequence).contains(QLatin1String("a11")));
        facade::renameProcessCAppletName(other, treeApp);
        QVERIFY(facade::getCAppletDataIsExist(other));
        facade::renameProcessCAppletName(other, QStringLiteral("renamed"));
        QVERIFY(!facade::getCAppletDataIsExist(other));
        QCOMPARE(printTree(QStringLiteral("renamed"), m_sequence),
                 text("main\n  b\n  c\nend\n  z\n"));
        samples::forget(QStringLiteral("renamed"));
    }

    void sequencesHaveNamesOfTheirOwn()
    {
        QStringList names;
        for (const char* wanted : {"main", "main", "main_7", "main_7", "", "",
                                   "a_name_of_20_letters", "a_name_of_20_letters"}) {
            const QString id = facade::createSeuqence(treeApp, text(wanted));
            names.append(QString::fromStdString(facade::getSequence(treeApp, id).name));
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 text("main_1 main_2 main_7 main_8 Sequence_0 Sequence_1 a_name_of_20_letters "
                      "a_name_of_20_lette_1"));
        const auto all = facade::getAllSequenceByAppName(treeApp);
        QCOMPARE(std::count_if(all.begin(), all.end(), [](const auto& s) { return s.isMain; }), 1);
        QVERIFY(all.front().isMain);
    }

    void aRenamedSequenceIsRenamedInItsCalls()
    {
        const QString called = facade::createSeuqence(treeApp, QStringLiteral("called"));
        const QString uuid =
            facade::createProcess(treeApp, m_sequence, m_uuids[QStringLiteral("a11")], BasicStep,
                                  step_type::Sequence, -1);
        const auto call =
            std::dynamic_pointer_cast<SequenceProcessBlock>(facade::getProcess(treeApp, uuid));
        call->sourceKind = SequenceProcessBlock::AppletSequence;
        call->sequenceId = called.toStdString();
        call->sequenceName = "called";
        auto info = facade::getSequence(treeApp, called);
        info.name = "renamed";
        info.mainFlow = {"x"};
        facade::updateSequence(treeApp, info);
        QCOMPARE(call->sequenceName, std::string("renamed"));
        QVERIFY(facade::getSequence(treeApp, called).mainFlow.empty());
        QCOMPARE(call->description(), text("调用序列 renamed").toStdString());
        facade::removeSequence(treeApp, called);
        QCOMPARE(call->description(), text("调用序列 renamed（序列不存在）").toStdString());
    }

    void callLoopsAreFound_data()
    {
        QTest::addColumn<QString>("calls"); ///< "from>to", with "!" a disabled step
        QTest::addColumn<bool>("isLoop");
        QTest::newRow("none") << QString() << false;
        QTest::newRow("itself") << text("main>main") << true;
        QTest::newRow("twice the same") << text("main>s1 main>s1 s1>s2 main>s2") << false;
        QTest::newRow("back to the start") << text("main>s1 s1>s2 s2>main") << true;
        QTest::newRow("further down") << text("main>s1 s1>s2 s2>s1") << true;
        QTest::newRow("elsewhere") << text("s1>s2 s2>s1") << false;
        QTest::newRow("disabled") << text("main>s1 s1>main!") << false;
        QTest::newRow("gone") << text("main>gone") << false;
    }

    void callLoopsAreFound()
    {
        QFETCH(QString, calls);
        QHash<QString, QString> ids{{QStringLiteral("main"), m_sequence}};
        for (const char* name : {"s1", "s2"})
            ids.insert(text(name), facade::createSeuqence(treeApp, text(name)));
        for (QString call : calls.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const bool isDisabled = call.endsWith(QLatin1Char('!'));
            call.remove(QLatin1Char('!'));
            const QString from = ids[call.section(QLatin1Char('>'), 0, 0)];
            const QString uuid = facade::createProcess(treeApp, from, QStringLiteral("1"),
                                                       BasicStep, step_type::Sequence, -1);
            const auto block =
                std::dynamic_pointer_cast<SequenceProcessBlock>(facade::getProcess(treeApp, uuid));
            block->sourceKind = SequenceProcessBlock::AppletSequence;
            block->sequenceId =
                ids.value(call.section(QLatin1Char('>'), 1), QStringLiteral("gone")).toStdString();
            block->enableState = isDisabled ? 0 : 2;
        }
        QTEST(process_edit::isHaveSequenceLoop(localName(), m_sequence.toStdString()), "isLoop");
    }

    void everyChangeAsksForACompile_data()
    {
        QTest::addColumn<QString>("change");
        for (const char* change : {"mark", "create", "update", "remove", "move", "sequence",
                                   "variable", "global variable", "load", "nothing"})
            QTest::newRow(change) << text(change);
    }

    void everyChangeAsksForACompile()
    {
        QFETCH(QString, change);
        process_edit::setCompileSucessState(localName());
        QVERIFY(!standalone::needsUpdate(localName()));
        const QString a = m_uuids[QStringLiteral("a")];
        if (change == QLatin1String("mark"))
            process_edit::appNeedUpdate(localName());
        if (change == QLatin1String("create"))
            add(QStringLiteral("new"), QStringLiteral("0"));
        if (change == QLatin1String("update"))
            facade::updateProcess(treeApp, m_sequence, facade::getProcess(treeApp, a));
        if (change == QLatin1String("remove"))
            facade::removeProcess(treeApp, m_sequence, a);
        if (change == QLatin1String("move"))
            process_edit::updateProcessInfoIndex(localName(), m_sequence.toStdString(),
                                                 a.toStdString(), "2", 0);
        if (change == QLatin1String("sequence"))
            facade::createSeuqence(treeApp, QStringLiteral("new"));
        if (change == QLatin1String("variable"))
            process_edit::addVariable(localName(), ProcessVariable, localName());
        if (change == QLatin1String("global variable"))
            process_edit::removeVariables({}, {process_edit::addVariable({}, GlobalVariable, {})});
        if (change == QLatin1String("load"))
            facade::loadProcessJson(treeApp, QStringLiteral("{}"));
        facade::generateProcessJson(treeApp);
        facade::getSequence(treeApp, m_sequence);
        QCOMPARE(standalone::needsUpdate(localName()), change != QLatin1String("nothing"));
    }

    void stepsThatAreNoneAreTold()
    {
        const QString sequence = facade::createSeuqence(treeApp, QStringLiteral("s"));
        for (int i = 0; i < 2; ++i)
            facade::createProcess(treeApp, sequence, QStringLiteral("1"), BasicStep, 1, -1);
        auto json = facade::generateProcessJson(treeApp);
        const QString first = QStringLiteral("\"children\":[{");
        QVERIFY(json.contains(first));
        json.replace(json.lastIndexOf(first), first.size(), QStringLiteral("\"children\":[7,8,{"));
        samples::LogCatcher log;
        facade::loadProcessJson(treeApp, json);
        const QString told = log.lines.join(u'\n');
        for (const char* place :
             {"mainFlow[0].children[0].children[0]: ", "mainFlow[0].children[0].children[1]: "})
            QVERIFY2(told.contains(QLatin1String(place)), qPrintable(told));
    }
};

PE_TEST("model_tree_test", ModelTreeTest)
#include "model_tree_test.moc"
