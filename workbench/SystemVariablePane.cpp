#include "workbench/SystemVariablePane.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/widget_bases.h"
#include "standalone/variables/SystemVariables.h"
#include "workbench/SystemVariableModel.h"
#include "workbench/application_icon.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolBar>

#include <algorithm>

using standalone::SystemVariables;

namespace {

/// Offers the types in a box.
class TypeDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override
    {
        auto* box = new QComboBox(parent);
        box->addItems(SystemVariableModel::typeKeywords());
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        static_cast<QComboBox*>(editor)->setCurrentText(index.data().toString());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        model->setData(index, static_cast<QComboBox*>(editor)->currentText(), Qt::EditRole);
    }
};

} // namespace

SystemVariablePane::SystemVariablePane(QWidget* parent)
    : QWidget(parent), m_model(new SystemVariableModel(this)), m_table(new QTableView(this))
{
    m_table->setObjectName(QStringLiteral("systemVariableTable"));
    m_table->setModel(m_model);
    m_table->setItemDelegateForColumn(SystemVariableModel::TypeColumn, new TypeDelegate(m_table));
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() +
                                                     StyleManager::scale(8));
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->horizontalHeader()->setStretchLastSection(true);
    const int widths[] = {150, 80, 180};
    for (int column = 0; column < SystemVariableModel::DescriptionColumn; ++column)
        m_table->setColumnWidth(column, StyleManager::scale(widths[column]));
    connect(m_model, &SystemVariableModel::refused, this, &SystemVariablePane::refused);

    auto* bar = new QToolBar(this);
    bar->setOrientation(Qt::Vertical);
    bar->setIconSize(StyleManager::toolbarButtonIconSize(26));
    QAction* add = bar->addAction(applicationIcon("variable_add"), tr("添加系统变量"), this,
                                  &SystemVariablePane::addVariable);
    add->setObjectName(QStringLiteral("addSystemVariable"));
    QAction* remove = bar->addAction(applicationIcon("variable_remove"), tr("删除选中的系统变量"),
                                     this, &SystemVariablePane::removeSelected);
    remove->setObjectName(QStringLiteral("removeSystemVariables"));
    const auto enableRemove = [this, remove] {
        remove->setEnabled(m_table->selectionModel()->hasSelection());
    };
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, remove,
            enableRemove);
    enableRemove();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(m_table);
}

void SystemVariablePane::addVariable()
{
    const QString name =
        user_dialogs::askText(this, tr("添加系统变量"), tr("名称："), QString()).trimmed();
    if (name.isEmpty())
        return;
    if (m_model->rowOf(name) >= 0) {
        user_dialogs::warning(this, tr("警告"), tr("系统变量 %1 已存在").arg(name));
        return;
    }
    system_variate::SystemVarInfo variable;
    variable.name = name;
    variable.category = SignedCategory;
    variable.value = QStringLiteral("0");
    if (SystemVariables::instance().define(variable) != SystemVariables::Done) {
        user_dialogs::warning(this, tr("警告"),
                              tr("名称需以字母或下划线开头，只含字母、数字和下划线: %1").arg(name));
        return;
    }
    m_model->follow(name);
    m_table->setCurrentIndex(
        m_model->index(m_model->rowOf(name), SystemVariableModel::ValueColumn));
}

void SystemVariablePane::removeSelected()
{
    QStringList names;
    for (const QModelIndex& row : m_table->selectionModel()->selectedRows())
        names << row.data().toString();
    for (const QString& name : qAsConst(names))
        SystemVariables::instance().remove(name);
}

#include "moc_SystemVariablePane.cpp"
