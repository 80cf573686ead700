// Steps by drag and drop, as the views and the services meet it: what drags carry, what of it is
// believed, and real drag events over the tree.

#include "logic/palette/StepTree.h"
#include "logic/rows/step_mime.h"
#include "model/mime_types.h"
#include "tests/logic/EditFixture.h"
#include "tests/support/test_program.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QTest>
#include <QToolTip>

#include <memory>

using namespace sdk_ui_interface;

namespace {

using Data = std::unique_ptr<QMimeData>;

/// mimeData() as a drag asks for it.
class Palette : public StepTree
{
public:
    Data dataOf(QTreeWidgetItem* item) { return Data(mimeData({item})); }
};

/// Formats with their texts, one a line.
QStringList printed(const QMimeData& data)
{
    QStringList lines;
    const QStringList formats = data.formats();
    for (const QString& format : formats)
        lines.append(format + QLatin1Char('=') + QString::fromUtf8(data.data(format)));
    lines.sort();
    return lines;
}

class Drops : public EditFixture
{
public:
    explicit Drops(const char* steps) : EditFixture(steps)
    {
        view.resize(800, 600);
        view.show();
        QCoreApplication::processEvents();
    }

    Data rowData(const QString& uuid) const
    {
        return Data(model()->mimeData({row(uuid)->index()}));
    }
    /// A pointer that carries data comes over the middle of a row, or over the ground.
    QPoint placeOf(const QString& uuid) const
    {
        return uuid.isEmpty() ? tree->viewport()->rect().bottomLeft() + QPoint(40, -10)
                              : tree->visualRect(row(uuid)->index()).center();
    }
    bool hover(const QMimeData& data, const QPoint& place)
    {
        QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &enter);
        QDragMoveEvent move(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &move);
        action = move.dropAction();
        return enter.isAccepted() && move.isAccepted();
    }
    void letGo(const QMimeData& data, const QPoint& place)
    {
        QDropEvent event(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &event);
    }
    const QLabel* reason() const
    {
        return tree->findChild<QLabel*>(QStringLiteral("dropRefusalLabel"));
    }
    QString shownReason() const { return reason()->isVisible() ? reason()->text() : QString(); }

    Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    Qt::DropAction action = Qt::IgnoreAction; ///< of the last hover
};

} // namespace

class DragAndDropTest : public QObject
{
    Q_OBJECT
private slots:
    void whatDragsCarry();
    void rowsOfOthersAreRefused();
    void paletteOverTheTree();
    void rowsMoveWithTheirBlocks();
    void serviceThatRefuses();
    void goneQuickStep();
};

void DragAndDropTest::whatDragsCarry()
{
    Palette palette;
    BaseStepProperty kind;
    kind.name = "延时";
    kind.stepType = step_type::Delay;
    kind.draggable = true;
    QTreeWidgetItem* item = palette.createStepItem(kind, nullptr, false);
    const QStringList items{text("application/x-qabstractitemmodeldatalist="),
                            text("application/x-qstandarditemmodeldatalist=")};
    QStringList expected =
        items + QStringList{text("application/stepitem=延时"), text("application/baseType=3"),
                            text("application/type=%1").arg(step_type::Delay),
                            text("application/stepName=延时")};
    expected.sort();
    QCOMPARE(printed(*palette.dataOf(item)), expected);

    kind.name = "快捷添加";
    kind.stepType = step_type::QuickStepFolder;
    QTreeWidgetItem* folder = palette.createStepItem(kind, nullptr, false);
    kind.stepType = step_type::Delay;
    QTreeWidgetItem* quick = palette.createStepItem(kind, folder, false);
    quick->setData(0, logic_roles::QuickStepId, text("id"));
    QCOMPARE(palette.dataOf(quick)->data(text("application/isQuickStep")), QByteArray("id"));

    Drops editor("a");
    const QString delay = editor.id("a");
    const auto address = qulonglong(quintptr(editor.row(delay)));
    expected = items + QStringList{text("application/baseType=3"),
                                   text("application/type=%1").arg(step_type::Delay),
                                   text("application/blockUuid=") + delay,
                                   text("application/dragItem=%1").arg(address)};
    expected.sort();
    QCOMPARE(printed(*editor.rowData(delay)), expected);
}

void DragAndDropTest::rowsOfOthersAreRefused()
{
    Drops editor("a b");
    const QString delay = editor.id("a");
    const QString gone = editor.id("b");
    Data ofGone = editor.rowData(gone);
    editor.setCurrent(gone);
    editor.view.removeRowSlot();
    LogicView otherView;
    otherView.setCAppletName(editor.applet.appName);
    otherView.addNewModelSlot(editor.sequence);
    const auto* other = qobject_cast<CustonStandModel*>(otherView.editModel(editor.sequence));
    Data ofOther(other->mimeData({other->rowOf(delay)->index()}));
    const Data sound = editor.rowData(delay);
    const auto with = [&](QLatin1String type, const QByteArray& value) {
        const QStringList formats = sound->formats();
        auto changed = std::make_unique<QMimeData>();
        for (const QString& format : formats)
            changed->setData(format, sound->data(format));
        changed->setData(type, value);
        return changed;
    };
    const struct
    {
        const char* name;
        Data data;
    } cases[] = {
        {"of a row that is gone", std::move(ofGone)},
        {"of another window on the same sequence", std::move(ofOther)},
        {"an address that is nobody's", with(mime_types::DragItem, "4711")},
        {"no address", with(mime_types::DragItem, "")},
        {"an address that is no number", with(mime_types::DragItem, "0x12")},
        {"another row's uuid", with(mime_types::BlockUuid, "nobody")},
        {"a very long uuid", with(mime_types::BlockUuid, QByteArray(1 << 20, 'a'))},
        {"the uuid of a flow", with(mime_types::BlockUuid, "0")},
        {"a kind that is no number", with(mime_types::BaseType, "three")},
        {"of another applet", with(mime_types::AppletName, "somebody")},
        {"of another sequence", with(mime_types::SequenceId, "somewhere")},
        {"a variable", std::make_unique<QMimeData>()},
    };
    const QString before = editor.steps();
    for (const auto& each : cases) {
        const QModelIndex end = editor.row(editor.applet.end)->index();
        QVERIFY2(!editor.model()->canDropMimeData(each.data.get(), Qt::MoveAction, -1, 0, end),
                 each.name);
        QVERIFY2(!editor.model()->dropMimeData(each.data.get(), Qt::MoveAction, -1, 0, end),
                 each.name);
        QCOMPARE(editor.steps(), before);
    }
    QVERIFY(editor.model()->canDropMimeData(sound.get(), Qt::MoveAction, -1, 0,
                                            editor.row(editor.applet.end)->index()));
}

void DragAndDropTest::paletteOverTheTree()
{
    Drops editor("for endfor a if else endif");
    const QRect ofIf = editor.tree->visualRect(editor.cell("if"));
    const Data other = step_mime::ofKind(QString(), BasicStep, step_type::Else, QString());
    editor.hover(*other, editor.placeOf(editor.id("a")));
    QCOMPARE(editor.action, Qt::MoveAction);
    QVERIFY(!editor.hover(*other, QPoint(ofIf.center().x(), ofIf.bottom()))); // before else
    QCOMPARE(editor.shownReason(), text("else只能放在endif之前，else if不能放在else之后"));
    QVERIFY(!editor.hover(*other, QPoint(ofIf.center().x(), ofIf.top()))); // before if
    QCOMPARE(editor.shownReason(), text("else和else if只能接在if或else if之后"));
    editor.actions = Qt::CopyAction; // as the palette allows
    const QString loop = editor.id("for");
    const QString delay = editor.id("a");
    const Data branch = step_mime::ofKind(QString(), BasicStep, step_type::Else, QString());
    const Data exit = step_mime::ofKind(QString(), BasicStep, step_type::Break, QString());

    QVERIFY(!editor.hover(*branch, editor.placeOf(loop)));
    QCOMPARE(editor.shownReason(), text("else和else if只能接在if或else if之后"));
    QVERIFY(editor.tree->viewport()->rect().contains(editor.reason()->geometry()));
    QVERIFY(!editor.reason()->geometry().contains(editor.placeOf(loop)));
    QVERIFY(editor.hover(*exit, editor.placeOf(loop)));
    QCOMPARE(editor.shownReason(), QString());
    QVERIFY(!editor.hover(*exit, editor.placeOf(delay)));
    QVERIFY(!editor.shownReason().isEmpty());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(editor.tree->viewport(), &leave);
    QCOMPARE(editor.shownReason(), QString());

    editor.modified.clear();
    editor.hover(*exit, editor.placeOf(loop));
    editor.letGo(*exit, editor.placeOf(loop));
    QCOMPARE(editor.steps(), text(" | for[break] endfor a if else endif | "));
    QCOMPARE(editor.modified.count(), 1);
    QVERIFY(editor.isInSight(editor.tree->currentIndex()));
    QCOMPARE(editor.tree->currentIndex().data().toString(), text("break"));
}

void DragAndDropTest::rowsMoveWithTheirBlocks()
{
    Drops editor("a- | if[inner] endif " + Drops::numbered(60) + " | ");
    const QString delay = editor.id("a");
    const QString branch = editor.id("if");
    const QString inner = editor.id("inner");
    editor.modified.clear();

    const Data data = editor.rowData(branch);
    QVERIFY(!editor.hover(*data, editor.placeOf(inner)));
    QCOMPARE(editor.shownReason(), text("不能移入自身"));
    editor.letGo(*data, editor.placeOf(inner));
    QCOMPARE(editor.modified.count(), 0);

    const QModelIndex initial = editor.row(editor.applet.initial)->index();
    QVERIFY(editor.hover(*data, editor.placeOf(editor.applet.initial)));
    editor.letGo(*data, editor.placeOf(editor.applet.initial));
    QCOMPARE(test_support::printTree(*editor.model(), {0}, initial),
             lines("[ ] a\n[ ] if\n  [ ] inner\n[ ] endif"));
    QVERIFY(editor.showsTheService());
    QCOMPARE(editor.modified.count(), 1);
    QCOMPARE(editor.currentUuid(), branch);
    QCOMPARE(editor.tree->selectionModel()->selectedRows().size(), 1);
    QVERIFY(editor.isInSight(editor.tree->currentIndex()));
    QVERIFY(editor.tree->isExpanded(editor.row(branch)->index()));

    // Below all rows: the end of the main flow.
    editor.tree->collapse(editor.row(editor.applet.main)->index());
    const Data single = editor.rowData(delay);
    QVERIFY(editor.hover(*single, editor.placeOf(QString())));
    editor.letGo(*single, editor.placeOf(QString()));
    QCOMPARE(editor.row(delay)->row(), editor.row(editor.applet.main)->rowCount() - 1);
    QVERIFY(editor.isInSight(editor.row(delay)->index()));
    QVERIFY(editor.showsTheService());
}

void DragAndDropTest::serviceThatRefuses()
{
    // Deeper than a document may be nested.
    Drops editor("for[inner] endfor |  | ");
    QString deepest;
    for (QString next = editor.applet.main; !next.isEmpty();) {
        deepest = next;
        next = processedit::createProcess(editor.applet.appName, editor.sequence, deepest,
                                          BasicStep, step_type::For, -1);
        if (!next.isEmpty())
            editor.applet.get<IProcessBlock>(next)->property.hasChildren = true;
    }
    editor.show();
    const QString before = step_trees::print(*editor.model());
    QVERIFY(editor.drop(text("for"), deepest, -1));
    QCOMPARE(QToolTip::text(), text("步骤不能移到此处"));
    QTRY_COMPARE(step_trees::print(*editor.model()), before);
    QVERIFY(editor.showsTheService());
}

void DragAndDropTest::goneQuickStep()
{
    Drops editor("a");
    const QString id = processedit::addQuickStepInfo(editor.applet.appName, editor.id("a"));
    const Data data = step_mime::ofKind(QString(), BasicStep, step_type::Delay, id);
    processedit::removeQuickStepInfo(id);
    const QString before = editor.steps();
    editor.modified.clear();
    editor.hover(*data, editor.placeOf(editor.applet.main));
    editor.letGo(*data, editor.placeOf(editor.applet.main));
    QCOMPARE(editor.steps(), before);
    QCOMPARE(editor.modified.count(), 0);
    QCOMPARE(editor.boxes, QStringList());
    QCOMPARE(QToolTip::text(), text("该快捷步骤已不存在"));
}

PE_WIDGET_TEST("drag_and_drop", DragAndDropTest)
#include "drag_and_drop_test.moc"
