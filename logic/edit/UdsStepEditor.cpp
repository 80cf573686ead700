#include "logic/edit/UdsStepEditor.h"

#include "edits/DocumentEdits.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "logic/rows/uds_steps.h"
#include "model/blocks/UdsProcessBlock.h"
#include "model/services/host.h"
#include "model/services/log.h"
#include "model/services/processedit.h"

#include <QTreeView>

using namespace sdk_ui_interface;
using step_rows::uuidOf;

namespace {

template <class Tell> void forDiagnosticRows(const QStandardItem* row, int levels, const Tell& tell)
{
    if (row->data(logic_roles::BaseType).toInt() == DiagnosticStep)
        tell(uuidOf(row));
    for (int i = 0; levels > 0 && i < row->rowCount(); ++i)
        forDiagnosticRows(row->child(i), levels - 1, tell);
}

/// Asks the diagnosis service to change the blocks of these uuids. False if nobody answered.
bool requestEcus(const QStringList& uuids)
{
    constexpr quint32 topic = 0x27C;
    constexpr quint32 oneBuffer = 1;
    IMessageStation* station = getMessageStation();
    const QByteArray text = uuids.join(QLatin1Char(';')).toUtf8();
    const quint32 handle = station->allocateBuffer(text.size());
    QByteArray* buffer = station->buffer(handle);
    if (!buffer)
        return false;
    *buffer = text;
    IMessageStation::Request request;
    request.topic = QStringLiteral("uds.setEcus");
    request.words = {topic, oneBuffer, handle, quint32(text.size())};
    const bool isAnswered = !station->sendRequest(request).isEmpty();
    station->freeBuffer(handle);
    return isAnswered;
}

} // namespace

UdsStepEditor::UdsStepEditor(QTreeView& tree) : m_tree(tree) {}

QString UdsStepEditor::sequenceId() const
{
    const auto* model = qobject_cast<const CustonStandModel*>(m_tree.model());
    return model ? model->sequenceId() : QString();
}

std::optional<UdsStepEditor::Setup> UdsStepEditor::ask(int stepType, const QString& name)
{
    const QString id = sequenceId();
    Setup setup;
    setup.kind = uds_steps::kindOf(m_appName, stepType, name.toStdString());
    setup.info = uds_steps::infoOf(setup.kind);
    // Much may have happened while the dialog was open.
    if (!open(id, stepType, setup.info) || sequenceId() != id)
        return std::nullopt;
    return setup;
}

void UdsStepEditor::write(const QString& blockUuid, const Setup& setup)
{
    const auto block =
        std::dynamic_pointer_cast<UdsProcessBlock>(processedit::getProcess(m_appName, blockUuid));
    if (!block)
        return;
    write(block, setup);
    emit runtimeStale();
}

void UdsStepEditor::write(const std::shared_ptr<UdsProcessBlock>& block, const Setup& setup)
{
    DocumentEdits::instance().updateProcess(m_appName, sequenceId(), block, [&] {
        block->property = setup.kind;
        uds_steps::takeOver(*block, setup.info);
    });
}

bool UdsStepEditor::edit(const QModelIndex& row)
{
    const QModelIndex name = row.siblingAtColumn(logic_columns::Name);
    if (name.data(logic_roles::BaseType).toInt() != DiagnosticStep ||
        !uds_steps::canBeEdited(m_appName))
        return false;
    const QString uuid = name.data(logic_roles::BlockUuid).toString();
    const auto block =
        std::dynamic_pointer_cast<UdsProcessBlock>(processedit::getProcess(m_appName, uuid));
    if (!block)
        return true;
    UDSProcessInfo info = uds_steps::infoOf(*block);
    if (!open(uuid, block->stepType(), info))
        return true;
    const auto* model = qobject_cast<const CustonStandModel*>(m_tree.model());
    const QStandardItem* item = model ? model->rowOf(uuid) : nullptr;
    if (!item)
        return true;
    const DocumentEdits::Act act;
    write(uuid, {block->property, info});
    emit removed(uuid);
    emit added(uuid);
    emit rowChosen(item->index());
    return true;
}

void UdsStepEditor::setEcus(const QList<QPersistentModelIndex>& rows)
{
    std::vector<std::shared_ptr<UdsProcessBlock>> blocks;
    QStringList uuids;
    for (const QModelIndex& row : rows) {
        if (row.data(logic_roles::BaseType).toInt() != DiagnosticStep)
            continue;
        uuids.append(row.data(logic_roles::BlockUuid).toString());
        blocks.push_back(std::dynamic_pointer_cast<UdsProcessBlock>(
            processedit::getProcess(m_appName, uuids.last())));
        if (!blocks.back())
            return;
    }
    if (blocks.empty())
        return;
    if (!requestEcus(uuids)) {
        refuse(tr("诊断服务不可用"));
        return;
    }
    const DocumentEdits::Act act;
    for (const auto& block : blocks)
        write(block, {block->property, uds_steps::infoOf(*block)});
    emit runtimeStale();
}

bool UdsStepEditor::open(const QString& id, int stepType, UDSProcessInfo& info)
{
    if (m_dialog)
        return m_dialog(m_appName, id, stepType, info);
    refuse(tr("没有可用的诊断编辑器"));
    return false;
}

void UdsStepEditor::refuse(const QString& reason)
{
    log::log_error(QStringLiteral("[流程编辑] %1: %2").arg(m_appName, reason));
    emit refused(reason);
}

void UdsStepEditor::tellAdded(const QStandardItem* row)
{
    forDiagnosticRows(row, AllLevels, [this](const QString& uuid) { emit added(uuid); });
}

void UdsStepEditor::tellRemoved(const QStandardItem* row, int levels)
{
    forDiagnosticRows(row, levels, [this](const QString& uuid) { emit removed(uuid); });
}

#include "moc_UdsStepEditor.cpp"
