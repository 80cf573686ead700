// The functions that an applet's statements define, as the picker lists them.

#include "model/process_blocks.h"
#include "model/services/capplet.h"
#include "model/services/processedit.h"
#include "model/type_tables.h"
#include "standalone/codegen/function_head.h"
#include "standalone/runtime/function_text.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int Success = 0;
constexpr int OrdinaryKind = 0;

DrelVarType typeOf(std::string type)
{
    const std::string constant = "const ";
    if (type.compare(0, constant.size(), constant) == 0)
        type.erase(0, constant.size());
    if (!type.empty() && type.back() == '&')
        type.pop_back();
    return varTypeFromKeyword(type);
}

_DrelFunction recordOf(const codegen::FunctionHead& function)
{
    _DrelFunction record = {};
    standalone::copyText(record.name, function.name);
    standalone::copyText(record.description, function.comment);
    record.kind = OrdinaryKind;
    record.returnType = typeOf(function.returnType);
    const std::size_t count = std::min(function.parameters.size(), std::size(record.params));
    for (std::size_t index = 0; index < count; ++index) {
        standalone::copyText(record.params[index].name, function.parameters[index].name);
        record.params[index].type = typeOf(function.parameters[index].type);
    }
    return record;
}

} // namespace

namespace sdk_ui_interface {
namespace capplet {

int getCAppletUserFuncs(const QString& appName, QList<QPair<_DrelFunction, int>>& functions)
{
    constexpr IProcessBlock::ProcessBlockBelong flows[] = {IProcessBlock::InitialFlowBlocks,
                                                           IProcessBlock::MainFlowBlocks,
                                                           IProcessBlock::EndFlowBlocks};
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName)) {
        const QString id = QString::fromStdString(sequence.id);
        for (const auto flow : flows) {
            for (const auto& block : processedit::getAllProcessBySequenceID(appName, id, flow)) {
                const auto* statement = dynamic_cast<const StatementProcessBlock*>(block.get());
                if (!statement || statement->enableState == 0)
                    continue;
                const std::string code = statement->customCode();
                for (const codegen::FunctionDefinition& function : codegen::functionsIn(code))
                    functions.append({recordOf(codegen::headOf(code, function)), OrdinaryKind});
            }
        }
    }
    return Success;
}

} // namespace capplet
} // namespace sdk_ui_interface
