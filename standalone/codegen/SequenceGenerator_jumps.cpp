#include "standalone/codegen/SequenceGenerator.h"

#include "model/process_blocks.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/user_texts.h"

#include <algorithm>

namespace codegen {

namespace {

/// Whether a loop's header defines a variable: two words in a row, as in "int i = 0".
bool definesVariable(const std::string& initialisation)
{
    const std::string text = expressionText(initialisation);
    const std::size_t end = std::min(text.find_first_of(" \t\n*&"), text.size());
    const std::size_t next = text.find_first_not_of(" \t\n*&", end);
    const auto isWord = [](const std::string& word) { return identifierText(word) == word; };
    return next != std::string::npos && isWord(text.substr(0, end)) && isWord(text.substr(next, 1));
}

} // namespace

/// A loop's variable lives as long as the sequence if a jump may lead into the loop.
void SequenceGenerator::findLoopsWithTargets(const Blocks& blocks,
                                             std::vector<const ForProcessBlock*>& around)
{
    const std::vector<bool> out = leftOut(blocks);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const IProcessBlock& block = *blocks[i];
        if (out[i])
            continue;
        if (m_sequence.jumpTargets.count(block.uuid)) {
            auto& closed = m_closedLoops[block.uuid];
            for (const ForProcessBlock* loop : around) {
                if (loop->getCustom() && definesVariable(loop->getFun1()))
                    closed.push_back(loop);
                else if (!loop->getCustom() && isIdentifier(counterOf(*loop)) &&
                         !isKnownVariable(counterOf(*loop)))
                    m_loopVariables.emplace(counterOf(*loop), loop->getBeginValue());
            }
        }
        const auto* loop = dynamic_cast<const ForProcessBlock*>(&block);
        if (loop)
            around.push_back(loop);
        findLoopsWithTargets(block.children, around);
        if (loop)
            around.pop_back();
    }
}

bool SequenceGenerator::leadsIntoCustomLoop(const std::string& targetUuid) const
{
    const auto closed = m_closedLoops.find(targetUuid);
    return closed != m_closedLoops.end() &&
           std::any_of(closed->second.begin(), closed->second.end(),
                       [this](const ForProcessBlock* loop) {
                           return std::find(m_openLoops.begin(), m_openLoops.end(), loop) ==
                                  m_openLoops.end();
                       });
}

void SequenceGenerator::generatePostActions(const IProcessBlock& block)
{
    const std::vector<PostAction> actions = postActions(block);
    if (actions.empty())
        return;
    if (isBlank(block.postConditionCode)) {
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "执行后跳转缺少条件"));
        return;
    }
    checkCode(block, block.postConditionCode, user_text::PostCondition);
    const bool onlyFalse = !actions.front().whenTrue;
    const std::string test = expressionText(block.postConditionCode);
    m_writer.open(onlyFalse ? "if (!(" + test + "))" : "if (" + test + ")",
                  user_text::PostCondition);
    for (std::size_t i = 0; i < actions.size(); ++i) {
        if (i > 0) {
            m_writer.close("} else {");
            m_writer.indent();
        }
        generateAction(block, actions[i].kind, actions[i].target);
    }
    m_writer.close();
}

void SequenceGenerator::generateAction(const IProcessBlock& block, int kind,
                                       const std::string& target)
{
    if (kind == PostAction::ToStep) {
        generateJump(target, block);
        return;
    }
    if (kind == PostAction::ToSequence) {
        // A jump does not come back.
        const PlannedSequence* sequence = m_context.plan.sequence(m_sequence, target);
        if (sequence)
            m_writer.line(callOf(*sequence));
        else
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "找不到要跳转到的序列"));
    } else if (kind == PostAction::EndProcess) {
        m_writer.line("rt::finished = true;");
    }
    m_writer.line("return;");
}

void SequenceGenerator::generateJump(const std::string& targetUuid, const IProcessBlock& block)
{
    const auto target = m_sequence.steps.find(targetUuid);
    if (target == m_sequence.steps.end())
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "跳转的目标步骤不存在或已禁用"));
    else if (leadsIntoCustomLoop(targetUuid))
        addProblem(block,
                   QT_TRANSLATE_NOOP("codegen", "不能从外部跳转到定义了循环变量的自定义循环内"));
    else
        m_writer.line("goto step_" + std::to_string(target->second) + ";");
}

std::string SequenceGenerator::callOf(const PlannedSequence& callee)
{
    m_callees.insert(&callee);
    return "rt::call(rt::index_of_" + callee.unit() + ", " + callee.space + "::" + callee.function +
           ");";
}

} // namespace codegen
