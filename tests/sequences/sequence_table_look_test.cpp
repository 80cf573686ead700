// What the sequence table offers and how it looks: menu, drag data, editors, heights.

#include "sequences/ProcessEditTableWidget.h"
#include "sequences/sameNameScanDelegate.h"
#include "tests/sequences/SequenceTableFixture.h"
#include "tests/support/test_program.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QtTest>

namespace {

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

class SequenceTableLookTest : public QObject
{
    Q_OBJECT
private slots:
    void contextMenu();
    void dragData();
    void editors();
    void columns();
    void boxesStandInTheirCells();
    void rowHeights();
};

void SequenceTableLookTest::contextMenu()
{
    SequenceTableFixture f({QStringLiteral("a"), QStringLiteral("b")});
    const auto entries = [](const QMenu* menu) {
        QStringList texts;
        for (const QAction* action : menu->actions())
            texts.append((action->isEnabled() ? QStringLiteral("+") : QStringLiteral("-")) +
                         action->text());
        return texts;
    };
    QPointer<QMenu> menu = rightClick(f.table);
    QVERIFY(menu);
    QCOMPARE(menu->title(), QStringLiteral("Context Menu"));
    QCOMPARE(entries(menu),
             QStringList({QStringLiteral("+添加序列"), QStringLiteral("-添加选中序列至模板"),
                          QStringLiteral("-删除所选序列"), QStringLiteral("+删除所有序列")}));
    menu->close();
    QTRY_VERIFY(!menu);
    f.select({1});
    QVERIFY(!entries(f.panel.makeContextMenu()).join(QString()).contains(QLatin1Char('-')));
    f.panel.setContextMenuDisabled(true);
    QVERIFY(!f.panel.makeContextMenu()->isEnabled());
    QVERIFY(!rightClick(f.table));
}

void SequenceTableLookTest::dragData()
{
    SequenceTableFixture f({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    f.select({2, 0});
    const std::unique_ptr<QMimeData> data(
        f.table->model()->mimeData(f.table->selectionModel()->selectedIndexes()));
    const auto format = [](const char* name) {
        return QLatin1String("application/") + QLatin1String(name);
    };
    QStringList formats = data->formats();
    formats.sort();
    QCOMPARE(formats, QStringList({format("capp_name"), format("sequence_drag"),
                                   format("sequence_id"), format("x-qabstractitemmodeldatalist"),
                                   format("x-qstandarditemmodeldatalist")}));
    QCOMPARE(QString::fromUtf8(data->data(format("sequence_id"))),
             f.ids[0] + QLatin1Char(';') + f.ids[2]);
    QCOMPARE(QString::fromUtf8(data->data(format("capp_name"))), f.appName);
    QVERIFY(data->data(format("sequence_drag")).isEmpty());
    QVERIFY(data->data(format("x-qabstractitemmodeldatalist")).isEmpty());
    QCOMPARE(f.table->dragDropMode(), QAbstractItemView::DragOnly);
    QVERIFY(!f.table->acceptDrops() && f.table->dragEnabled());
}

void SequenceTableLookTest::editors()
{
    SequenceTableFixture f({QStringLiteral("a")});
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
    QCOMPARE(name->placeholderText(), QStringLiteral("字母或下划线开头"));
    QVERIFY(name->inputMethodHints().testFlag(Qt::ImhHiddenText));

    auto* delegate = qobject_cast<sameNameScanDelegate*>(f.table->itemDelegate());
    QVERIFY(delegate);
    delegate->setNameValidatorOff(true);
    QWidget parent;
    const std::unique_ptr<QWidget> free(
        delegate->createEditor(&parent, {}, f.table->model()->index(0, 0)));
    QTest::keyClicks(free.get(), QStringLiteral("1 -"));
    QCOMPARE(qobject_cast<QLineEdit*>(free.get())->text(), QStringLiteral("1 -"));
}

void SequenceTableLookTest::columns()
{
    SequenceTableFixture f;
    QStringList titles;
    for (int column = 0; column < f.table->columnCount(); ++column)
        titles.append(f.table->horizontalHeaderItem(column)->text());
    QCOMPARE(titles, QStringList({QStringLiteral("序列名称(英文/数字)"), QStringLiteral("主序列"),
                                  QStringLiteral("注释")}));
    const int mainWidth = f.table->columnWidth(SequenceTable::MainColumn);
    QVERIFY(mainWidth >= 48);
    f.panel.resize(900, 400);
    QCOMPARE(f.table->columnWidth(SequenceTable::MainColumn), mainWidth);
    QTRY_VERIFY(f.table->columnWidth(SequenceTable::NameColumn) > 400);
}

void SequenceTableLookTest::boxesStandInTheirCells()
{
    QStringList names;
    for (int i = 0; i < 50; ++i)
        names.append(QStringLiteral("s%1").arg(i));
    SequenceTableFixture f(names);
    f.panel.addSequenceSlot(); // scrolls to the end
    f.table->removeRowsAt({0, 1, 2, 10});
    QCoreApplication::processEvents();
    for (int row = 0; row < f.table->rowCount(); ++row) {
        const QRect cell = f.table->visualRect(f.table->model()->index(row, 1));
        const QCheckBox* box = f.table->mainBoxAt(row);
        const QPoint centre = box->mapTo(f.table->viewport(), box->rect().center());
        QVERIFY((centre - cell.center()).manhattanLength() <= 2);
    }
    QVERIFY(f.table->mainBoxAt(f.table->rowCount() - 1)->visibleRegion().boundingRect().height() >
            8);
}

void SequenceTableLookTest::rowHeights()
{
    SequenceTableFixture f({QStringLiteral("a")});
    const int height = f.table->rowHeight(0);
    QVERIFY(height >= qMax(30, 2 * QFontMetrics(QApplication::font()).height()));
    f.table->setRowHeight(0, 90);
    requestLayout(f.table);
    QCOMPARE(f.table->rowHeight(0), height); // as it stood before it was fitted

    ProcessEditTableWidget plain;
    plain.setColumnCount(1);
    plain.setRowCount(1);
    QVERIFY(plain.rowHeight(0) >= 40);
    plain.setRowHeight(0, 10);
    QVERIFY(plain.rowHeight(0) >= 40);
    QFont large = plain.font();
    large.setPixelSize(40);
    plain.setFont(large);
    requestLayout(&plain);
    QVERIFY(plain.rowHeight(0) >= 80);
}

PE_WIDGET_TEST("sequence_table_look", SequenceTableLookTest)
#include "sequence_table_look_test.moc"
