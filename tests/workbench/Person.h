#pragma once

#include "logic/LogicView.h"
#include "shell/ProcessEditWidget.h"
#include "tests/support/text.h"
#include "workbench/MainWindow.h"

#include <QComboBox>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <functional>
#include <stdexcept>

class QPlainTextEdit;

/// Somebody who uses the workbench with mouse and keyboard, and knows what stands on the screen by
/// its texts. What isn't there fails the test at once, by an exception that the test program lets
/// end it with the place told.
class Person
{
public:
    explicit Person(MainWindow& window) : m_window(window) {}

    /// A button of the window's own tool bar, by its text.
    void press(const char* action);
    /// A button of the editor's tool bar, by object name.
    void pressTool(const char* button)
    {
        QTest::mouseClick(seen(find<QToolButton>(button)), Qt::LeftButton);
    }
    void pressRunMain() { pressRun(1); }
    void pressRunCurrent() { pressRun(0); }
    /// A double click on a line of a pane, brought into sight.
    static void doubleClickLine(QPlainTextEdit* pane, int line);
    /// A click on the tab of that text.
    void showTab(const char* title);

    /// A double click on a step of the palette.
    void chooseStep(const char* name);
    /// Drags a step of the palette onto the first row of that name in the tree of steps. On the way
    /// it is held over another row, and a look taken: there, and where it is let go.
    void dragStep(const char* kind, const char* onto, const char* over = nullptr,
                  const std::function<void()>& look = {});
    /// Drags a row of the steps onto another.
    void moveStep(const char* name, const char* onto)
    {
        drag(steps(), row(steps(), name), steps(), {row(steps(), onto)}, {});
    }
    /// A click on the first row of that name in the tree of steps.
    void clickStep(const char* name) { click(steps(), row(steps(), name)); }
    /// A key while the tree of steps has the keyboard.
    void pressInSteps(Qt::Key key);
    /// A click on the check box of such a row.
    void toggleStep(const char* name);

    /// Types over what a field of the shown panels holds.
    void type(const char* field, const char* text);
    /// Chooses an entry of a combo box of the shown panels by its keys.
    void choose(const char* name, const char* entry)
    {
        chooseByKeys(field<QComboBox>(name), text(entry));
    }
    /// A click on a check box of the shown panels.
    void tick(const char* name);
    /// A click on a page of the general settings.
    void showPage(const char* title);
    /// Opens the picker by a button of the shown panel, double clicks a variable of it, looks, and
    /// accepts.
    void pickVariable(const char* button, const char* variable,
                      const std::function<void(QWidget* picker)>& look = {});

    /// Adds a variable by the context menu of a group, and types its cells. An empty text leaves a
    /// cell as it is.
    void addVariable(const char* group, const char* name, const char* type, const char* value,
                     const char* remark);
    void renameVariable(const char* name, const char* newName)
    {
        typeInCell(variables(), row(variables(), name), text(newName));
    }
    /// An entry of the context menu of a variable.
    void chooseForVariable(const char* name, const char* entry)
    {
        chooseForRow(variables(), row(variables(), name), entry);
    }

    /// Adds a sequence by the context menu; its row is the last one then.
    void addSequence();
    void renameSequence(int row, const char* name)
    {
        typeInCell(sequences(), ofSequence(row, 0), text(name));
    }
    void commentSequence(int row, const char* comment)
    {
        typeInCell(sequences(), ofSequence(row, 2), text(comment));
    }
    void clickSequence(int row) { click(sequences(), ofSequence(row, 0)); }
    void chooseForSequence(int row, const char* entry)
    {
        chooseForRow(sequences(), ofSequence(row, 0), entry);
    }
    void makeMain(int row);

    QTreeView* steps() const { return treeIn("center_wgt", "treeView"); }
    QTreeView* runSteps() const { return treeIn("center_wgt", "runTreeView"); }
    QTreeView* variables() const { return treeIn("widget_para", "treeView"); }
    QTableView* sequences() const { return find<QTableView>("tableWidget"); }

private:
    [[noreturn]] static void missing(const QString& what)
    {
        throw std::runtime_error("not there: " + what.toStdString());
    }
    template <class Thing> static Thing* there(Thing* thing, const char* name)
    {
        if (!thing)
            missing(text(name));
        return thing;
    }
    template <class Widget> Widget* find(const char* name) const
    {
        return there(m_window.findChild<Widget*>(text(name)), name);
    }
    /// @p widget, if it can be seen.
    template <class Widget> static Widget* seen(Widget* widget)
    {
        if (!widget->isVisible())
            missing(widget->objectName() + text(", it is hidden"));
        return widget;
    }
    /// Several panels have trees of one name.
    QTreeView* treeIn(const char* panel, const char* name) const
    {
        return there(find<QWidget>(panel)->findChild<QTreeView*>(text(name)), name);
    }
    /// A field of the panels that are shown: several panels have fields of one name.
    template <class Widget> Widget* field(const char* name) const;
    static QModelIndex row(const QAbstractItemView* view, const char* name);
    QModelIndex ofSequence(int row, int column) const
    {
        return sequences()->model()->index(row, column);
    }

    /// Chooses an entry of the run button's menu, and presses the button.
    void pressRun(int entry);
    static void click(QAbstractItemView* view, const QModelIndex& index);
    /// Holds the button down from a row to the last of the rows @p places, with a look at each.
    static void drag(QAbstractItemView* from, const QModelIndex& index, QAbstractItemView* to,
                     const QModelIndexList& places, const std::function<void()>& look);
    static void doubleClick(QAbstractItemView* view, const QModelIndex& index);
    static void chooseByKeys(QComboBox* box, const QString& entry);
    /// The context menu at a place of a view, or of a row that was clicked, and an entry of it.
    static void chooseInMenu(QAbstractItemView* view, const QPoint& place, const char* entry);
    static void chooseForRow(QAbstractItemView* view, const QModelIndex& index, const char* entry);
    /// A double click into a cell, the text, and Return.
    static void typeInCell(QAbstractItemView* view, const QModelIndex& cell, const QString& text);

    MainWindow& m_window;
};
