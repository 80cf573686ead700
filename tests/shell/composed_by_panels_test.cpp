#include "tests/shell/EditorFixture.h"

#include "logic/LogicView.h"
#include "shell/ProcessEditToolBar.h"
#include "standalone/runtime/runtime.h"
#include "tests/shell/EditorRecorder.h"
#include "tests/support/print_tree.h"

#include <QComboBox>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

// An applet whose branches, loops, expressions and statements are all chosen from the palette and
// typed into the panels does what it says.
class ComposedByPanelsTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init() { openEditor(); }
    void cleanup() { closeEditor(); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void composedAppletRuns();

private:
    /// Adds a step behind or in the current row, which it becomes; its panel is shown then.
    void add(int stepType) const;
    /// Makes the row of that name current, as a click does.
    void click(const char* name) const;
    void type(const char* field, const char* text) const;
    void setRightSide(const char* text) const { type("editRightValue", text); }
    template <class Widget> Widget* field(const char* name) const;
    QTreeView* tree() const
    {
        return m_editor->findChild<LogicView*>()->findChild<QTreeView*>(QStringLiteral("treeView"));
    }

    static constexpr int Patience = 60000;
};

void ComposedByPanelsTest::add(int stepType) const
{
    for (QTreeWidgetItemIterator it(find<QTreeWidget>(m_editor.get(), "treeWidget")); *it; ++it) {
        if ((*it)->data(0, Qt::UserRole).toInt() == BasicStep &&
            (*it)->data(0, Qt::UserRole + 1).toInt() == stepType) {
            m_editor->onItemDoubleClickedSlot(*it, 0);
            break;
        }
    }
    QCoreApplication::processEvents();
}

void ComposedByPanelsTest::click(const char* name) const
{
    const QModelIndexList rows =
        tree()->model()->match(tree()->model()->index(0, 0), Qt::DisplayRole,
                               QString::fromUtf8(name), 1, Qt::MatchExactly | Qt::MatchRecursive);
    QCOMPARE(rows.size(), 1);
    tree()->setCurrentIndex(rows.first());
    emit tree()->clicked(rows.first());
    QCoreApplication::processEvents();
}

// The field of the panel that is shown: several panels have fields of one name.
template <class Widget> Widget* ComposedByPanelsTest::field(const char* name) const
{
    for (Widget* widget :
         m_editor->getControlWgt()->findChildren<Widget*>(QString::fromLatin1(name))) {
        if (widget->isVisible())
            return widget;
    }
    return nullptr;
}

void ComposedByPanelsTest::type(const char* name, const char* text) const
{
    auto* widget = field<QWidget>(name);
    QVERIFY2(widget, name);
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(widget, QString::fromUtf8(text));
}

void ComposedByPanelsTest::composedAppletRuns()
{
    m_editor->getControlWgt()->resize(500, 300);
    m_editor->getControlWgt()->show();
    m_editor->addVarToCurrentView(QStringLiteral("total"), QStringLiteral("0"), DrelS32,
                                  SequenceVariable, true);
    add(step_type::Expression);
    type("editLeftValue", "total");
    setRightSide("7");
    add(step_type::For);
    field<QSpinBox>("timesSpin")->setValue(5);
    type("valueLineEdit", "k");
    add(step_type::If);
    type("editLeftValue", "k");
    field<QComboBox>("conditionComboBox")->setCurrentText(QStringLiteral("=="));
    type("editRightValue", "3");
    add(step_type::Expression);
    type("editLeftValue", "total");
    setRightSide("total + 100");
    click("if");
    add(step_type::Else);
    add(step_type::Expression);
    type("editLeftValue", "total");
    setRightSide("total + 1");
    click("endfor");
    add(step_type::While);
    type("editLeftValue", "total");
    field<QComboBox>("conditionComboBox")->setCurrentText(QStringLiteral("<"));
    type("editRightValue", "200");
    add(step_type::Statement);
    type("textEdit", "total = total + 50;");
    click("endwhile");
    add(step_type::Statement);
    type("textEdit", "log_info(\"total %d\", total);");

    EditorRecorder heard(m_editor.get());
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QTRY_VERIFY_WITH_TIMEOUT(heard.has("runFinish"), Patience);
    const QString rows = test_support::printTree(*tree()->model(), {0, 1}).join(QLatin1Char('\n'));
    // 7, four times one more, once a hundred; then fifties up to 200.
    QVERIFY2(heard.lines.contains(QStringLiteral("output 1 total 211 [running]")),
             qPrintable(heard.lines.join(QLatin1Char('\n')) + QLatin1Char('\n') + rows));
}

QTEST_MAIN(ComposedByPanelsTest)
#include "composed_by_panels_test.moc"
