// What a person does in a wgtLocalVariable: menu, mouse, keys, and the editors in the cells.

#include "variables/wgtLocalVariable.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "variables/LengthDialog.h"
#include "variables/VariableEditor.h"
#include "variables/VariableSheets.h"
#include "variables/varTreeDelegate.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"

#include <QKeyEvent>
#include <QMenu>
#include <QTreeView>

#include <algorithm>
#include <utility>

using namespace variable_rows;

QModelIndexList wgtLocalVariable::selectedVariables() const
{
    QModelIndexList rows;
    const QModelIndexList selected = m_treeView->selectionModel()->selectedIndexes();
    std::copy_if(
        selected.begin(), selected.end(), std::back_inserter(rows),
        [](const QModelIndex& index) { return index.column() == NameColumn && isVariable(index); });
    return rows;
}

void wgtLocalVariable::addVariableSlot()
{
    const QModelIndex group = groupOf(m_treeView->currentIndex());
    if (!group.isValid())
        return;
    const QModelIndex added = m_editor->add(group);
    m_treeView->scrollTo(added);
}

void wgtLocalVariable::removeSelectedVariables()
{
    const QModelIndexList rows = selectedVariables();
    m_treeView->selectionModel()->clearSelection(); // not to be mended for every row that goes
    m_editor->remove(rows);
}

void wgtLocalVariable::removeAllVariables()
{
    const QModelIndex group = rowOf(m_treeView->currentIndex());
    if (isGroup(group))
        m_editor->removeAll(group);
}

void wgtLocalVariable::copyVariable()
{
    QStringList uuids;
    for (const QModelIndex& row : selectedVariables())
        uuids.append(uuidOf(row));
    m_clipboard.copy(uuids);
}

void wgtLocalVariable::pasteVariable()
{
    const QModelIndex current = m_treeView->currentIndex();
    const QModelIndex group = groupOf(current);
    if (!group.isValid())
        return;
    const int row = isVariable(current) ? current.row() + 1 : current.model()->rowCount(group);
    const QItemSelection pasted = m_editor->paste(m_clipboard, group, row);
    m_treeView->selectionModel()->select(pasted, QItemSelectionModel::ClearAndSelect |
                                                     QItemSelectionModel::Rows);
}

void wgtLocalVariable::onDropEnd(const QModelIndex& parent, int row, const QStringList& list, int)
{
    const QItemSelection moved = m_editor->move(list, parent, row);
    m_treeView->selectionModel()->select(moved, QItemSelectionModel::ClearAndSelect |
                                                    QItemSelectionModel::Rows);
}

QMenu* wgtLocalVariable::makeContextMenu(const QPoint& position)
{
    const QModelIndex index = m_treeView->indexAt(position);
    if (!index.isValid())
        return nullptr;
    auto* menu = new QMenu(tr("Context Menu"), this);
    menu->addAction(tr("添加变量"), this, &wgtLocalVariable::addVariableSlot);
    if (isVariable(index)) {
        menu->addAction(tr("删除选中变量"), this, &wgtLocalVariable::removeSelectedVariables);
        menu->addAction(tr("复制选中变量"), this, &wgtLocalVariable::copyVariable);
    } else {
        menu->addAction(tr("删除所有变量"), this, &wgtLocalVariable::removeAllVariables);
    }
    menu->addAction(tr("粘贴已复制的变量"), this, &wgtLocalVariable::pasteVariable)
        ->setDisabled(m_clipboard.isEmpty());
    menu->setDisabled(m_readOnly);
    return menu;
}

void wgtLocalVariable::showContextMenu(const QPoint& position)
{
    QMenu* menu = makeContextMenu(position);
    if (!menu)
        return;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_treeView->viewport()->mapToGlobal(position));
}

// A selection never has rows of both kinds.
void wgtLocalVariable::onTreeViewClicked(const QModelIndex& index)
{
    QItemSelectionModel* selection = m_treeView->selectionModel();
    const QModelIndexList selected = selection->selectedIndexes();
    const bool isMixed =
        std::any_of(selected.begin(), selected.end(), [&index](const QModelIndex& other) {
            return isGroup(other) != isGroup(index);
        });
    if (isMixed)
        selection->select(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void wgtLocalVariable::onTreeViewDoubleClicked(const QModelIndex& index)
{
    const QPersistentModelIndex cell(index);
    flushPending();
    m_treeView->selectionModel()->clearSelection();
    m_treeView->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
    if (!isVariable(cell) || !(cell.flags() & Qt::ItemIsEnabled))
        return;
    const DrelVarType type = varTypeFromKeyword(textOf(cell, TypeColumn).toStdString());
    if (cell.column() == ValueColumn && isCompositeVarType(type)) {
        if (m_compositeEditor)
            m_compositeEditor(uuidOf(cell), type);
        return;
    }
    m_edited = cell;
    m_treeView->openPersistentEditor(cell);
    m_treeView->indexWidget(cell)->setFocus();
}

void wgtLocalVariable::flushPending()
{
    if (QWidget* editor = m_treeView->indexWidget(m_edited))
        m_delegate->leave(editor);
}

void wgtLocalVariable::onCloseEditor()
{
    const QPersistentModelIndex cell = std::exchange(m_edited, QPersistentModelIndex());
    if (!cell.isValid())
        return;
    if (QWidget* editor = m_treeView->indexWidget(cell)) {
        editor->removeEventFilter(m_delegate); // it has committed what it should
        if (editor->hasFocus())
            m_treeView->setFocus();
    }
    m_treeView->closePersistentEditor(cell);
    m_editor->storeCell(cell);
    refreshShown();
    choosePage();
}

void wgtLocalVariable::onLengthButtonClicked(const QModelIndex& index)
{
    const QPersistentModelIndex place(index);
    flushPending();
    const QModelIndex row = rowOf(place);
    if (!row.data(EditableRole).toBool())
        return;
    const QString uuid = uuidOf(row);
    const QString name = textOf(row, NameColumn);
    const QString type = textOf(row, TypeColumn);
    LengthDialog dialog(name, type, row.data(LengthRole).toInt(),
                        variable_rules::greatestLength(type), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (uuid.isEmpty()) {
        user_dialogs::warning(this, tr("错误"), tr("无法获取变量信息"));
        return;
    }
    const processVariable variable = process_edit::getVariable(uuid.toStdString());
    if (variable.uuid.empty()) {
        user_dialogs::warning(this, tr("错误"), tr("变量不存在"));
        return;
    }
    if (variable.length == dialog.length())
        return;
    m_editor->setLength(variable, dialog.length());
    user_dialogs::information(
        this, tr("信息"),
        tr("变量 %1 的长度已修改为 %2").arg(name, QString::number(dialog.length())));
}

bool wgtLocalVariable::eventFilter(QObject* watched, QEvent* event)
{
    const bool isDrop = event->type() == QEvent::Drop && watched == m_treeView->viewport();
    if (isDrop && m_treeView->model()) {
        QItemSelectionModel* selection = m_treeView->selectionModel();
        for (int group = 0; group < m_treeView->model()->rowCount(); ++group)
            selection->select(m_treeView->model()->index(group, NameColumn),
                              QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    }
    if (watched == m_treeView && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        // The tree would put a cell's text on the system's clipboard; they are for the window.
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Paste)) {
            event->ignore();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
