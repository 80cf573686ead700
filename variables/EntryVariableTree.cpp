#include "variables/EntryVariableTree.h"

#include "model/services/widget_bases.h"

#include <QCoreApplication>
#include <QTreeWidget>

namespace {

constexpr int NameWidth = 280;
constexpr int TypeWidth = 120;

QString tr(const char* text)
{
    return QCoreApplication::translate("wgtEntryValue", text);
}

} // namespace

EntryVariableTree::EntryVariableTree(QTreeWidget& tree) : m_tree(tree)
{
    m_tree.setHeaderLabels({tr("变量名"), tr("类型"), tr("描述")});
    m_tree.setColumnWidth(0, StyleManager::scale(NameWidth));
    m_tree.setColumnWidth(1, StyleManager::scale(TypeWidth));
    for (const char* title : {"序列变量", "流程变量", "全局变量", "系统用户变量"}) {
        auto* group = new QTreeWidgetItem(&m_tree, {tr(title)});
        group->setFirstColumnSpanned(true);
    }
}

void EntryVariableTree::setGroupShown(Group group, bool isShown)
{
    m_tree.topLevelItem(group)->setHidden(!isShown);
}

void EntryVariableTree::clear()
{
    for (int group = 0; group < GroupCount; ++group)
        qDeleteAll(m_tree.topLevelItem(group)->takeChildren());
}

void EntryVariableTree::add(Group group, const QVector<entry_variables::EntryVariable>& variables,
                            entry_variables::Origin origin)
{
    QList<QTreeWidgetItem*> rows;
    rows.reserve(variables.size());
    for (const auto& variable : variables) {
        auto* row =
            new QTreeWidgetItem(QStringList{variable.name, variable.type, variable.description});
        row->setData(0, Qt::UserRole, int(origin));
        row->setToolTip(2, variable.description);
        rows.append(row);
    }
    m_tree.topLevelItem(group)->addChildren(rows);
}

QString EntryVariableTree::valueText(const QTreeWidgetItem& item, bool withOrigin)
{
    if (!item.parent())
        return QString();
    const auto origin = entry_variables::Origin(item.data(0, Qt::UserRole).toInt());
    return withOrigin ? entry_variables::prefixedName(item.text(0), origin) : item.text(0);
}
