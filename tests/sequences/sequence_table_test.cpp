// The sequence table as its user works it: what reaches the model, and what is told in which order.

#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "tests/sequences/SequenceTableFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QCheckBox>
#include <QtTest>

namespace {

QStringList split(const QString& list)
{
    return list.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QVector<int> numbers(const QString& list)
{
    QVector<int> rows;
    for (const QString& number : split(list))
        rows.append(number.toInt());
    return rows;
}

const QStringList& fiveNames()
{
    static const QStringList names = split(QStringLiteral("a b c d e"));
    return names;
}

} // namespace

class SequenceTableTest : public QObject
{
    Q_OBJECT
private slots:
    void loadingTellsNothing();
    void adding();
    void nothingIsAddedWithoutAnApplet();
    void currentFollowsTheKeys();
    void editing();
    void arrowKeyEndsAnEdit();
    void typedTextCounts_data();
    void typedTextCounts();
    void mainSequence();
    void removing();
    void removingAll();
    void addingTemplates();
};

void SequenceTableTest::loadingTellsNothing()
{
    SequenceTableFixture f(fiveNames());
    SequenceInfo info = f.record(f.ids[1]);
    info.comment = "注释";
    f.panel.addSequenceRow(info, true);
    QCOMPARE(f.told, QStringList());
    QCOMPARE(f.panel.currentSequenceId(), f.ids[1]);
    QCOMPARE(f.table->selectedRows(), QVector<int>({5}));
    QCOMPARE(f.table->item(5, 0)->toolTip(), QStringLiteral("b"));
    QCOMPARE(f.table->item(5, 2)->text(), QStringLiteral("注释"));
    QVERIFY(f.table->mainBoxAt(0)->isChecked());
    QVERIFY(!f.table->mainBoxAt(5)->isChecked());
    f.panel.clearRows();
    QCOMPARE(f.told, QStringList());
    QCOMPARE(f.table->rowCount(), 0);
}

void SequenceTableTest::adding()
{
    SequenceTableFixture f(split(QStringLiteral("Sequence_0 Sequence_2")));
    f.panel.makeContextMenu()->actions()[0]->trigger();
    QCOMPARE(f.modelNames(), split(QStringLiteral("Sequence_0* Sequence_2 Sequence_3")));
    const QString id = f.table->sequenceIdAt(2);
    QCOMPARE(f.record(id).name, std::string("Sequence_3"));
    QCOMPARE(f.told, QStringList({QStringLiteral("added ") + id, QStringLiteral("current ") + id,
                                  QStringLiteral("modified")}));
    QCOMPARE(f.panel.currentSequenceId(), id);
    QCOMPARE(f.table->selectedRows(), QVector<int>({2}));
}

void SequenceTableTest::nothingIsAddedWithoutAnApplet()
{
    SequenceTableFixture f;
    f.panel.setCAppletName(QString());
    f.panel.addSequenceSlot();
    QCOMPARE(f.told, QStringList());
    QCOMPARE(f.table->rowCount(), 0);
}

void SequenceTableTest::currentFollowsTheKeys()
{
    SequenceTableFixture f(fiveNames());
    f.panel.selectSequence(f.ids[1]);
    f.panel.selectSequence(QStringLiteral("unknown"));
    for (const auto key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up})
        QTest::keyClick(f.table, key);
    // The column of the boxes is passed on the way down: it tells of its row like the others.
    QCOMPARE(f.told, QStringList({QStringLiteral("current b"), QStringLiteral("current c"),
                                  QStringLiteral("current b")}));
}

void SequenceTableTest::editing()
{
    const int enter = Qt::Key_Return;
    const QString renamed = QStringLiteral("renamed modified");
    const rows::Table<int, QString, int, QString, QString, QString> table{
        {"name", 0, text("Start_1"), enter, text("Start_1"), QString(), renamed},
        {"digit first", 0, text("1x"), enter, text("x"), QString(), renamed},
        {"21 characters", 0, text("abcdefghijklmnopqrstu"), enter, text("abcdefghijklmnopqrst"),
         QString(), renamed},
        {"as before", 0, text("b"), enter, text("b"), QString(), QString()},
        {"empty name", 0, QString(), enter, text("b"), text("warning|名称不能为空"), QString()},
        {"taken name", 0, text("d"), enter, text("b"), text("warning|存在同名序列，请重新命名"),
         QString()},
        {"given up", 0, text("x"), int(Qt::Key_Escape), text("b"), QString(), QString()},
        {"comment", 2, text("1, 2 - c"), enter, text("1, 2 - c"), QString(), text("modified")},
        {"comment taken away", 2, QString(), enter, QString(), QString(), text("modified")}};
    for (const auto& [row, column, typed, lastKey, text, message, told] : table) {
        const rows::Named named(row);
        SequenceTableFixture f(split(QStringLiteral("a b c d")));
        SequenceInfo info = f.record(f.ids[1]);
        info.comment = "old";
        sdk_ui_interface::processedit::updateSequence(f.appName, info);
        f.panel.clearRows();
        for (const QString& id : qAsConst(f.ids))
            f.panel.addSequenceRow(f.record(id), false);

        QPointer<QLineEdit> editor = f.edit(1, column);
        QVERIFY(editor);
        QCOMPARE(editor->text(), column == 0 ? QStringLiteral("b") : QStringLiteral("old"));
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, Qt::Key(lastKey));
        QTRY_VERIFY(!editor);
        info = f.record(f.ids[1]);
        QCOMPARE(QString::fromStdString(column == 0 ? info.name : info.comment), text);
        QCOMPARE(f.table->item(1, column)->text(), text);
        QCOMPARE(f.table->item(1, column)->toolTip(), text);
        QCOMPARE(f.messages.join(QLatin1Char(' ')), message);
        QCOMPARE(f.told.join(QLatin1Char(' ')), told);
    }
}

void SequenceTableTest::arrowKeyEndsAnEdit()
{
    SequenceTableFixture f(fiveNames());
    QPointer<QLineEdit> editor = f.edit(1, 0);
    QVERIFY(editor);
    editor->setText(QStringLiteral("typed"));
    QTest::keyClick(editor, Qt::Key_Down);
    QTRY_VERIFY(!editor);
    QCOMPARE(f.panel.currentSequenceId(), f.ids[2]);
    QCOMPARE(f.record(f.ids[1]).name, std::string("typed"));
    QCOMPARE(f.record(f.ids[2]).name, std::string("c"));
}

void SequenceTableTest::typedTextCounts_data()
{
    QTest::addColumn<QString>("act");
    for (const char* act : {"flush", "add", "remove", "template"})
        QTest::newRow(act) << QString::fromLatin1(act);
}

/// What reads the sequences finds the name as it has been typed, though the editor is still open.
void SequenceTableTest::typedTextCounts()
{
    QFETCH(QString, act);
    SequenceTableFixture f(fiveNames());
    f.edit(1, 0)->setText(QStringLiteral("typed"));
    std::string seen;
    const auto look = [&] { seen = f.record(f.ids[1]).name; };
    if (act == QLatin1String("flush")) {
        f.panel.flushPending();
        look();
    } else if (act == QLatin1String("add")) {
        f.panel.addSequenceSlot();
        look();
    } else if (act == QLatin1String("template")) {
        connect(&f.panel, &wgtSequenceTable::signalAddTemplate, &f.panel, look);
        f.panel.addSequenceToTemplate();
    } else {
        f.select({3});
        f.panel.removeSelectedSequence();
        look();
    }
    QCOMPARE(seen, std::string("typed"));
    QCOMPARE(f.table->item(1, 0)->text(), QStringLiteral("typed"));
    QVERIFY(f.told.contains(QStringLiteral("renamed")));

    QTRY_VERIFY(!f.table->findChild<QLineEdit*>());

    // A name that may not be is refused as after Return, once.
    f.edit(0, 0)->setText(QStringLiteral("typed"));
    f.panel.flushPending();
    f.panel.flushPending();
    QCOMPARE(f.messages, QStringList({QStringLiteral("warning|存在同名序列，请重新命名")}));
    QCOMPARE(f.record(f.ids[0]).name, std::string("a"));
    QCOMPARE(f.table->item(0, 0)->text(), QStringLiteral("a"));
}

void SequenceTableTest::mainSequence()
{
    SequenceTableFixture f(split(QStringLiteral("a b c")));
    QTest::mouseClick(f.table->mainBoxAt(2), Qt::LeftButton);
    QCOMPARE(f.modelNames(), split(QStringLiteral("a b c*")));
    QVERIFY(!f.table->mainBoxAt(0)->isChecked());
    QCOMPARE(f.told, split(QStringLiteral("modified"))); // both records are one act
    f.told.clear();
    for (int press = 0; press < 3; ++press) {
        QSignalSpy clicked(f.table->mainBoxAt(2), &QCheckBox::clicked);
        QTest::keyClick(f.table->mainBoxAt(2), Qt::Key_Space);
        QCOMPARE(clicked.count(), 1);
        QVERIFY(f.table->mainBoxAt(2)->isChecked());
    }
    QCOMPARE(f.modelNames(), split(QStringLiteral("a b c*")));
    QCOMPARE(f.told, QStringList());
    QTest::mouseClick(f.table->mainBoxAt(0), Qt::LeftButton);
    QCOMPARE(f.modelNames(), split(QStringLiteral("a* b c")));
    QVERIFY(!f.table->mainBoxAt(2)->isChecked());
}

void SequenceTableTest::removing()
{
    const rows::Table<QString, QString, QString> table{
        // in the order of selection
        {"none", QString(), text("a* b c d e"), QString()},
        {"two apart", text("1 3"), text("a* c e"), text("removed d,b|current c|modified")},
        {"neighbours and one apart", text("4 1 2"), text("a* d"),
         text("removed e,c,b|current a|modified")},
        {"the current one, at the end", text("4 2"), text("a* b d"),
         text("removed e,c|current b|modified")},
        {"every one", text("0 1 2 3 4"), QString(), text("removed e,d,c,b,a|current|modified")}};
    for (const auto& [row, rows, left, told] : table) {
        const rows::Named named(row);
        SequenceTableFixture f(fiveNames());
        const std::string app = appletNameBytes(f.appName);
        for (const QString& id : qAsConst(f.ids))
            process_edit::addVariable(app, SequenceVariable, id.toStdString());
        f.table->setCurrentCell(2, 0);
        f.select(numbers(rows));
        f.told.clear();
        f.panel.makeContextMenu()->actions()[2]->trigger();
        QCOMPARE(f.modelNames(), split(left));
        QCOMPARE(f.table->names().join(QLatin1Char(' ')), QString(left).remove(QLatin1Char('*')));
        QCOMPARE(f.told.join(QLatin1Char('|')), told);
        for (const QString& id : qAsConst(f.ids))
            QCOMPARE(process_edit::getAllSequenceVariable(app, id.toStdString()).empty(),
                     f.record(id).id.empty());
        if (f.told.isEmpty() || left.isEmpty())
            continue;
        QCOMPARE(f.table->selectedRows(), QVector<int>({f.table->currentRow()}));
    }
}

void SequenceTableTest::removingAll()
{
    SequenceTableFixture f(fiveNames());
    const std::string app = appletNameBytes(f.appName);
    const std::string id = f.ids[2].toStdString();
    process_edit::addVariable(app, SequenceVariable, id);
    f.panel.makeContextMenu()->actions()[3]->trigger();
    QCOMPARE(f.modelNames(), QStringList());
    QCOMPARE(f.table->rowCount(), 0);
    QVERIFY(process_edit::getAllSequenceVariable(app, id).empty());
    QCOMPARE(f.told, split(QStringLiteral("removedAll current modified")));
    QCOMPARE(f.table->horizontalHeaderItem(0)->text(), QStringLiteral("序列名称(英文/数字)"));
    f.panel.addSequenceSlot();
    QCOMPARE(f.modelNames(), split(QStringLiteral("Sequence_0*")));
    QVERIFY(f.table->mainBoxAt(0)->isChecked());
}

void SequenceTableTest::addingTemplates()
{
    SequenceTableFixture f(fiveNames());
    f.select({3, 0, 2});
    f.panel.makeContextMenu()->actions()[1]->trigger();
    QCOMPARE(f.told, QStringList({QStringLiteral("template a,c,d")}));
}

PE_WIDGET_TEST("sequence_table", SequenceTableTest)
#include "sequence_table_test.moc"
