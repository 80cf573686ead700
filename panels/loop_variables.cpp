#include "panels/loop_variables.h"

#include "model/blocks/ForProcessBlock.h"
#include "model/services/processedit.h"
#include "model/type_tables.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace processedit = sdk_ui_interface::processedit;

namespace loop_variables {

namespace {

using Block = std::shared_ptr<IProcessBlock>;

/// From a step of the top level to the one that is looked for; empty if it isn't below @p from.
std::vector<Block> pathTo(const std::string& stepId, const Block& from)
{
    // Along the nesting with a stack of its own: documents may be deep.
    std::vector<std::pair<Block, std::size_t>> stack{{from, 0}};
    while (!stack.empty()) {
        auto& [block, next] = stack.back();
        if (block->uuid == stepId)
            break;
        if (next == block->children.size())
            stack.pop_back();
        else
            stack.emplace_back(Block(block->children[next++]), 0);
    }
    std::vector<Block> path;
    for (auto& [block, next] : stack)
        path.push_back(block);
    return path;
}

processVariable variableOf(const ForProcessBlock& loop)
{
    processVariable variable;
    if (loop.getCustom()) {
        variable = definedBy(loop.getFun1());
    } else {
        variable.name = loop.getVariableName();
        variable.type = "s32";
    }
    variable.description = QCoreApplication::translate("wgtEntryValue", "循环“%1”的变量")
                               .arg(QString::fromStdString(loop.name))
                               .toStdString();
    return variable;
}

} // namespace

processVariable definedBy(const std::string& initialisation)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*([A-Za-z_]\\w*)\\s+([A-Za-z_]\\w*)\\s*[=({]"));
    const auto match = pattern.match(QString::fromStdString(initialisation));
    processVariable variable;
    const std::string type = match.captured(1).toStdString();
    if (varTypeFromKeyword(type) == DrelNoType)
        return variable;
    variable.type = type;
    variable.name = match.captured(2).toStdString();
    return variable;
}

std::vector<processVariable> around(const QString& appName, const QString& sequenceId,
                                    const std::string& stepId)
{
    std::vector<processVariable> variables;
    for (const Block& top : processedit::getProcessListBySequenceID(appName, sequenceId)) {
        std::vector<Block> path = pathTo(stepId, top);
        if (path.empty())
            continue;
        path.pop_back();
        for (const Block& block : path) {
            const auto loop = std::dynamic_pointer_cast<ForProcessBlock>(block);
            if (!loop)
                continue;
            processVariable variable = variableOf(*loop);
            if (!variable.name.empty())
                variables.push_back(std::move(variable));
        }
        break;
    }
    return variables;
}

} // namespace loop_variables
