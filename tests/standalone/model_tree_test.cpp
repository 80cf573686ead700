#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "standalone/model_service/stores/compile_marks.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

#include <algorithm>
#include <functional>

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

    /// Within the sequence, to the parent of that name.
    void move(const char* name, const char* parent, int index = 0)
    {
        process_edit::updateProcessInfoIndex(
            localName(), m_sequence.toStdString(), m_uuids[text(name)].toStdString(),
            m_uuids.value(text(parent), text(parent)).toStdString(), index);
    }

    /// The tree in one line, children in brackets.
    QString shape(const QString& applet = treeApp) const
    {
        QString line;
        int depth = 0;
        for (const QString& row : lines(qUtf8Printable(printTree(applet, m_sequence)))) {
            const QString name = row.trimmed();
            const int indented = (row.size() - name.size()) / 2;
            line += indented > depth && depth > 0
                        ? text("(")
                        : QString(std::max(0, depth - std::max(indented, 1)), u')');
            if (!line.isEmpty() && !line.endsWith(u'('))
                line += u' ';
            line += indented ? name : name + u':';
            depth = indented;
        }
        return line + QString(std::max(0, depth - 1), u')');
    }

    void addCalls(const QString& calls)
    {
        QHash<QString, QString> ids{{text("main"), m_sequence}};
        for (const char* name : {"s1", "s2"})
            ids.insert(text(name), facade::createSeuqence(treeApp, text(name)));
        for (QString call : calls.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const bool isDisabled = call.endsWith(QLatin1Char('!'));
            call.remove(QLatin1Char('!'));
            const QString from = ids[call.section(QLatin1Char('>'), 0, 0)];
            const QString uuid =
                facade::createProcess(treeApp, from, text("1"), BasicStep, step_type::Sequence, -1);
            const auto block =
                std::dynamic_pointer_cast<SequenceProcessBlock>(facade::getProcess(treeApp, uuid));
            block->sourceKind = SequenceProcessBlock::AppletSequence;
            block->sequenceId =
                ids.value(call.section(QLatin1Char('>'), 1), text("gone")).toStdString();
            block->enableState = isDisabled ? 0 : 2;
        }
    }

private slots:
    /// main: a(a1(a11) a2 a3) b c, end: z
    void init()
    {
        samples::forget(treeApp);
        m_uuids.clear();
        m_sequence = facade::createSeuqence(treeApp, text("main"));
        for (const char* name : {"a", "b", "c"})
            add(text(name), text("1"));
        for (const char* name : {"a1", "a2", "a3"})
            add(text(name), text("a"));
        add(text("a11"), text("a1"));
        add(text("z"), text("2"));
        m_uuids.insert(text("unknown"), text("no-such-block"));
    }

    void insertionsKeepTheirPlace()
    {
        const rows::Table<const char*, int, const char*> table{
            {"first of a flow", "1", 0, "main: new a(a1(a11) a2 a3) b c end: z"},
            {"between", "a", 1, "main: a(a1(a11) new a2 a3) b c end: z"},
            {"index beyond the end", "a", 99, "main: a(a1(a11) a2 a3 new) b c end: z"},
            {"negative index", "1", -5, "main: a(a1(a11) a2 a3) b c new end: z"},
            {"an empty flow", "0", 3, "initial: new main: a(a1(a11) a2 a3) b c end: z"}};
        for (const auto& [row, parent, index, tree] : table) {
            const rows::Named named(row);
            init();
            QVERIFY(!add(text("new"), text(parent), index).isEmpty());
            QCOMPARE(shape(), text(tree));
        }
    }

    void impossibleInsertionsMakeNothing()
    {
        const QString other = facade::createSeuqence(treeApp, text("other"));
        const QString tree = printTree(treeApp, m_sequence);
        QVERIFY(add(text("new"), text("unknown")).isEmpty());
        QVERIFY(add(text("new"), QString()).isEmpty());
        QVERIFY(
            facade::createProcess(treeApp, other, m_uuids[text("a")], BasicStep, step_type::If, 0)
                .isEmpty());
        for (const int type : {0, 11, 14, 18, 19, 28, 10000, 10001})
            QVERIFY(facade::createProcess(treeApp, m_sequence, text("1"), BasicStep, type, -1)
                        .isEmpty());
        QVERIFY(
            facade::createProcess(treeApp, m_sequence, text("1"), DiagnosticStep, 1, -1).isEmpty());
        QCOMPARE(printTree(treeApp, m_sequence), tree);
    }

    void movesReorderTheTree()
    {
        const char* const unchanged = "main: a(a1(a11) a2 a3) b c end: z";
        const rows::Table<const char*, const char*, int, const char*> table{
            {"down among siblings", "a", "1", 1, "main: b a(a1(a11) a2 a3) c end: z"},
            {"up among siblings", "a3", "a", 0, "main: a(a3 a1(a11) a2) b c end: z"},
            {"to its own place", "b", "1", 1, unchanged},
            {"out of its parent", "a1", "1", 1, "main: a(a2 a3) a1(a11) b c end: z"},
            {"into another", "a", "b", 0, "main: b(a(a1(a11) a2 a3)) c end: z"},
            {"to another flow, beyond its end", "a", "2", 9, "main: b c end: z a(a1(a11) a2 a3)"},
            {"under itself", "a", "a", 0, unchanged},
            {"under its own child", "a", "a11", 0, unchanged},
            {"under nothing", "a", "unknown", 0, unchanged},
            {"an unknown block", "unknown", "1", 0, unchanged}};
        for (const auto& [row, block, parent, index, tree] : table) {
            const rows::Named named(row);
            init();
            move(block, parent, index);
            QCOMPARE(shape(), text(tree));
        }
    }

    /// After a move to another flow the nested blocks belong to it too.
    void movedChildrenCanBeMovedOn()
    {
        move("a", "2");
        move("a11", "0");
        add(text("new"), text("a2"));
        facade::removeProcess(treeApp, m_sequence, m_uuids[text("a1")]);
        QCOMPARE(shape(), text("initial: a11 main: b c end: a(a2(new) a3) z"));
        facade::removeAllProcessBySequenceID(treeApp, m_sequence, EndFlow);
        QVERIFY(!facade::getProcess(treeApp, m_uuids[text("new")]));
        QCOMPARE(shape(), text("initial: a11 main: b c"));
    }

    void nestingHasALimit()
    {
        QString parent = text("1");
        int depth = 0;
        for (QString uuid; depth < 1000; ++depth, parent = uuid) {
            uuid = facade::createProcess(treeApp, m_sequence, parent, BasicStep, step_type::If, -1);
            if (uuid.isEmpty())
                break;
        }
        QCOMPARE(depth, 200);
        const QString tree = printTree(treeApp, m_sequence);
        move("b", qPrintable(parent));
        QCOMPARE(printTree(treeApp, m_sequence), tree);
        facade::loadProcessJson(treeApp, facade::generateProcessJson(treeApp));
        QCOMPARE(printTree(treeApp, m_sequence), tree);
    }

    void removalsTakeTheChildrenAlong()
    {
        facade::removeProcess(treeApp, m_sequence, m_uuids[text("a")]);
        QCOMPARE(shape(), text("main: b c end: z"));
        for (const char* name : {"a", "a1", "a11", "a2", "a3"})
            QVERIFY(!facade::getProcess(treeApp, m_uuids[text(name)]));
        facade::removeAllProcessBySequenceID(treeApp, m_sequence, MainFlow);
        QCOMPARE(shape(), text("end: z"));
        add(text("again"), text("1"));
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
        const QString uuid = m_uuids[text("a")];
        const auto copy = facade::getProcess(treeApp, uuid)->copyAlone();
        copy->name = "changed";
        copy->children.clear();
        facade::updateProcess(treeApp, m_sequence, copy);
        facade::removeProcess(treeApp, m_sequence, m_uuids[text("a2")]);
        QCOMPARE(shape(), text("main: changed(a1(a11) a3) b c end: z"));
        facade::updateProcess(treeApp, m_sequence, nullptr);
    }

    void twoAppletsMayHoldTheSameUuids()
    {
        const QString other = text("other_app");
        facade::loadProcessJson(other, facade::generateProcessJson(treeApp));
        facade::removeProcess(other, m_sequence, m_uuids[text("a")]);
        QCOMPARE(shape(other), text("main: b c end: z"));
        QVERIFY(printTree(treeApp, m_sequence).contains(QLatin1String("a11")));
        facade::renameProcessCAppletName(other, treeApp);
        QVERIFY(facade::getCAppletDataIsExist(other));
        facade::renameProcessCAppletName(other, text("renamed"));
        QVERIFY(!facade::getCAppletDataIsExist(other));
        QCOMPARE(shape(text("renamed")), text("main: b c end: z"));
        samples::forget(text("renamed"));
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
        const QString called = facade::createSeuqence(treeApp, text("called"));
        const QString uuid = facade::createProcess(treeApp, m_sequence, m_uuids[text("a11")],
                                                   BasicStep, step_type::Sequence, -1);
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

    void callLoopsAreFound()
    {
        const rows::Table<const char*, bool> table{
            // "from>to", with "!" a disabled step
            {"none", "", false},
            {"itself", "main>main", true},
            {"twice the same", "main>s1 main>s1 s1>s2 main>s2", false},
            {"back to the start", "main>s1 s1>s2 s2>main", true},
            {"further down", "main>s1 s1>s2 s2>s1", true},
            {"elsewhere", "s1>s2 s2>s1", false},
            {"disabled", "main>s1 s1>main!", false},
            {"gone", "main>gone", false}};
        for (const auto& [row, calls, isLoop] : table) {
            const rows::Named named(row);
            init();
            addCalls(text(calls));
            QCOMPARE(process_edit::isHaveSequenceLoop(localName(), m_sequence.toStdString()),
                     isLoop);
        }
    }

    void everyChangeAsksForACompile()
    {
        const QString a = m_uuids[text("a")];
        const auto steps = facade::getProcess(treeApp, a);
        const rows::Table<std::function<void()>> changes{
            {"mark", [] { process_edit::appNeedUpdate(localName()); }},
            {"create", [&] { add(text("new"), text("0")); }},
            {"update", [&] { facade::updateProcess(treeApp, m_sequence, steps); }},
            {"move", [&] { move("a", "2"); }},
            {"remove", [&] { facade::removeProcess(treeApp, m_sequence, a); }},
            {"sequence", [] { facade::createSeuqence(treeApp, text("new")); }},
            {"variable",
             [] { process_edit::addVariable(localName(), ProcessVariable, localName()); }},
            {"global variable",
             [] {
                 process_edit::removeVariables({},
                                               {process_edit::addVariable({}, GlobalVariable, {})});
             }},
            {"load", [] { facade::loadProcessJson(treeApp, text("{}")); }}};
        for (const auto& [row, change] : changes) {
            const rows::Named named(row);
            process_edit::setCompileSucessState(localName());
            facade::generateProcessJson(treeApp);
            facade::getSequence(treeApp, m_sequence);
            QVERIFY(!standalone::needsUpdate(localName()));
            change();
            QVERIFY(standalone::needsUpdate(localName()));
        }
    }
};

PE_TEST("model_tree_test", ModelTreeTest)
#include "model_tree_test.moc"
