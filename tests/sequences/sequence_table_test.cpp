// The sequence table as its user works it: what reaches the model, what is told in which order,
// what it offers and how it looks.

#include "edits/DocumentEdits.h"
#include "model/applet_name.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "sequences/SequenceTable.h"
#include "sequences/sameNameScanDelegate.h"
#include "sequences/wgtSequenceTable.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QtTest>

#include <utility>

namespace processedit = sdk_ui_interface::processedit;

namespace {

/// A shown table with an applet of its own. Warnings are gathered instead of shown; all signals are
/// gathered in their order, as "name" or "name id,id", the ids told as the names that the sequences
/// had when they were added here.
class Fixture
{
public:
    explicit Fixture(const char* sequences = "a b c d e") : applet(appName)
    {
        previous = user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            messages.append(message.title + QLatin1Char('|') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
        panel.setCAppletName(appName);
        gatherSignals();
        panel.resize(430, 400);
        panel.show();
        names = text(sequences).split(u' ', Qt::SkipEmptyParts);
        for (const QString& name : qAsConst(names)) {
            ids.append(processedit::createSeuqence(appName, name));
            panel.addSequenceRow(record(ids.last()), false);
        }
    }
    ~Fixture() { user_dialogs::setHandler(previous); }

    SequenceInfo record(const QString& id) const { return processedit::getSequence(appName, id); }
    std::string name(int sequence) const { return record(ids[sequence]).name; }
    /// The applet's sequences in the model, the main one with a "*".
    QString modelNames() const
    {
        QStringList all;
        for (const SequenceInfo& info : processedit::getAllSequenceByAppName(appName))
            all.append(QString::fromStdString(info.name) + QLatin1String(info.isMain ? "*" : ""));
        return all.join(u' ');
    }
    QString takeTold() { return std::exchange(told, {}).join(QLatin1String("; ")); }
    QString cell(int row, int column) const { return table->item(row, column)->text(); }

    void select(const QVector<int>& rows)
    {
        table->clearSelection();
        for (int row : rows)
            table->selectionModel()->select(table->model()->index(row, 0),
                                            QItemSelectionModel::Select |
                                                QItemSelectionModel::Rows);
    }
    /// The editor of a cell, opened as by a double click.
    QLineEdit* edit(int row, int column = 0)
    {
        table->setCurrentCell(row, column);
        table->editItem(table->item(row, column));
        told.clear();
        return table->findChild<QLineEdit*>();
    }
    void trigger(int action) { panel.makeContextMenu()->actions()[action]->trigger(); }

    const QString appName = QStringLiteral("sequence_table_test");
    applet_fixture::ScopedApplet applet;
    wgtSequenceTable panel;
    SequenceTable* table = panel.findChild<SequenceTable*>(QStringLiteral("tableWidget"));
    QStringList ids; ///< of the sequences that it began with
    QStringList names;
    QStringList messages; ///< "title|text"

private:
    void tell(const char* signal, const QStringList& withIds = {})
    {
        QStringList known;
        for (const QString& id : withIds)
            known.append(ids.contains(id) ? names[ids.indexOf(id)] : id);
        told.append((text(signal) + u' ' + known.join(u',')).trimmed());
    }
    void gatherSignals()
    {
        using Table = wgtSequenceTable;
        const auto* p = &panel;
        QObject::connect(p, &Table::signalAddSquence, p, [this](auto id) { tell("added", {id}); });
        QObject::connect(p, &Table::signalRemoveSequence, p,
                         [this](auto list) { tell("removed", list); });
        QObject::connect(p, &Table::signalRemoveAllSequence, p, [this] { tell("removedAll"); });
        QObject::connect(p, &Table::currentSequenceChanged, p,
                         [this](auto id) { tell("current", {id}); });
        QObject::connect(p, &Table::signalAddTemplate, p,
                         [this](auto list) { tell("template", list); });
        QObject::connect(p, &Table::signalRenameSequence, p, [this] { tell("renamed"); });
        QObject::connect(&DocumentEdits::instance(), &DocumentEdits::modified, p,
                         [this] { tell("modified"); });
    }

    QStringList told;
    user_dialogs::Handler previous;
};

void requestLayout(QWidget* widget)
{
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(widget, &request);
}

/// Asks for the context menu as a right click does; the menu that came up, or null.
QMenu* rightClick(const SequenceTable* table)
{
    const QPoint position(20, 20);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            table->viewport()->mapToGlobal(position));
    QCoreApplication::sendEvent(table->viewport(), &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

} // namespace

class SequenceTableTest : public QObject
{
    Q_OBJECT
private slots:
    void loadingTellsNothing();
    void adding();
    void currentFollowsTheKeys();
    void editing();
    void arrowKeyEndsAnEdit();
    void typedTextCounts();
    void mainSequence();
    void removing();
    void removingAll();
    void contextMenu();
    void dragData();
    void editors();
    void boxesStandInTheirCells();
    void sizes();
};

void SequenceTableTest::loadingTellsNothing()
{
    Fixture f;
    SequenceInfo info = f.record(f.ids[1]);
    info.comment = "注释";
    f.panel.addSequenceRow(info, true);
    QCOMPARE(f.panel.currentSequenceId(), f.ids[1]);
    QCOMPARE(f.table->selectedRows(), QVector<int>({5}));
    QCOMPARE(f.table->item(5, 0)->toolTip(), text("b"));
    QCOMPARE(f.cell(5, 2), text("注释"));
    QVERIFY(f.table->mainBoxAt(0)->isChecked() && !f.table->mainBoxAt(5)->isChecked());
    f.panel.clearRows();
    QCOMPARE(f.takeTold(), QString());
    QCOMPARE(f.table->rowCount(), 0);
    f.panel.setCAppletName(QString());
    f.panel.addSequenceSlot(); // to no applet
    QCOMPARE(f.takeTold(), QString());
    QCOMPARE(f.table->rowCount(), 0);
}

void SequenceTableTest::adding()
{
    Fixture f("Sequence_0 Sequence_2");
    f.trigger(0);
    QCOMPARE(f.modelNames(), text("Sequence_0* Sequence_2 Sequence_3"));
    const QString id = f.table->sequenceIdAt(2);
    QCOMPARE(f.record(id).name, std::string("Sequence_3"));
    QCOMPARE(f.takeTold(), text("added %1; current %1; modified").arg(id));
    QCOMPARE(f.panel.currentSequenceId(), id);
    QCOMPARE(f.table->selectedRows(), QVector<int>({2}));
}

void SequenceTableTest::currentFollowsTheKeys()
{
    Fixture f;
    f.panel.selectSequence(f.ids[1]);
    f.panel.selectSequence(text("unknown"));
    for (const auto key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up})
        QTest::keyClick(f.table, key);
    // The column of the boxes is passed on the way down: it tells of its row like the others.
    QCOMPARE(f.takeTold(), text("current b; current c; current b"));
}

void SequenceTableTest::editing()
{
    const auto enter = Qt::Key_Return;
    const rows::Table<int, const char*, Qt::Key, const char*, const char*, const char*> table{
        {"name", 0, "1Start_1", enter, "Start_1", "", "renamed; modified"},
        {"as before", 0, "b", enter, "b", "", ""},
        {"empty name", 0, "", enter, "b", "warning|名称不能为空", ""},
        {"taken name", 0, "d", enter, "b", "warning|存在同名序列，请重新命名", ""},
        {"given up", 0, "x", Qt::Key_Escape, "b", "", ""},
        {"comment", 2, "1, 2 - c", enter, "1, 2 - c", "", "modified"}};
    for (const auto& [row, column, typed, lastKey, left, message, told] : table) {
        const rows::Named named(row);
        Fixture f;
        SequenceInfo info = f.record(f.ids[1]);
        info.comment = "old";
        processedit::updateSequence(f.appName, info);
        f.panel.clearRows();
        for (const QString& id : qAsConst(f.ids))
            f.panel.addSequenceRow(f.record(id), false);

        QPointer<QLineEdit> editor = f.edit(1, column);
        QVERIFY(editor);
        QCOMPARE(editor->text(), text(column == 0 ? "b" : "old"));
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, text(typed));
        QTest::keyClick(editor, lastKey);
        QTRY_VERIFY(!editor);
        info = f.record(f.ids[1]);
        QCOMPARE(QString::fromStdString(column == 0 ? info.name : info.comment), text(left));
        QCOMPARE(f.cell(1, column), text(left));
        QCOMPARE(f.table->item(1, column)->toolTip(), text(left));
        QCOMPARE(f.messages.join(u' '), text(message));
        QCOMPARE(f.takeTold(), text(told));
    }
}

void SequenceTableTest::arrowKeyEndsAnEdit()
{
    Fixture f;
    QPointer<QLineEdit> editor = f.edit(1);
    QVERIFY(editor);
    editor->setText(text("typed"));
    QTest::keyClick(editor, Qt::Key_Down);
    QTRY_VERIFY(!editor);
    QCOMPARE(f.panel.currentSequenceId(), f.ids[2]);
    QCOMPARE(f.name(1), std::string("typed"));
    QCOMPARE(f.name(2), std::string("c"));
}

/// What reads the sequences finds the name as it has been typed, though the editor is still open.
void SequenceTableTest::typedTextCounts()
{
    for (const char* act : {"flush", "add", "remove", "template"}) {
        const rows::Named named(act);
        Fixture f;
        f.edit(1)->setText(text("typed"));
        std::string seen;
        const auto look = [&] { seen = f.name(1); };
        connect(&f.panel, &wgtSequenceTable::signalAddSquence, &f.panel, look);
        connect(&f.panel, &wgtSequenceTable::signalRemoveSequence, &f.panel, look);
        connect(&f.panel, &wgtSequenceTable::signalAddTemplate, &f.panel, look);
        if (qstrcmp(act, "flush") == 0) {
            f.panel.flushPending();
            look();
        } else if (qstrcmp(act, "add") == 0) {
            f.panel.addSequenceSlot();
        } else if (qstrcmp(act, "remove") == 0) {
            f.select({3});
            f.panel.removeSelectedSequence();
        } else {
            f.panel.addSequenceToTemplate();
        }
        QCOMPARE(seen, std::string("typed"));
        QCOMPARE(f.cell(1, 0), text("typed"));
        QVERIFY(f.takeTold().contains(text("renamed")));
        QTRY_VERIFY(!f.table->findChild<QLineEdit*>());

        // A name that may not be is refused as after Return, once.
        f.edit(0)->setText(text("typed"));
        f.panel.flushPending();
        f.panel.flushPending();
        QCOMPARE(f.messages.size(), 1);
        QCOMPARE(f.name(0), std::string("a"));
        QCOMPARE(f.cell(0, 0), text("a"));
    }
}

void SequenceTableTest::mainSequence()
{
    Fixture f("a b c");
    QTest::mouseClick(f.table->mainBoxAt(2), Qt::LeftButton);
    QCOMPARE(f.modelNames(), text("a b c*"));
    QVERIFY(!f.table->mainBoxAt(0)->isChecked());
    QCOMPARE(f.takeTold(), text("modified")); // both records are one act
    for (int press = 0; press < 3; ++press) {
        QSignalSpy clicked(f.table->mainBoxAt(2), &QCheckBox::clicked);
        QTest::keyClick(f.table->mainBoxAt(2), Qt::Key_Space);
        QCOMPARE(clicked.count(), 1);
        QVERIFY(f.table->mainBoxAt(2)->isChecked());
    }
    QCOMPARE(f.modelNames(), text("a b c*"));
    QCOMPARE(f.takeTold(), QString());
    QTest::mouseClick(f.table->mainBoxAt(0), Qt::LeftButton);
    QCOMPARE(f.modelNames(), text("a* b c"));
    QVERIFY(!f.table->mainBoxAt(2)->isChecked());
}

void SequenceTableTest::removing()
{
    const rows::Table<QVector<int>, const char*, const char*> table{
        // in the order of selection
        {"none", {}, "a* b c d e", ""},
        {"neighbours and one apart", {4, 1, 2}, "a* d", "removed e,c,b; current a; modified"},
        {"the current one, at the end", {4, 2}, "a* b d", "removed e,c; current b; modified"},
        {"every one", {0, 1, 2, 3, 4}, "", "removed e,d,c,b,a; current; modified"}};
    for (const auto& [row, selected, left, told] : table) {
        const rows::Named named(row);
        Fixture f;
        const std::string app = appletNameBytes(f.appName);
        for (const QString& id : qAsConst(f.ids))
            process_edit::addVariable(app, SequenceVariable, id.toStdString());
        f.table->setCurrentCell(2, 0);
        f.select(selected);
        f.takeTold();
        f.trigger(2);
        QCOMPARE(f.modelNames(), text(left));
        QCOMPARE(f.table->names().join(u' '), text(left).remove(u'*'));
        QCOMPARE(f.takeTold(), text(told));
        for (const QString& id : qAsConst(f.ids))
            QCOMPARE(process_edit::getAllSequenceVariable(app, id.toStdString()).empty(),
                     f.record(id).id.empty());
        if (!selected.isEmpty() && *left)
            QCOMPARE(f.table->selectedRows(), QVector<int>({f.table->currentRow()}));
    }
}

void SequenceTableTest::removingAll()
{
    Fixture f;
    const std::string app = appletNameBytes(f.appName);
    const std::string id = f.ids[2].toStdString();
    process_edit::addVariable(app, SequenceVariable, id);
    f.trigger(3);
    QCOMPARE(f.modelNames(), QString());
    QCOMPARE(f.table->rowCount(), 0);
    QVERIFY(process_edit::getAllSequenceVariable(app, id).empty());
    QCOMPARE(f.takeTold(), text("removedAll; current; modified"));
    QCOMPARE(f.table->horizontalHeaderItem(0)->text(), text("序列名称(英文/数字)"));
    f.panel.addSequenceSlot();
    QCOMPARE(f.modelNames(), text("Sequence_0*"));
    QVERIFY(f.table->mainBoxAt(0)->isChecked());
}

void SequenceTableTest::contextMenu()
{
    Fixture f;
    const auto entries = [](const QMenu* menu) {
        QString texts;
        for (const QAction* action : menu->actions())
            texts += text(action->isEnabled() ? "+" : "-") + action->text();
        return texts;
    };
    QPointer<QMenu> menu = rightClick(f.table);
    QVERIFY(menu);
    QCOMPARE(entries(menu), text("+添加序列-添加选中序列至模板-删除所选序列+删除所有序列"));
    menu->close();
    QTRY_VERIFY(!menu);
    f.select({3, 0, 2});
    QVERIFY(!entries(f.panel.makeContextMenu()).contains(u'-'));
    f.takeTold();
    f.trigger(1);
    QCOMPARE(f.takeTold(), text("template a,c,d"));
    f.panel.setContextMenuDisabled(true);
    QVERIFY(!f.panel.makeContextMenu()->isEnabled());
    QVERIFY(!rightClick(f.table));
}

void SequenceTableTest::dragData()
{
    Fixture f;
    f.select({2, 0});
    const std::unique_ptr<QMimeData> data(
        f.table->model()->mimeData(f.table->selectionModel()->selectedIndexes()));
    QStringList formats;
    for (const QString& format : data->formats())
        formats.append(format + u'=' + QString::fromUtf8(data->data(format)));
    formats.sort();
    QCOMPARE(formats, QStringList({text("application/capp_name=") + f.appName,
                                   text("application/sequence_drag="),
                                   text("application/sequence_id=") + f.ids[0] + u';' + f.ids[2],
                                   text("application/x-qabstractitemmodeldatalist="),
                                   text("application/x-qstandarditemmodeldatalist=")}));
    QVERIFY(!f.table->acceptDrops() && f.table->dragEnabled());
}

void SequenceTableTest::editors()
{
    Fixture f;
    const auto doubleClick = [&f](int column) {
        const QPoint place =
            f.table->visualRect(f.table->model()->index(0, column)).topLeft() + QPoint(3, 3);
        QTest::mouseClick(f.table->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(f.table->viewport(), Qt::LeftButton, {}, place);
        return f.table->viewport()->findChild<QLineEdit*>();
    };
    QVERIFY(!doubleClick(SequenceTable::MainColumn));
    const QLineEdit* name = doubleClick(SequenceTable::NameColumn);
    QVERIFY(name);
    QCOMPARE(name->placeholderText(), text("字母或下划线开头"));
    QVERIFY(name->inputMethodHints().testFlag(Qt::ImhHiddenText));

    auto* delegate = qobject_cast<sameNameScanDelegate*>(f.table->itemDelegate());
    QVERIFY(delegate);
    delegate->setNameValidatorOff(true);
    QWidget parent;
    auto* free = qobject_cast<QLineEdit*>(
        delegate->createEditor(&parent, {}, f.table->model()->index(0, 0)));
    QTest::keyClicks(free, text("1 -"));
    QCOMPARE(free->text(), text("1 -"));
}

void SequenceTableTest::boxesStandInTheirCells()
{
    QString names;
    for (int i = 0; i < 50; ++i)
        names += QStringLiteral("s%1 ").arg(i);
    Fixture f(qPrintable(names));
    f.panel.addSequenceSlot(); // scrolls to the end
    f.table->removeRowsAt({0, 1, 2, 10});
    QCoreApplication::processEvents();
    const int last = f.table->rowCount() - 1;
    for (int row = 0; row <= last; ++row) {
        const QRect cell = f.table->visualRect(f.table->model()->index(row, 1));
        const QCheckBox* box = f.table->mainBoxAt(row);
        const QPoint centre = box->mapTo(f.table->viewport(), box->rect().center());
        QVERIFY((centre - cell.center()).manhattanLength() <= 2);
    }
    QVERIFY(f.table->mainBoxAt(last)->visibleRegion().boundingRect().height() > 8);
}

void SequenceTableTest::sizes()
{
    Fixture f;
    const int mainWidth = f.table->columnWidth(SequenceTable::MainColumn);
    QVERIFY(mainWidth >= 48);
    f.panel.resize(900, 400);
    QCOMPARE(f.table->columnWidth(SequenceTable::MainColumn), mainWidth);
    QTRY_VERIFY(f.table->columnWidth(SequenceTable::NameColumn) > 400);

    const int height = f.table->rowHeight(0);
    QVERIFY(height >= qMax(30, 2 * QFontMetrics(QApplication::font()).height()));
    f.table->setRowHeight(0, 90);
    requestLayout(f.table);
    QCOMPARE(f.table->rowHeight(0), height); // as it stood before it was fitted
}

PE_WIDGET_TEST("sequence_table", SequenceTableTest)
#include "sequence_table_test.moc"
