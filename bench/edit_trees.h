#pragma once

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"

#include <QApplication>
#include <QTreeView>

/// A large sequence in the edit tree, and the same rows in the bare toolkit.
namespace edit_trees {

constexpr int Width = 900;
constexpr int Height = 700;

/// The tree of a LogicView with a large sequence, scrolled to its middle.
class Editor
{
public:
    /// With @p inBranch there is one more if, with so many steps, in the initial flow.
    explicit Editor(int steps, int inBranch = 0) : m_builder(steps)
    {
        if (inBranch > 0)
            m_branch = m_builder.addBranch(inBranch);
        m_view.resize(Width, Height);
        m_view.setCAppletName(m_builder.sample().appName);
        m_view.addNewModelSlot(m_builder.sample().sequenceId);
        m_view.showSequence(m_builder.sample().sequenceId);
        m_view.show();
        m_tree = m_view.findChild<QTreeView*>(QStringLiteral("treeView"));
        draw();
        m_tree->scrollTo(middle());
        draw();
    }

    LogicView& view() { return m_view; }
    QTreeView& tree() { return *m_tree; }
    const logic_samples::Sample& sample() const { return m_builder.sample(); }
    static void draw() { QApplication::processEvents(); }

    CustonStandModel* model() const
    {
        return qobject_cast<CustonStandModel*>(m_view.editModel(sample().sequenceId));
    }
    const QString& branch() const { return m_branch; }
    QModelIndex flow() const { return model()->index(MainFlow, 0); }
    QModelIndex middle() const
    {
        return model()->index(model()->rowCount(flow()) / 2 / StepsAGroup * StepsAGroup, 0, flow());
    }

private:
    static constexpr int StepsAGroup = 6; // four plain ones, an if and its end
    logic_samples::Builder m_builder;
    LogicView m_view;
    QTreeView* m_tree;
    QString m_branch;
};

/// The same rows in a bare model and tree.
class Bare
{
public:
    explicit Bare(int steps, int inBranch = 0)
    {
        Editor editor(steps, inBranch);
        copy(editor.model()->invisibleRootItem(), m_model.invisibleRootItem());
        m_tree.resize(Width, Height);
        m_tree.setUniformRowHeights(true);
        m_tree.setDragDropMode(QAbstractItemView::DragDrop);
        m_tree.setModel(&m_model);
        m_tree.expandAll();
        m_tree.show();
        const QModelIndex flow = m_model.index(MainFlow, 0);
        m_middle = m_model.index(m_model.rowCount(flow) / 2, 0, flow);
        m_tree.scrollTo(m_middle);
        Editor::draw();
    }

    QTreeView& tree() { return m_tree; }
    QStandardItemModel& model() { return m_model; }
    QStandardItem* middle() const { return m_model.itemFromIndex(m_middle); }
    static QList<QStandardItem*> newRow()
    {
        QList<QStandardItem*> row;
        for (int column = 0; column < logic_columns::EditCount; ++column)
            row.append(new QStandardItem(QStringLiteral("延时 1000 毫秒")));
        row.first()->setCheckState(Qt::Checked);
        return row;
    }

private:
    static void copy(const QStandardItem* source, QStandardItem* target)
    {
        for (int row = 0; row < source->rowCount(); ++row) {
            QList<QStandardItem*> items;
            for (int column = 0; column < logic_columns::EditCount; ++column)
                items.append(new QStandardItem(
                    source->model()->index(row, column, source->index()).data().toString()));
            items.first()->setIcon(source->child(row)->icon());
            items.first()->setCheckState(Qt::Checked);
            target->appendRow(items);
            copy(source->child(row), items.first());
        }
    }

    QStandardItemModel m_model;
    QTreeView m_tree;
    QPersistentModelIndex m_middle;
};

} // namespace edit_trees
