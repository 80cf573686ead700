// The picker's search, its keys, its completion, and how it ends.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "tests/variables/EntryValuePicker.h"
#include "variables/SuggestionList.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using Picker = EntryValuePicker;

class EntryValueKeysTest : public QObject
{
    Q_OBJECT
private slots:
    void search();
    void keys();
    void completesTheListedNames();
    void results();

private:
    PickerVariables m_variables;
};

void EntryValueKeysTest::search()
{
    Picker p(EntryFunctions);
    p.dialog.show();
    auto* column = p.find<QComboBox>("comboBox");
    const auto buttons = p.search->findChildren<QToolButton*>();
    const auto* clear = p.search->actions().last();
    QVERIFY(buttons.size() == 2 && !clear->isVisible());
    const int all = p.table->rowCount();
    p.search->setText(QStringLiteral("LOG_"));
    QCOMPARE(p.shownFunctions().join(QLatin1Char(' ')),
             QStringLiteral("log_debug log_info log_warning log_error"));
    QVERIFY(clear->isVisible());
    column->setCurrentIndex(0); // alone changes nothing
    QCOMPARE(p.shownFunctions().size(), 4);
    p.search->setText(QStringLiteral("s64"));
    const QStringList counters = p.shownFunctions();
    QVERIFY(counters.contains(QStringLiteral("now_ms")) && counters.size() < all);
    QVERIFY(!counters.contains(QStringLiteral("log_info")));
    p.dialog.initFuncTable(0);
    QCOMPARE(p.shownFunctions(), counters);
    QTest::mouseClick(buttons.last(), Qt::LeftButton);
    QCOMPARE(p.search->text(), QString());
    QCOMPARE(p.shownFunctions().size(), all);
    QVERIFY(!clear->isVisible());
}

void EntryValueKeysTest::keys()
{
    Picker p;
    p.dialog.show();
    QTRY_VERIFY(p.box->hasFocus());
    p.tree->setCurrentItem(p.variable("seq_s32"));
    QTest::keyClick(p.tree, Qt::Key_Return);
    QCOMPARE(p.dialog.getData(), QStringLiteral("seq_s32"));

    p.tabs->setCurrentIndex(1);
    p.search->setFocus();
    QTest::keyClicks(p.search, QStringLiteral("log_"));
    QTest::keyClick(p.search, Qt::Key_Return); // nothing is current yet
    QTest::keyClick(p.search, Qt::Key_Down);
    QTest::keyClick(p.search, Qt::Key_Down);
    QTest::keyClick(p.search, Qt::Key_Enter);
    QCOMPARE(p.dialog.getData(), QStringLiteral("seq_s32log_info(char*)"));
    QTest::keyClicks(p.search, QStringLiteral("x"));
    QTest::keyClick(p.search, Qt::Key_Return); // the current row is hidden
    QCOMPARE(p.dialog.getData(), QStringLiteral("seq_s32log_info(char*)"));

    const int row = p.table->currentRow();
    for (Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Down}) {
        QTest::keyClick(p.table, key);
        QCOMPARE(p.table->currentRow(), row);
    }

    // Tab goes the way one reads.
    QStringList visited;
    p.tabs->setFocus();
    for (int i = 0; i < 7; ++i) {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(
        visited.join(QLatin1Char(' ')),
        QStringLiteral("qt_tabwidget_tabbar comboBox_Type comboBox searchEdit tableWidget textEdit "
                       "btnOk"));
}

void EntryValueKeysTest::completesTheListedNames()
{
    Picker p(EntryVariables);
    p.dialog.show();
    QTRY_VERIFY(p.box->hasFocus());
    QTest::keyClicks(p.box, QStringLiteral("u32"));
    const auto* list = p.box->findChild<SuggestionList*>();
    QVERIFY(list->isVisible());
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), QStringLiteral("[local]global_u32"));
    QCOMPARE(list->item(1)->text(), QStringLiteral("[sys]sys_u32"));
    QTest::keyClick(p.box, Qt::Key_Escape);
    QVERIFY(!list->isVisible() && p.dialog.isVisible());
    p.pick("seq_int");
    QVERIFY(!list->isVisible()); // a pick is no typing
    QCOMPARE(p.dialog.getData(), QStringLiteral("u32seq_int"));
}

void EntryValueKeysTest::results()
{
    const rows::Table<QString, int> table{{"OK", text("button"), 1},
                                          {"Enter on OK", text("enter"), 1},
                                          {"Ctrl+Enter in the box", text("shortcut"), 1},
                                          {"Escape in the box", text("escape"), 0},
                                          {"Escape in the tree", text("escape tree"), 0},
                                          {"closed", text("close"), 0}};
    for (const auto& [row, how, result] : table) {
        const rows::Named named(row);
        for (bool single : {false, true}) {
            Picker p(EntryVariables, QStringLiteral("value"));
            p.dialog.setSingleSelectMode(single);
            QString selected;
            QTimer::singleShot(0, &p.dialog, [&, &how = how] {
                const auto closed = qScopeGuard([&p] { p.dialog.close(); });
                QTRY_VERIFY(p.box->hasFocus());
                QCOMPARE(QApplication::activeModalWidget(), &p.dialog);
                selected = p.box->textCursor().selectedText();
                auto* ok = p.find<QPushButton>("btnOk");
                if (how == QLatin1String("button"))
                    QTest::mouseClick(ok, Qt::LeftButton);
                else if (how == QLatin1String("enter"))
                    QTest::keyClick(ok, Qt::Key_Return);
                else if (how == QLatin1String("shortcut"))
                    QTest::keyClick(p.box, Qt::Key_Return, Qt::ControlModifier);
                else if (how == QLatin1String("escape"))
                    QTest::keyClick(p.box, Qt::Key_Escape);
                else if (how == QLatin1String("escape tree"))
                    QTest::keyClick(p.tree, Qt::Key_Escape);
                else
                    p.dialog.close();
                QTRY_VERIFY(!p.dialog.isVisible());
            });
            QCOMPARE(int(p.dialog.exec()), result);
            QCOMPARE(selected, single ? QString() : QStringLiteral("value"));
            QCOMPARE(p.dialog.getData(), QStringLiteral("value"));
        }
    }
}

PE_WIDGET_TEST("entry_value_keys", EntryValueKeysTest)
#include "entry_value_keys_test.moc"
