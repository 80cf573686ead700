#include "tests/workbench/Person.h"

#include "tests/support/print_tree.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include <memory>

namespace {

/// By keys; what no key has comes from an input method.
void enter(QWidget* widget, const QString& typed)
{
    for (const QChar character : typed) {
        if (character.unicode() < 0x80) {
            QTest::keyClick(widget, character.toLatin1());
            continue;
        }
        QInputMethodEvent event;
        event.setCommitString(character);
        QCoreApplication::sendEvent(widget, &event);
    }
}

/// What was done passes up to two queued connections before the window shows it.
void settle()
{
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
}

/// Calls @p act as soon as @p isThere gives something, also inside of a modal loop.
template <class IsThere, class Act> void whenThere(QObject* context, IsThere isThere, Act act)
{
    auto* timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, isThere, act] {
        if (auto* thing = isThere()) {
            timer->deleteLater();
            timer->stop();
            act(thing);
        }
    });
    timer->start(5);
}

} // namespace

void Person::chooseByKeys(QComboBox* box, const QString& entry)
{
    const int wanted = box->findText(entry);
    if (wanted < 0)
        missing(entry);
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < wanted; ++i)
        QTest::keyClick(box, Qt::Key_Down);
}

QModelIndex Person::row(const QAbstractItemView* view, const char* name)
{
    const QModelIndexList rows =
        view->model()->match(view->model()->index(0, 0), Qt::DisplayRole, text(name), 1,
                             Qt::MatchExactly | Qt::MatchCaseSensitive | Qt::MatchRecursive);
    if (rows.isEmpty())
        missing(text(name) + text(" among\n") +
                test_support::printTree(*view->model()).join(u'\n'));
    return rows.first();
}

template <class Widget> Widget* Person::field(const char* name) const
{
    for (const char* dock : {"controlDock", "settingDock"}) {
        for (Widget* widget : find<QDockWidget>(dock)->findChildren<Widget*>(text(name))) {
            if (widget->isVisible())
                return widget;
        }
    }
    missing(text(name));
}

void Person::click(QAbstractItemView* view, const QModelIndex& index)
{
    seen(view)->scrollTo(index);
    const QRect rect = view->visualRect(index);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      QPoint(rect.left() + rect.width() / 2, rect.center().y()));
    settle();
}

void Person::doubleClick(QAbstractItemView* view, const QModelIndex& index)
{
    click(view, index);
    const QRect rect = view->visualRect(index);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {},
                       QPoint(rect.left() + 4, rect.center().y()));
}

void Person::press(const char* name)
{
    for (QToolBar* bar : m_window.findChildren<QToolBar*>()) {
        for (QAction* action : bar->actions()) {
            if (action->text() == text(name)) {
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
                return;
            }
        }
    }
    missing(text(name));
}

void Person::pressRun(int entry)
{
    auto* run = find<QToolButton>("runBtn");
    run->menu()->actions().at(entry)->trigger();
    QTest::mouseClick(run, Qt::LeftButton, {}, QPoint(5, run->height() / 2));
}

void Person::doubleClickLine(QPlainTextEdit* pane, int line)
{
    const QTextCursor cursor(pane->document()->findBlockByNumber(line));
    pane->setTextCursor(cursor);
    const QPoint spot = pane->cursorRect(cursor).center() + QPoint(4, 0);
    QTest::mouseDClick(pane->viewport(), Qt::LeftButton, {}, spot);
}

void Person::showTab(const char* title)
{
    for (QTabBar* tabs : m_window.findChildren<QTabBar*>()) {
        for (int tab = 0; tabs->isVisible() && tab < tabs->count(); ++tab) {
            if (tabs->tabText(tab) != text(title))
                continue;
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
            settle();
            return;
        }
    }
    missing(text(title));
}

void Person::chooseStep(const char* name)
{
    auto* palette = find<QTreeWidget>("treeWidget");
    doubleClick(palette, row(palette, name));
    settle();
}

void Person::dragStep(const char* kind, const char* onto, const char* over,
                      const std::function<void()>& look)
{
    auto* palette = find<QTreeWidget>("treeWidget");
    QModelIndexList places{row(steps(), onto)};
    if (over)
        places.prepend(row(steps(), over));
    drag(palette, row(palette, kind), steps(), places, look);
}

void Person::drag(QAbstractItemView* from, const QModelIndex& index, QAbstractItemView* to,
                  const QModelIndexList& places, const std::function<void()>& look)
{
    // Offscreen every drag is given up at once: its events are played here.
    if (!(index.flags() & Qt::ItemIsDragEnabled))
        missing(index.data().toString() + text(", as something to drag"));
    seen(from)->scrollTo(index);
    const std::unique_ptr<QMimeData> data(from->model()->mimeData({index}));
    const auto send = [to](auto event) { QCoreApplication::sendEvent(to->viewport(), &event); };
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QPoint at = to->visualRect(places.first()).center();
    send(QDragEnterEvent(at, actions, data.get(), Qt::LeftButton, Qt::NoModifier));
    for (const QModelIndex& place : places) {
        at = to->visualRect(place).center();
        send(QDragMoveEvent(at, actions, data.get(), Qt::LeftButton, Qt::NoModifier));
        if (look)
            look();
    }
    send(QDropEvent(at, actions, data.get(), Qt::LeftButton, Qt::NoModifier));
    settle();
}

void Person::pressInSteps(Qt::Key key)
{
    seen(steps())->setFocus();
    QTest::keyClick(steps(), key);
    settle();
}

void Person::toggleStep(const char* name)
{
    QTreeView* tree = steps();
    const QModelIndex step = row(tree, name);
    seen(tree)->scrollTo(step);
    QStyleOptionViewItem option;
    option.initFrom(tree);
    option.rect = tree->visualRect(step);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.text = step.data().toString();
    const QRect box =
        tree->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, tree);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, box.center());
}

void Person::type(const char* name, const char* value)
{
    auto* widget = field<QWidget>(name);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    enter(widget, text(value));
}

void Person::tick(const char* name)
{
    QTest::mouseClick(field<QAbstractButton>(name), Qt::LeftButton, {}, QPoint(8, 8));
    settle();
}

void Person::showPage(const char* title)
{
    auto* pages = find<QListWidget>("listWidget");
    click(pages, row(pages, title));
}

void Person::pickVariable(const char* button, const char* variable,
                          const std::function<void(QWidget* picker)>& look)
{
    QString complaint;
    whenThere(
        &m_window, [] { return QApplication::activeModalWidget(); },
        [&](QWidget* picker) {
            try {
                auto* tree = there(picker->findChild<QTreeWidget*>(text("treeVars")), "treeVars");
                doubleClick(tree, row(tree, variable));
                if (look)
                    look(picker);
                QTest::mouseClick(picker->findChild<QAbstractButton*>(text("btnOk")),
                                  Qt::LeftButton);
            } catch (const std::runtime_error& error) {
                complaint = text(error.what());
                picker->close();
            }
        });
    QTest::mouseClick(field<QAbstractButton>(button), Qt::LeftButton);
    if (!complaint.isEmpty())
        missing(complaint);
}

void Person::chooseForRow(QAbstractItemView* view, const QModelIndex& index, const char* entry)
{
    click(view, index);
    chooseInMenu(view, view->visualRect(index).center(), entry);
}

void Person::chooseInMenu(QAbstractItemView* view, const QPoint& place, const char* entry)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(seen(view)->viewport(), &event);
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    for (QAction* action : there(menu, "a menu")->actions()) {
        if (action->text() == text(entry)) {
            QTest::mouseClick(QApplication::activePopupWidget(), Qt::LeftButton, {},
                              menu->actionGeometry(action).center());
            return;
        }
    }
    missing(text(entry));
}

void Person::typeInCell(QAbstractItemView* view, const QModelIndex& cell, const QString& value)
{
    const QPersistentModelIndex place(cell);
    doubleClick(view, cell);
    QWidget* editor = view->indexWidget(place);
    if (!editor)
        editor = view->viewport()->findChild<QLineEdit*>();
    there(editor, "an editor for the cell");
    if (auto* box = qobject_cast<QComboBox*>(editor)) {
        chooseByKeys(box, value);
    } else {
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        enter(editor, value);
    }
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Person::addVariable(const char* group, const char* name, const char* type, const char* value,
                         const char* remark)
{
    QTreeView* tree = variables();
    chooseForRow(tree, row(tree, group), "添加变量");
    const QModelIndex group_ = row(tree, group);
    const QPersistentModelIndex added =
        tree->model()->index(tree->model()->rowCount(group_) - 1, 0, group_);
    const char* const texts[] = {name, value, type, remark};
    // The type first: a change of it resets the value.
    for (int column : {0, 2, 1, 3}) {
        if (*texts[column])
            typeInCell(tree, added.sibling(added.row(), column), text(texts[column]));
    }
}

void Person::addSequence()
{
    chooseInMenu(sequences(), sequences()->viewport()->rect().bottomLeft() + QPoint(20, -3),
                 "添加序列");
}

void Person::makeMain(int number)
{
    auto* cell = sequences()->indexWidget(sequences()->model()->index(number, 1));
    QTest::mouseClick(there(cell, "a cell")->findChild<QCheckBox*>(), Qt::LeftButton);
}
