#include "workbench/SystemVariableModel.h"

#include "standalone/variables/SystemVariables.h"

#include <QMutexLocker>

#include <algorithm>
#include <utility>

using standalone::SystemVariables;
using system_variate::SystemVarInfo;

namespace {

constexpr int OfAUser = 1; // the kind of variables that a person may change

QString keywordOf(DataCategoryType category)
{
    return QString::fromStdString(varTypeKeyword(varTypeFromDataCategory(category)));
}

DataCategoryType categoryOf(const QString& keyword)
{
    for (int category = SignedCategory; category <= DoubleArrayCategory; ++category) {
        if (keywordOf(DataCategoryType(category)) == keyword)
            return DataCategoryType(category);
    }
    return NoCategory;
}

bool isBefore(const SystemVarInfo& variable, const QString& name)
{
    return variable.name < name;
}

} // namespace

/// Lives on the variable service's thread as long as the model does.
class SystemVariableModel::Listener : public IVariateListener
{
public:
    explicit Listener(SystemVariableModel& model) : m_model(model) {}
    // Before anything of it goes: it may be told of a change at any moment.
    ~Listener() override { SystemVariables::instance().removeListener(this); }

private:
    void onVariateDirectChange(Operation, SystemVarDef variable) override
    {
        m_model.onChanged(variable.name);
    }

    SystemVariableModel& m_model;
};

SystemVariableModel::SystemVariableModel(QObject* parent)
    : QAbstractTableModel(parent), m_listener(std::make_unique<Listener>(*this))
{
    // Only now: while it is being made nothing can be told to it.
    SystemVariables::instance().addListener(m_listener.get());
    m_rows = SystemVariables::instance().list();
}

SystemVariableModel::~SystemVariableModel() = default;

QStringList SystemVariableModel::typeKeywords()
{
    QStringList keywords;
    for (int category = SignedCategory; category <= DoubleArrayCategory; ++category)
        keywords << keywordOf(DataCategoryType(category));
    return keywords;
}

int SystemVariableModel::rowOf(const QString& name) const
{
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), name, isBefore);
    return found != m_rows.end() && found->name == name ? int(found - m_rows.begin()) : -1;
}

int SystemVariableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int SystemVariableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant SystemVariableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    const SystemVarInfo& variable = m_rows[index.row()];
    switch (index.column()) {
    case NameColumn:
        return variable.name;
    case TypeColumn:
        return keywordOf(variable.category);
    case ValueColumn:
        return variable.value;
    default:
        return variable.description;
    }
}

QVariant SystemVariableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return QStringList({tr("名称"), tr("类型"), tr("值"), tr("描述")}).value(section);
}

Qt::ItemFlags SystemVariableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const bool isOurs = m_rows[index.row()].kind == OfAUser;
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (!isOurs)
        return shown;
    return shown | Qt::ItemIsEnabled |
           (index.column() == NameColumn ? Qt::NoItemFlags : Qt::ItemIsEditable);
}

bool SystemVariableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole || data(index, role) == value)
        return false;
    SystemVarInfo variable = m_rows[index.row()];
    SystemVariables& service = SystemVariables::instance();
    SystemVariables::Result result = SystemVariables::Done;
    if (index.column() == ValueColumn) {
        result = service.setValue(variable.name, value.toString());
    } else {
        if (index.column() == TypeColumn) {
            variable.category = categoryOf(value.toString());
            variable.value.clear();
        } else {
            variable.description = value.toString();
        }
        result = service.define(variable);
    }
    if (result == SystemVariables::Done) {
        follow(variable.name);
        return true;
    }
    emit refused(tr("系统变量 %1 的值不符合类型 %2: %3")
                     .arg(variable.name, keywordOf(variable.category), value.toString()));
    return false;
}

void SystemVariableModel::onChanged(const QString& name)
{
    QMutexLocker lock(&m_mutex);
    const bool isFirst = m_changed.isEmpty();
    m_changed.insert(name);
    if (isFirst)
        QMetaObject::invokeMethod(this, &SystemVariableModel::followChanges, Qt::QueuedConnection);
}

void SystemVariableModel::followChanges()
{
    QSet<QString> changed;
    {
        QMutexLocker lock(&m_mutex);
        changed = std::exchange(m_changed, QSet<QString>());
    }
    for (const QString& name : qAsConst(changed))
        follow(name);
}

void SystemVariableModel::follow(const QString& name)
{
    const auto place = std::lower_bound(m_rows.begin(), m_rows.end(), name, isBefore);
    const int row = int(place - m_rows.begin());
    const bool wasThere = rowOf(name) >= 0;
    SystemVarInfo variable;
    const bool isThere = SystemVariables::instance().find(name, variable);
    if (wasThere && isThere) {
        m_rows[row] = variable;
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    } else if (wasThere) {
        beginRemoveRows(QModelIndex(), row, row);
        m_rows.removeAt(row);
        endRemoveRows();
    } else if (isThere) {
        beginInsertRows(QModelIndex(), row, row);
        m_rows.insert(row, variable);
        endInsertRows();
    }
}

#include "moc_SystemVariableModel.cpp"
