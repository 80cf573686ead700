#include "standalone/codegen/SequenceGenerator.h"

#include "model/blocks/StatementProcessBlock.h"
#include "standalone/codegen/post_actions.h"

#include <algorithm>

namespace codegen {

namespace {

constexpr std::size_t StepsThatNeedParts = 400;
constexpr std::size_t StepsOfAPart = 150;

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

/// Whether a step may leave the sequence, which a part alone can't.
bool mayReturn(const IProcessBlock& block)
{
    const auto returns = [](const std::string& code) {
        return code.find("return") != std::string::npos;
    };
    const auto* statement = dynamic_cast<const StatementProcessBlock*>(&block);
    return (statement && returns(statement->customCode())) || returns(block.preStatements) ||
           returns(block.postStatements) || !postActions(block).empty() ||
           std::any_of(block.children.begin(), block.children.end(),
                       [](const auto& child) { return mayReturn(*child); });
}

std::size_t countSteps(const IProcessBlock& block)
{
    std::size_t count = 1;
    for (const auto& child : block.children)
        count += countSteps(*child);
    return count;
}

bool continuesAnIf(const IProcessBlock& block)
{
    return block.baseType() == BasicStep && step_kinds::isBranch(block.stepType());
}

} // namespace

bool SequenceGenerator::canBeParted() const
{
    if (m_sequence.steps.size() < StepsThatNeedParts || !m_sequence.jumpTargets.empty())
        return false;
    for (const Blocks& flow : m_sequence.source->flows) {
        for (const auto& block : flow) {
            if (mayReturn(*block))
                return false;
        }
    }
    return true;
}

/// The sequence's variables become members, the parts member functions, of one structure that lives
/// as long as a call.
void SequenceGenerator::generateInParts()
{
    const std::string structure = m_sequence.function + "_parts";
    m_writer.line("struct " + structure);
    m_writer.open("");
    generateVariables();
    int parts = 0;
    for (std::size_t flow = 0; flow < m_sequence.source->flows.size(); ++flow) {
        m_writer.comment(flowTitle(flow));
        Blocks part;
        std::size_t size = 0;
        for (const auto& block : m_sequence.source->flows[flow]) {
            if (size >= StepsOfAPart && !continuesAnIf(*block)) {
                generatePart(part, parts++);
                part.clear();
                size = 0;
            }
            part.push_back(block);
            size += countSteps(*block);
        }
        if (!part.empty())
            generatePart(part, parts++);
    }
    m_writer.close("};");
    m_writer.blankLine();

    m_writer.line("void " + m_sequence.function + "()");
    m_writer.open("");
    m_writer.line(structure + " parts;");
    for (int i = 0; i < parts; ++i) {
        m_writer.line("if (!rt::running()) return;");
        m_writer.line("parts.part_" + std::to_string(i) + "();");
    }
    m_writer.close();
}

void SequenceGenerator::generatePart(const Blocks& blocks, int part)
{
    m_writer.line("void part_" + std::to_string(part) + "()");
    m_writer.open("");
    generateSiblings(blocks, false);
    disown();
    m_writer.close();
}

} // namespace codegen
