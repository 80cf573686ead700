#include "workbench/SystemVariablePane.h"

#include "model/dialogs/user_dialogs.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QSignalSpy>
#include <QTableView>
#include <QtTest>

#include <memory>
#include <thread>

using standalone::SystemVariables;

// The dock's content over the variable service, as it changes from both sides.
class SystemVariablePaneTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void followsTheService();
    void writesToTheService();
    void addsAndRemoves();

private:
    QString rows() const
    {
        return test_support::printTree(*table->model(), {0, 1, 2, 3}).join(text("; "));
    }
    QString valueOf(const char* name) const
    {
        system_variate::SystemVarInfo variable;
        const bool isThere = service.find(text(name), variable);
        return isThere ? variable.value : text("none");
    }
    void define(const char* name, DataCategoryType category, const char* value, int kind = 1)
    {
        system_variate::SystemVarInfo variable;
        variable.name = text(name);
        variable.category = category;
        variable.kind = kind;
        variable.value = text(value);
        QCOMPARE(service.define(variable), SystemVariables::Done);
    }
    bool write(int row, int column, const char* value)
    {
        return table->model()->setData(table->model()->index(row, column), text(value));
    }
    void press(const char* action) { pane->findChild<QAction*>(text(action))->trigger(); }

    SystemVariables& service = SystemVariables::instance();
    std::unique_ptr<SystemVariablePane> pane;
    QTableView* table = nullptr;
};

void SystemVariablePaneTest::init()
{
    define("speed", SignedCategory, "10");
    define("vin", TextCategory, "LV1");
    pane = std::make_unique<SystemVariablePane>();
    pane->show();
    table = pane->findChild<QTableView*>();
    new QAbstractItemModelTester(table->model(), table->model());
}

void SystemVariablePaneTest::cleanup()
{
    pane.reset();
    for (const QString& name : service.names())
        service.remove(name);
}

void SystemVariablePaneTest::followsTheService()
{
    QCOMPARE(rows(), text("speed | s32 | 10 |; vin | char* | LV1 |"));
    // A running applet sets values from a thread of the runtime, as fast as it can.
    std::thread applet([this] {
        for (int value = 0; value <= 10000; ++value)
            service.setValue(text("speed"), QString::number(value));
    });
    applet.join();
    QTRY_COMPARE(rows(), text("speed | s32 | 10000 |; vin | char* | LV1 |"));
    define("abs", DoubleCategory, "1.5");
    define("inner", SignedCategory, "1", 2);
    service.remove(text("vin"));
    QTRY_COMPARE(rows(), text("abs | double | 1.5 |; inner | s32 | 1 |; speed | s32 | 10000 |"));
    const QModelIndex inner = table->model()->index(1, 2);
    QVERIFY(!(inner.flags() & (Qt::ItemIsEditable | Qt::ItemIsEnabled)));
}

void SystemVariablePaneTest::writesToTheService()
{
    QSignalSpy refused(pane.get(), &SystemVariablePane::refused);
    QVERIFY(write(0, 2, "-42"));
    QCOMPARE(valueOf("speed"), text("-42"));
    QVERIFY(!write(0, 2, "fast"));
    QCOMPARE(refused.size(), 1);
    QCOMPARE(valueOf("speed"), text("-42"));
    // Another type, whose values the old one isn't among.
    QVERIFY(write(0, 1, "double"));
    QVERIFY(write(0, 2, "0.5"));
    QVERIFY(write(0, 3, "米每秒"));
    QCOMPARE(rows(), text("speed | double | 0.5 | 米每秒; vin | char* | LV1 |"));
    QVERIFY(!(table->model()->index(0, 0).flags() & Qt::ItemIsEditable));
}

void SystemVariablePaneTest::addsAndRemoves()
{
    QStringList asked;
    QString answer = text("gear");
    const auto previous = user_dialogs::setHandler([&](const user_dialogs::Message& message) {
        asked << message.text;
        return user_dialogs::Answer{user_dialogs::Button::Ok, answer};
    });
    press("addSystemVariable");
    QCOMPARE(rows(), text("gear | s32 | 0 |; speed | s32 | 10 |; vin | char* | LV1 |"));
    QCOMPARE(table->currentIndex().siblingAtColumn(0).data().toString(), text("gear"));
    for (const char* refused : {"gear", "2fast"}) {
        answer = text(refused);
        asked.clear();
        press("addSystemVariable");
        QCOMPARE(asked.size(), 2); // the question and the complaint
        QVERIFY(asked.last().contains(answer));
    }
    QCOMPARE(table->model()->rowCount(), 3);
    table->selectAll();
    press("removeSystemVariables");
    QTRY_COMPARE(table->model()->rowCount(), 0);
    QVERIFY(service.names().isEmpty());
    user_dialogs::setHandler(previous);
}

PE_WIDGET_TEST("system_variable_pane_test", SystemVariablePaneTest)
#include "system_variable_pane_test.moc"
