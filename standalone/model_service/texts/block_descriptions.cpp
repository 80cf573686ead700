#include "model/process_blocks.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/texts/block_texts.h"

using standalone::settingText;
using standalone::targetNamesFor;
using standalone::toUtf8;
namespace block_texts = standalone::block_texts;

namespace {

std::string settingsOf(const IProcessBlock& block)
{
    return toUtf8(settingText(block, targetNamesFor(block)));
}

} // namespace

std::string ApiProcessBlock::description() const
{
    return toUtf8(block_texts::apiCall(*this));
}

std::string BuzzProcessBlock::description() const
{
    return toUtf8(block_texts::buzz(*this));
}

std::string ConditionProcessBlock::description() const
{
    return toUtf8(block_texts::condition(*this));
}

std::string DelayProcessBlock::description() const
{
    return toUtf8(block_texts::delay(*this));
}

std::string ExpressionProcessBlock::description() const
{
    return toUtf8(block_texts::expression(*this));
}

std::string ForProcessBlock::description() const
{
    return toUtf8(block_texts::forLoop(*this));
}

std::string GotoProcessBlock::description() const
{
    return toUtf8(block_texts::jump(*this, targetNamesFor(*this)));
}

std::string PlainProcessBlock::description() const
{
    return toUtf8(block_texts::plain(stepType()));
}

std::string PopupWindowProcessBlock::description() const
{
    return toUtf8(block_texts::popup(*this));
}

std::string RecvMessageProcessBlock::description() const
{
    return toUtf8(block_texts::receive(*this));
}

std::string SendMessageProcessBlock::description() const
{
    return toUtf8(block_texts::send(*this));
}

std::string SequenceProcessBlock::description() const
{
    return toUtf8(block_texts::sequenceCall(*this, targetNamesFor(*this)));
}

std::string StatementProcessBlock::description() const
{
    return toUtf8(block_texts::statement(*this));
}

std::string UdsProcessBlock::description() const
{
    return stepText;
}

std::string ApiProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string BuzzProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string ConditionProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string DelayProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string ExpressionProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string ForProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string GotoProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string PlainProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string PopupWindowProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string RecvMessageProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string SendMessageProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string SequenceProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string StatementProcessBlock::settingText() const
{
    return settingsOf(*this);
}

std::string UdsProcessBlock::settingText() const
{
    return settingsOf(*this);
}
