#include "logic/rows/RowItem.h"

#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"

namespace {
constexpr int FlagsRole = Qt::UserRole - 1; // as QStandardItem keeps its flags
}

RowItem::RowItem(const IProcessBlock& block, Qt::ItemFlags flags, bool hasBox)
    : m_flags(flags), m_baseType(block.baseType()), m_stepType(block.stepType()),
      m_uuid(QString::fromStdString(block.uuid)), m_name(step_rows::translatedName(block.name)),
      m_state(Qt::CheckState(block.enableState)), m_hasBox(hasBox)
{
}

RowItem::RowItem(logicBlockType flow, const QString& name, Qt::ItemFlags flags, bool hasBox)
    : m_flags(flags), m_baseType(flow), m_stepType(step_type::None), m_uuid(QString::number(flow)),
      m_name(name), m_state(Qt::Checked), m_hasBox(hasBox)
{
}

RowItem* RowItem::from(QStandardItem* item)
{
    return item && item->type() == Type ? static_cast<RowItem*>(item) : nullptr;
}

const RowItem* RowItem::from(const QStandardItem* item)
{
    return item && item->type() == Type ? static_cast<const RowItem*>(item) : nullptr;
}

QVariant RowItem::data(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_name;
    case Qt::DecorationRole: {
        const QIcon icon = step_rows::icon(m_baseType, m_stepType);
        return icon.isNull() ? QVariant() : QVariant(icon);
    }
    case Qt::CheckStateRole:
        return m_hasBox ? QVariant(int(m_state)) : QVariant();
    case FlagsRole:
        return int(m_flags);
    case logic_roles::BaseType:
        return int(m_baseType);
    case logic_roles::StepType:
        return m_baseType > EndFlow ? QVariant(m_stepType) : QVariant();
    case logic_roles::BlockUuid:
        return m_uuid;
    default:
        return QStandardItem::data(role);
    }
}

void RowItem::setData(const QVariant& value, int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (m_name == value.toString())
            return;
        m_name = value.toString();
        break;
    case Qt::CheckStateRole: {
        const auto state = Qt::CheckState(value.toInt());
        if (m_hasBox && m_state == state)
            return;
        const bool wasUnchecked = isUnchecked();
        m_state = state;
        m_hasBox = true;
        RowItem* above = model() ? from(parent()) : nullptr;
        if (above && wasUnchecked != isUnchecked())
            above->countUnchecked(wasUnchecked ? -1 : 1);
        break;
    }
    case FlagsRole:
        m_flags = Qt::ItemFlags(value.toInt());
        break;
    default:
        QStandardItem::setData(value, role);
        return;
    }
    emitDataChanged();
}

QStandardItem* RowItem::clone() const
{
    auto* copy = new RowItem(*this);
    copy->m_uncheckedChildren = 0; // it has none
    return copy;
}
