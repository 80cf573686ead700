#include "standalone/model_service/documents/block_factory.h"

#include "model/process_blocks.h"
#include "standalone/model_service/documents/BlockMemory.h"
#include "standalone/model_service/documents/StoredBlock.h"

namespace standalone {

namespace {

template <class Block> std::shared_ptr<IProcessBlock> stored()
{
    return std::allocate_shared<StoredBlock<Block>>(BlockAllocator<StoredBlock<Block>>());
}

std::shared_ptr<IProcessBlock> makeBasicBlock(int stepType)
{
    switch (stepType) {
    case step_type::If:
        return stored<IfProcessBlock>();
    case step_type::ElseIf:
        return stored<ElseIfProcessBlock>();
    case step_type::For:
        return stored<ForProcessBlock>();
    case step_type::While:
        return stored<WhileProcessBlock>();
    case step_type::DoWhile:
        return stored<DoWhileProcessBlock>();
    case step_type::Goto:
        return stored<GotoProcessBlock>();
    case step_type::Api:
        return stored<ApiProcessBlock>();
    case step_type::Condition:
        return stored<ConditionProcessBlock>();
    case step_type::Statement:
        return stored<StatementProcessBlock>();
    case step_type::Expression:
        return stored<ExpressionProcessBlock>();
    case step_type::Sequence:
        return stored<SequenceProcessBlock>();
    case step_type::PopupWindow:
        return stored<PopupWindowProcessBlock>();
    case step_type::Delay:
        return stored<DelayProcessBlock>();
    case step_type::SendMessage:
        return stored<SendMessageProcessBlock>();
    case step_type::RecvMessage:
        return stored<RecvMessageProcessBlock>();
    case step_type::Buzz:
        return stored<BuzzProcessBlock>();
    case step_type::Else:
    case step_type::EndIf:
    case step_type::EndFor:
    case step_type::EndWhile:
    case step_type::EndDoWhile:
    case step_type::Break:
    case step_type::Continue:
    case step_type::GotoTag:
        return makePlaceholder(stepType);
    default:
        return nullptr;
    }
}

} // namespace

std::shared_ptr<IProcessBlock> makePlaceholder(int stepType)
{
    using Placeholder = StoredBlock<PlainProcessBlock>;
    return std::allocate_shared<Placeholder>(BlockAllocator<Placeholder>(), stepType);
}

std::shared_ptr<IProcessBlock> makeBlock(logicBlockType baseType, int stepType)
{
    if (baseType == BasicStep)
        return makeBasicBlock(stepType);
    if (baseType == DiagnosticStep && stepType > step_type::None)
        return std::make_shared<StoredBlock<UdsProcessBlock>>(stepType);
    return nullptr;
}

bool isCreatable(logicBlockType baseType, int stepType)
{
    if (baseType == BasicStep && stepType == step_type::Condition)
        return false;
    return makeBlock(baseType, stepType) != nullptr;
}

} // namespace standalone
