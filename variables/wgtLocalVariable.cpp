#include "variables/wgtLocalVariable.h"

#include "variables/variable_values.h"

#include "model/applet_name.h"
#include "model/services/log.h"
#include "model/services/process_edit.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int ColumnCount = 4;
const QList<int> defaultWidths{150, 90, 80, 160}; // until the user has set others

QList<QStandardItem*> makeGroupRow(const QString& title, processVariableType scope)
{
    QList<QStandardItem*> row;
    for (int column = 0; column < ColumnCount; ++column) {
        auto* item = new QStandardItem(column == 0 ? title : QString());
        item->setDragEnabled(false);
        row.append(item);
    }
    row.first()->setData(int(scope), wgtLocalVariable::ScopeRole);
    return row;
}

QList<QStandardItem*> makeVariableRow(const processVariable& variable)
{
    QList<QStandardItem*> row;
    for (const std::string& text :
         {variable.name, variable.value, variable.type, variable.description}) {
        auto* item = new QStandardItem(QString::fromStdString(text));
        item->setDropEnabled(false);
        item->setDragEnabled(variable.scope != FixedVariable);
        item->setToolTip(item->text());
        if (variable.isLocked) {
            item->setSelectable(false);
            item->setEnabled(row.size() == 1 && variable.isEditable);
        }
        row.append(item);
    }
    QStandardItem* first = row.first();
    first->setData(QString::fromStdString(variable.uuid), wgtLocalVariable::UuidRole);
    first->setData(int(variable.scope), wgtLocalVariable::ScopeRole);
    first->setData(isCompositeVarType(varTypeFromKeyword(variable.type)),
                   wgtLocalVariable::CompositeRole);
    first->setData(variable.isEditable, wgtLocalVariable::EditableRole);
    first->setData(variable.length, wgtLocalVariable::LengthRole);
    return row;
}

} // namespace

wgtLocalVariable::wgtLocalVariable(QWidget* parent) : QWidget(parent), m_treeView(new QTreeView)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_treeView);
    m_treeView->setObjectName(QStringLiteral("treeView"));
    m_treeView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_treeView->setUniformRowHeights(true);
    connect(m_treeView->header(), &QHeaderView::sectionResized, this,
            &wgtLocalVariable::onSectionResized);
}

void wgtLocalVariable::setCAppletName(const QString& appName)
{
    m_appName = appName;
}

void wgtLocalVariable::reloadSequenceVariables(const QString& sequenceId)
{
    QStandardItemModel*& model = m_models[sequenceId];
    if (!model)
        model = new QStandardItemModel(this);
    rebuild(model, sequenceId);
    m_sequenceId = sequenceId;
    showModel(model);
}

void wgtLocalVariable::rebuild(QStandardItemModel* model, const QString& sequenceId) const
{
    model->clear();
    fillModel(model, sequenceId);
}

void wgtLocalVariable::refreshSequences(const QStringList& sequenceIds)
{
    for (auto it = m_models.cbegin(); it != m_models.cend(); ++it) {
        if (!sequenceIds.isEmpty() && !sequenceIds.contains(it.key()))
            continue;
        rebuild(it.value(), it.key());
        if (it.key() == m_sequenceId)
            showModel(it.value());
    }
}

void wgtLocalVariable::showSequence(const QString& sequenceId)
{
    if (QStandardItemModel* model = m_models.value(sequenceId)) {
        m_sequenceId = sequenceId;
        showModel(model);
    } else if (!sequenceId.isEmpty()) {
        reloadSequenceVariables(sequenceId);
    }
}

void wgtLocalVariable::removeSequenceModels(const QStringList& sequenceIds)
{
    for (const QString& id : sequenceIds) {
        if (id == m_sequenceId) {
            m_treeView->setModel(nullptr);
            m_sequenceId.clear();
        }
        delete m_models.take(id);
    }
}

void wgtLocalVariable::removeAllModels()
{
    removeSequenceModels(m_models.keys());
}

QString wgtLocalVariable::variableInSight(const QString& name) const
{
    const std::string appName = appletNameBytes(m_appName);
    const std::string wanted = name.toStdString();
    for (const auto& variables :
         {process_edit::getAllGlobalVariable(), process_edit::getAllCAppletVariable(appName),
          process_edit::getAllSequenceVariable(appName, m_sequenceId.toStdString())}) {
        for (const processVariable& variable : variables) {
            if (variable.name == wanted)
                return QString::fromStdString(variable.uuid);
        }
    }
    return QString();
}

void wgtLocalVariable::addVarToCurrentView(const QString& name, const QString& value,
                                           DrelVarType type, int scope, bool forceNew)
{
    static const QRegularExpression nameRule(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,19}$"));
    if (!nameRule.match(name).hasMatch()) {
        sdk_ui_interface::log::log_error(QStringLiteral("[流程编辑] 变量名称不符合规则: ") + name);
        return;
    }
    const std::string appName = appletNameBytes(m_appName);
    std::string uuid = forceNew ? std::string() : variableInSight(name).toStdString();
    if (uuid.empty()) {
        const std::string owner = scope == SequenceVariable  ? m_sequenceId.toStdString()
                                  : scope == ProcessVariable ? appName
                                                             : std::string();
        uuid = process_edit::addVariable(appName, processVariableType(scope), owner);
    }
    processVariable variable = process_edit::getVariable(uuid);
    if (variable.uuid.empty())
        return;
    variable.name = name.toStdString();
    variable.type = varTypeKeyword(type);
    variable.value = variable_values::normalized(value, type).toStdString();
    process_edit::updateVariable(appName, variable, variable.scope);
    if (variable.scope == SequenceVariable) {
        refreshSequences({m_sequenceId});
    } else {
        refreshSequences({});
        emit sigUpdateVariable(variable.scope == GlobalVariable, {name});
    }
    emit sigModified();
}

void wgtLocalVariable::fillModel(QStandardItemModel* model, const QString& sequenceId) const
{
    const std::string appName = appletNameBytes(m_appName);
    model->setHorizontalHeaderLabels({tr("名称"), tr("值"), tr("类型"), tr("备注")});
    const auto appendGroup = [model](const QString& title, processVariableType scope,
                                     const std::vector<processVariable>& variables) {
        const QList<QStandardItem*> group = makeGroupRow(title, scope);
        for (const processVariable& variable : variables)
            group.first()->appendRow(makeVariableRow(variable));
        model->appendRow(group);
    };
    appendGroup(tr("序列变量"), SequenceVariable,
                process_edit::getAllSequenceVariable(appName, sequenceId.toStdString()));
    appendGroup(tr("流程变量"), ProcessVariable, process_edit::getAllCAppletVariable(appName));
    appendGroup(tr("全局变量"), GlobalVariable, process_edit::getAllGlobalVariable());
}

void wgtLocalVariable::showModel(QStandardItemModel* model)
{
    // The view makes a new selection model for each model and leaves the old one behind.
    QItemSelectionModel* const earlier = m_treeView->selectionModel();
    const bool changes = m_treeView->model() != model;
    m_treeView->setModel(model);
    if (changes)
        delete earlier;
    m_treeView->expandAll();
    setColumnWidths(m_columnWidths.isEmpty() ? defaultWidths : m_columnWidths);
}

void wgtLocalVariable::setColumnWidths(const QList<int>& widths)
{
    if (widths.size() < ColumnCount)
        return;
    m_columnWidths = widths;
    const QSignalBlocker blocker(m_treeView->header());
    for (int column = 0; column < ColumnCount; ++column) {
        if (widths.at(column) > 0)
            m_treeView->setColumnWidth(column, widths.at(column));
    }
}

void wgtLocalVariable::onSectionResized(int, int, int)
{
    const QHeaderView* header = m_treeView->header();
    // While a model is put on the view its columns come one by one.
    if (header->count() != ColumnCount || !m_treeView->isVisible())
        return;
    m_columnWidths.clear();
    QStringList widths;
    for (int column = 0; column < ColumnCount; ++column) {
        m_columnWidths.append(header->sectionSize(column));
        widths.append(QString::number(header->sectionSize(column)));
    }
    emit sigUpdateVarTreeWidth(widths);
}
