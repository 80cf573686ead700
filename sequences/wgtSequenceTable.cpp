#include "sequences/wgtSequenceTable.h"

#include "edits/DocumentEdits.h"
#include "model/IProcessBlock.h"
#include "model/applet_name.h"
#include "model/dialogs/EmptyHint.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "sequences/SequenceTable.h"
#include "sequences/sequence_rules.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QSignalBlocker>

#include <algorithm>
#include <numeric>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const char* const MenuTitle = QT_TRANSLATE_NOOP("wgtSequenceTable", "Context Menu");
const char* const AddText = QT_TRANSLATE_NOOP("wgtSequenceTable", "添加序列");
const char* const AddTemplateText = QT_TRANSLATE_NOOP("wgtSequenceTable", "添加选中序列至模板");
const char* const RemoveSelectedText = QT_TRANSLATE_NOOP("wgtSequenceTable", "删除所选序列");
const char* const RemoveAllText = QT_TRANSLATE_NOOP("wgtSequenceTable", "删除所有序列");

} // namespace

wgtSequenceTable::wgtSequenceTable(QWidget* parent)
    : QWidget(parent), m_table(new SequenceTable(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
    m_table->setObjectName(QStringLiteral("tableWidget"));
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    new EmptyHint(m_table, tr("没有序列，右键单击此处添加"));
    connect(m_table, &QTableWidget::currentItemChanged, this,
            &wgtSequenceTable::onCurrentItemChangedSlot);
    connect(m_table, &QTableWidget::itemChanged, this, &wgtSequenceTable::onItemChangedSlot);
    connect(m_table, &QWidget::customContextMenuRequested, this,
            &wgtSequenceTable::showContextMenu);
}

void wgtSequenceTable::setCAppletName(const QString& appName)
{
    m_appName = appName;
    m_table->setCAppletName(appName);
}

void wgtSequenceTable::setContextMenuDisabled(bool disabled)
{
    m_contextMenuDisabled = disabled;
}

void wgtSequenceTable::clearRows()
{
    m_table->removeAllRows();
}

void wgtSequenceTable::addSequenceRow(const SequenceInfo& info, bool select)
{
    const int row = m_table->appendSequence(info);
    connect(m_table->mainBoxAt(row), &QCheckBox::stateChanged, this,
            &wgtSequenceTable::onMainSequenceCheckBoxChangedSlot);
    if (!select)
        return;
    const QSignalBlocker blocker(m_table);
    m_table->makeCurrent(row);
}

void wgtSequenceTable::selectSequence(const QString& sequenceId)
{
    if (sequenceId == currentSequenceId())
        return;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->sequenceIdAt(row) != sequenceId)
            continue;
        m_table->makeCurrent(row);
        return;
    }
}

QString wgtSequenceTable::currentSequenceId() const
{
    return m_table->sequenceIdAt(m_table->currentRow());
}

void wgtSequenceTable::flushPending()
{
    m_table->commitEditor();
}

QMenu* wgtSequenceTable::makeContextMenu()
{
    auto* menu = new QMenu(tr(MenuTitle), this);
    menu->addAction(tr(AddText), this, &wgtSequenceTable::addSequenceSlot);
    QAction* addTemplate =
        menu->addAction(tr(AddTemplateText), this, &wgtSequenceTable::addSequenceToTemplate);
    QAction* removeSelected =
        menu->addAction(tr(RemoveSelectedText), this, &wgtSequenceTable::removeSelectedSequence);
    menu->addAction(tr(RemoveAllText), this, &wgtSequenceTable::removeAllSequence);
    const bool isAnySelected = m_table->selectionModel()->hasSelection();
    addTemplate->setEnabled(isAnySelected);
    removeSelected->setEnabled(isAnySelected);
    menu->setDisabled(m_contextMenuDisabled);
    return menu;
}

void wgtSequenceTable::showContextMenu(const QPoint& position)
{
    if (m_contextMenuDisabled)
        return;
    QMenu* menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_table->viewport()->mapToGlobal(position));
}

void wgtSequenceTable::addSequenceSlot()
{
    flushPending();
    const QString name = sequence_rules::freeName(m_table->names());
    const QString id = DocumentEdits::instance().createSeuqence(m_appName, name);
    if (id.isEmpty())
        return;
    addSequenceRow(processedit::getSequence(m_appName, id), true);
    emit signalAddSquence(id);
    emit currentSequenceChanged(id);
    m_table->resizeRowsToContents();
    emit sigModified();
}

void wgtSequenceTable::removeSelectedSequence()
{
    flushPending();
    const QVector<int> rows = m_table->selectedRows();
    if (rows.isEmpty())
        return;
    QStringList ids = m_table->sequenceIdsAt(rows);
    const QString notice = removalText(ids);
    const DocumentEdits::Act act;
    std::reverse(ids.begin(), ids.end()); // the last one goes first, as in the table
    for (const QString& id : qAsConst(ids)) {
        DocumentEdits::instance().removeAllVarBySequenceId(appletNameBytes(m_appName),
                                                           id.toStdString());
        DocumentEdits::instance().removeSequence(m_appName, id);
    }
    m_table->removeRowsAt(rows);
    emit signalRemoveSequence(ids);
    emit currentSequenceChanged(currentSequenceId());
    m_table->selectRow(m_table->currentRow());
    emit sigModified();
    emit sigNotice(notice);
}

QString wgtSequenceTable::removalText(const QStringList& ids) const
{
    int steps = 0;
    QStringList names;
    for (const QString& id : ids) {
        names.append(QString::fromStdString(processedit::getSequence(m_appName, id).name));
        steps += int(processedit::getAllProcessBySequenceID(m_appName, id,
                                                            IProcessBlock::ProcessBlockBelong(0))
                         .size());
    }
    const QString what =
        tr("已删除序列 %1（含 %2 个步骤）").arg(names.join(QStringLiteral("、"))).arg(steps);
    return ids.size() < m_table->rowCount() ? what : tr("%1，小程序中已没有序列").arg(what);
}

void wgtSequenceTable::removeAllSequence()
{
    QVector<int> rows(m_table->rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    const QString notice = removalText(m_table->sequenceIdsAt(rows));
    const DocumentEdits::Act act;
    DocumentEdits::instance().removeAllSequenceByAppName(m_appName);
    for (int row = 0; row < m_table->rowCount(); ++row)
        DocumentEdits::instance().removeAllVarBySequenceId(
            appletNameBytes(m_appName), m_table->sequenceIdAt(row).toStdString());
    m_table->removeAllRows();
    emit signalRemoveAllSequence();
    emit currentSequenceChanged(QString());
    emit sigModified();
    if (!rows.isEmpty())
        emit sigNotice(notice);
}

void wgtSequenceTable::addSequenceToTemplate()
{
    flushPending();
    const QStringList ids = m_table->sequenceIdsAt(m_table->selectedRows());
    if (!ids.isEmpty())
        emit signalAddTemplate(ids);
}

void wgtSequenceTable::onCurrentItemChangedSlot(QTableWidgetItem* current,
                                                QTableWidgetItem* previous)
{
    // A walk along the cells of one row changes nothing.
    if (!current || (previous && previous->row() == current->row()))
        return;
    emit currentSequenceChanged(m_table->sequenceIdAt(current->row()));
}

void wgtSequenceTable::onItemChangedSlot(QTableWidgetItem* item)
{
    const int column = item->column();
    if (column != SequenceTable::NameColumn && column != SequenceTable::CommentColumn)
        return;
    {
        const QSignalBlocker blocker(m_table);
        item->setToolTip(item->text());
    }
    // Not of the current row alone: the arrow keys leave an editor by changing the row first.
    SequenceInfo info = processedit::getSequence(m_appName, m_table->sequenceIdAt(item->row()));
    const bool isName = column == SequenceTable::NameColumn;
    (isName ? info.name : info.comment) = item->text().toStdString();
    DocumentEdits::instance().updateSequence(m_appName, info);
    if (isName)
        emit signalRenameSequence();
    emit sigModified();
}

void wgtSequenceTable::onMainSequenceCheckBoxChangedSlot(int state)
{
    auto* pressed = qobject_cast<QCheckBox*>(sender());
    if (!pressed)
        return;
    if (state != Qt::Checked) {
        const QSignalBlocker blocker(pressed);
        // In the middle of a press setChecked would change what is shown, but not what the next
        // press is compared with.
        pressed->setCheckState(Qt::Checked);
        return;
    }
    int pressedRow = -1;
    QVector<bool> boxes;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QCheckBox* box = m_table->mainBoxAt(row);
        boxes.append(box->isChecked());
        if (box == pressed)
            pressedRow = row;
    }
    const DocumentEdits::Act act;
    for (const auto& flag : sequence_rules::mainFlagsToStore(boxes, pressedRow))
        setMain(flag.row, flag.isMain);
}

void wgtSequenceTable::setMain(int row, bool isMain)
{
    QCheckBox* box = m_table->mainBoxAt(row);
    const QSignalBlocker blocker(box);
    box->setChecked(isMain);
    SequenceInfo info = processedit::getSequence(m_appName, m_table->sequenceIdAt(row));
    info.isMain = isMain;
    DocumentEdits::instance().updateSequence(m_appName, info);
    emit sigModified();
}

#include "moc_wgtSequenceTable.cpp"
