#include "logic/edit/RowOutline.h"

#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QStandardItem>

QStandardItem* RowOutline::item(Node node)
{
    // The rules only read; what is done with a row afterwards is its owner's matter.
    return static_cast<QStandardItem*>(const_cast<void*>(node));
}

StepOutline::Kind RowOutline::kind(Node node) const
{
    return {item(node)->data(logic_roles::BaseType).toInt(),
            item(node)->data(logic_roles::StepType).toInt()};
}

bool RowOutline::takesChildren(Node node) const
{
    if (step_rows::isFlow(item(node)))
        return true;
    const auto block =
        sdk_ui_interface::processedit::getProcess(m_appName, step_rows::uuidOf(item(node)));
    return block && block->property.hasChildren;
}

StepOutline::Node RowOutline::parent(Node node) const
{
    return item(node)->parent();
}

int RowOutline::row(Node node) const
{
    return item(node)->row();
}

int RowOutline::childCount(Node node) const
{
    return item(node)->rowCount();
}

StepOutline::Node RowOutline::child(Node node, int row) const
{
    return item(node)->child(row);
}
