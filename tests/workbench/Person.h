#pragma once

#include <QModelIndex>
#include <QPoint>
#include <QString>

#include <functional>

class MainWindow;
class QAbstractItemView;
class QPlainTextEdit;
class QTableView;
class QTreeView;
class QWidget;

/// Somebody who uses the workbench with mouse and keyboard, and knows what stands on the screen by
/// its texts. What isn't there fails the test at once, by an exception that the test program lets
/// end it with the place told.
class Person
{
public:
    explicit Person(MainWindow& window);

    /// A button of the window's own tool bar, by its text.
    void press(const char* action);
    /// A button of the editor's tool bar, by object name.
    void pressTool(const char* button);
    void pressRunMain();
    void pressRunCurrent();
    /// A double click on a line of a pane, brought into sight.
    static void doubleClickLine(QPlainTextEdit* pane, int line);
    /// A click on the tab of that text.
    void showTab(const char* title);

    /// A double click on a step of the palette.
    void chooseStep(const char* name);
    /// A click on the first row of that name in the tree of steps.
    void clickStep(const char* name);
    /// A key while the tree of steps has the keyboard.
    void pressInSteps(Qt::Key key);
    /// A click on the check box of such a row.
    void toggleStep(const char* name);

    /// Types over what a field of the shown panel holds.
    void type(const char* field, const char* text);
    /// Chooses an entry of a combo box of the shown panel by its keys.
    void choose(const char* field, const char* text);
    /// Opens the picker by a button of the shown panel, double clicks a variable of it, looks, and
    /// accepts.
    void pickVariable(const char* button, const char* variable,
                      const std::function<void(QWidget* picker)>& look = {});

    /// Adds a variable by the context menu of a group, and types its cells. An empty text leaves a
    /// cell as it is.
    void addVariable(const char* group, const char* name, const char* type, const char* value,
                     const char* remark);

    void renameVariable(const char* name, const char* newName);
    /// An entry of the context menu of a variable.
    void chooseForVariable(const char* name, const char* entry);

    /// Adds a sequence by the context menu; its row is the last one then.
    void addSequence();
    void renameSequence(int row, const char* name);
    void clickSequence(int row);
    void chooseForSequence(int row, const char* entry);
    void makeMain(int row);
    void commentSequence(int row, const char* comment);

    QTreeView* steps() const;
    QTreeView* runSteps() const;
    QTreeView* variables() const;
    QTableView* sequences() const;

private:
    /// Chooses an entry of the run button's menu, and presses the button.
    void pressRun(int entry);
    template <class Widget> Widget* find(const QString& name) const;
    /// @p widget, if it can be seen.
    template <class Widget> Widget* seen(Widget* widget) const;
    QModelIndex row(const QAbstractItemView* view, const QString& text) const;
    /// A field of the panel that is shown: several panels have fields of one name.
    template <class Widget> Widget* field(const char* name) const;
    void click(QAbstractItemView* view, const QModelIndex& index);
    void doubleClick(QAbstractItemView* view, const QModelIndex& index);
    /// The context menu at a place of a view, and an entry of it.
    void chooseInMenu(QAbstractItemView* view, const QPoint& place, const char* entry);
    /// A double click into a cell, the text, and Return.
    void typeInCell(QAbstractItemView* view, const QModelIndex& cell, const QString& text);

    MainWindow& m_window;
};
