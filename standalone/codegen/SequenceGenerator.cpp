#include "standalone/codegen/SequenceGenerator.h"

#include "model/process_blocks.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/variable_code.h"

namespace codegen {

namespace {

constexpr std::size_t MaxProblems = 100;

} // namespace

SequenceGenerator::SequenceGenerator(GenerationContext& context, const PlannedSequence& sequence,
                                     CodeWriter& writer)
    : m_context(context), m_sequence(sequence), m_writer(writer)
{
    for (const auto* list : {&context.source.globalVariables, &sequence.group->variables,
                             &sequence.source->variables}) {
        for (const processVariable& variable : *list)
            m_variables.insert(variable.name);
    }
}

void SequenceGenerator::generate()
{
    const SequenceInfo& info = m_sequence.source->info;
    m_writer.setOwner(info.name, std::string());
    m_writer.comment("序列: " + info.name + "  " + info.id);
    if (canBeParted()) {
        generateInParts();
        return;
    }
    m_writer.line("static void " + m_sequence.function + "()");
    m_writer.open("");
    generateVariables();
    for (std::size_t flow = 0; flow < m_sequence.source->flows.size(); ++flow) {
        m_writer.comment(flowTitle(flow));
        generateSiblings(m_sequence.source->flows[flow], false);
        m_writer.setOwner(info.name, std::string());
    }
    m_writer.close();
    m_writer.blankLine();
}

void SequenceGenerator::generateVariables()
{
    for (const processVariable& variable : m_sequence.source->variables) {
        const VariableCode code = variableCode(variable, false);
        if (!code.problem.empty())
            m_context.result.problems.push_back(
                problemText(QT_TRANSLATE_NOOP("codegen", "序列“%1”: %2"),
                            {m_sequence.source->info.name, code.problem}));
        for (const std::string& line : code.lines)
            m_writer.line(line);
    }
}

void SequenceGenerator::generateSiblings(const Blocks& blocks, bool inLoop)
{
    const std::vector<bool> out = leftOut(blocks);
    for (std::size_t i = 0; i < blocks.size();) {
        const IProcessBlock& block = *blocks[i];
        const int type = block.baseType() == BasicStep ? block.stepType() : step_type::None;
        if (out[i]) {
            generateDisabled(block);
        } else if (type == step_type::If) {
            i = generateIf(blocks, i, inLoop);
            continue;
        } else if (step_kinds::isBranch(type)) {
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "没有与之对应的 if"));
        } else if (step_kinds::isLoop(type)) {
            generateLoop(block);
        } else if (step_kinds::isCloser(type)) {
            generateClosing(block);
        } else if (type == step_type::Break || type == step_type::Continue) {
            generateJumpOut(block, inLoop);
        } else {
            generateLeaf(block);
        }
        ++i;
    }
}

void SequenceGenerator::generateDisabled(const IProcessBlock& block)
{
    m_writer.setOwner(m_sequence.source->info.name, block.name);
    m_writer.comment("已禁用: " + block.name + "  " + block.uuid);
}

/// The chain from an if to the last of its branches; returns the index behind it.
std::size_t SequenceGenerator::generateIf(const Blocks& blocks, std::size_t at, bool inLoop)
{
    const IProcessBlock& first = *blocks[at];
    const std::string firstStep = beginStep(first);
    const bool isGuarded = !isBlank(first.preCondition);
    if (isGuarded)
        m_writer.open("if (" + expressionText(first.preCondition) + ")");
    if (!isBlank(first.preStatements)) {
        m_writer.open("");
        m_writer.userCode(first.preStatements);
        m_writer.close();
    }
    m_writer.open("if (rt::step_test(" + firstStep + ", " + condition(first) + "))");
    generateSiblings(first.children, inLoop);
    endStep(firstStep);

    bool hasElse = false;
    std::size_t i = at + 1;
    for (; i < blocks.size(); ++i) {
        const IProcessBlock& branch = *blocks[i];
        if (!isBranch(branch))
            break;
        if (isDisabled(branch)) {
            generateDisabled(branch);
            continue;
        }
        if (hasElse)
            addProblem(branch, QT_TRANSLATE_NOOP("codegen", "else 之后不能再有分支"));
        m_writer.setOwner(m_sequence.source->info.name, branch.name);
        if (m_sequence.jumpTargets.count(branch.uuid))
            addProblem(branch, QT_TRANSLATE_NOOP("codegen", "分支不能作为跳转目标"));
        const auto index = m_sequence.steps.find(branch.uuid);
        const std::string step = std::to_string(index->second);
        m_writer.comment(branch.name + "  " + branch.uuid);
        if (branch.stepType() == step_type::Else) {
            hasElse = true;
            m_writer.close("} else {");
            m_writer.indent();
            m_writer.line("if (!rt::step_begin(" + step + ")) return;");
        } else {
            m_writer.close("} else if (rt::step_begin(" + step + ") && rt::step_test(" + step +
                           ", " + condition(branch) + ")) {");
            m_writer.indent();
        }
        generateSiblings(branch.children, inLoop);
        endStep(step);
    }
    m_writer.setOwner(m_sequence.source->info.name, first.name);
    m_writer.close();
    if (!isBlank(first.postStatements)) {
        m_writer.open("");
        m_writer.userCode(first.postStatements);
        m_writer.close();
    }
    if (isGuarded) {
        m_writer.close("} else {");
        m_writer.indent();
        endStep(firstStep);
        m_writer.close();
    }
    generatePostActions(first);
    return i;
}

void SequenceGenerator::generateLoop(const IProcessBlock& block)
{
    const std::string step = beginStep(block);
    const bool isGuarded = !isBlank(block.preCondition);
    if (isGuarded)
        m_writer.open("if (" + expressionText(block.preCondition) + ")");
    if (!isBlank(block.preStatements)) {
        m_writer.open("");
        m_writer.userCode(block.preStatements);
        m_writer.close();
    }
    if (const auto* loop = dynamic_cast<const ForProcessBlock*>(&block)) {
        generateFor(*loop, step);
    } else {
        const std::string header = "while (rt::running() && (" + condition(block) + "))";
        const bool testFirst = block.stepType() == step_type::While;
        m_writer.open(testFirst ? header : "do");
        generateSiblings(block.children, true);
        m_writer.setOwner(m_sequence.source->info.name, block.name);
        m_writer.close(testFirst ? "}" : "} " + header + ";");
    }
    if (!isBlank(block.postStatements)) {
        m_writer.open("");
        m_writer.userCode(block.postStatements);
        m_writer.close();
    }
    if (isGuarded)
        m_writer.close();
    endStep(step);
    generatePostActions(block);
}

void SequenceGenerator::generateFor(const ForProcessBlock& block, const std::string& step)
{
    if (block.getCustom()) {
        const std::string test = isBlank(block.getFun2())
                                     ? std::string()
                                     : " && (" + expressionText(block.getFun2()) + ")";
        m_writer.open("for (" + expressionText(block.getFun1()) + "; rt::running()" + test + "; " +
                      expressionText(block.getFun3()) + ")");
        generateSiblings(block.children, true);
        m_writer.setOwner(m_sequence.source->info.name, block.name);
        m_writer.close();
        return;
    }

    const int begin = block.getBeginValue();
    const int end = block.getEndValue();
    const int increment = block.getStepValue();
    std::string name = block.getVariableName();
    const bool isNameless = name.empty();
    if (isNameless)
        name = "turn_" + step;
    if (!isIdentifier(name))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "“%1”不能用作循环变量名"), {name});
    if (increment == 0)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "循环步长不能为 0"));

    // Defined without a value, so that a goto may lead into the loop.
    m_writer.open("");
    if (isNameless || block.isNeedDefine() || !isKnownVariable(name))
        m_writer.line("s32 " + name + ";");
    const std::string first = std::to_string(begin);
    const std::string last = std::to_string(end);
    m_writer.open("for (" + name + " = " + first + "; rt::running() && " + name +
                  (increment < 0 ? " > " : " < ") + last + "; " + name +
                  " += " + std::to_string(increment) + ")");
    m_writer.line("rt::step_turn(" + step + ", " + name + ", " + first + ", " + last + ");");
    generateSiblings(block.children, true);
    m_writer.setOwner(m_sequence.source->info.name, block.name);
    m_writer.close();
    m_writer.close();
}

void SequenceGenerator::generateJumpOut(const IProcessBlock& block, bool inLoop)
{
    const bool isBreak = block.stepType() == step_type::Break;
    const std::string word = isBreak ? "break" : "continue";
    if (!inLoop)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "%1 不在循环之内"), {word});
    const std::string step = beginStep(block);
    endStep(step);
    const bool isGuarded = !isBlank(block.preCondition);
    m_writer.line((isGuarded ? "if (" + expressionText(block.preCondition) + ") " : "") + word +
                  ";");
}

void SequenceGenerator::generateClosing(const IProcessBlock& block)
{
    const std::string step = beginStep(block);
    endStep(step);
}

/// Writes what stands before the work of any step, and returns its number as text.
std::string SequenceGenerator::beginStep(const IProcessBlock& block)
{
    const auto found = m_sequence.steps.find(block.uuid);
    const std::string step = std::to_string(found->second);
    m_writer.setOwner(m_sequence.source->info.name, block.name);
    m_writer.comment(block.name + "  " + block.uuid);
    if (m_sequence.jumpTargets.count(block.uuid))
        m_writer.label("step_" + step);
    m_writer.line("if (!rt::step_begin(" + step + ")) return;");
    return step;
}

void SequenceGenerator::endStep(const std::string& step)
{
    m_writer.line("if (!rt::step_end(" + step + ")) return;");
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
    const bool onlyFalse = !actions.front().whenTrue;
    const std::string test = expressionText(block.postConditionCode);
    m_writer.open(onlyFalse ? "if (!(" + test + "))" : "if (" + test + ")");
    for (std::size_t i = 0; i < actions.size(); ++i) {
        if (i > 0) {
            m_writer.close("} else {");
            m_writer.indent();
        }
        const PostAction& action = actions[i];
        const PlannedSequence* sequence = nullptr;
        switch (action.kind) {
        case PostAction::ToStep:
            generateJump(action.target, block);
            break;
        case PostAction::ToSequence:
            // A jump does not come back.
            sequence = m_context.plan.sequence(m_sequence, action.target);
            if (!sequence)
                addProblem(block, QT_TRANSLATE_NOOP("codegen", "找不到要跳转到的序列"));
            else
                m_writer.line("rt::call(" + std::to_string(sequence->index) + ", " +
                              sequence->space + "::" + sequence->function + ");");
            m_writer.line("return;");
            break;
        case PostAction::EndProcess:
            m_writer.line("rt::finished = true;");
            m_writer.line("return;");
            break;
        case PostAction::EndSequence:
        case PostAction::NextStep:
            m_writer.line("return;");
            break;
        }
    }
    m_writer.close();
}

void SequenceGenerator::generateJump(const std::string& targetUuid, const IProcessBlock& block)
{
    const auto target = m_sequence.steps.find(targetUuid);
    if (target == m_sequence.steps.end())
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "跳转的目标步骤不存在或已禁用"));
    else
        m_writer.line("goto step_" + std::to_string(target->second) + ";");
}

/// The condition without outer parentheses.
std::string SequenceGenerator::condition(const IProcessBlock& step)
{
    const auto* typed = dynamic_cast<const ConditionProcessBlock*>(&step);
    if (!typed) {
        addProblem(step, QT_TRANSLATE_NOOP("codegen", "步骤内容无法识别"));
        return "false";
    }
    const ConditionProcessBlock& block = *typed;
    if (isBlank(block.getFun1()) && isBlank(block.getFun2())) {
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "条件为空"));
        return "false";
    }
    const std::string left = isBlank(block.getFun1()) ? "0" : operandText(block.getFun1());
    const std::string right = isBlank(block.getFun2()) ? "0" : operandText(block.getFun2());
    const std::string& comparison = block.getOperator();
    if (block.getOperatorIsArray())
        return (comparison == "!=" ? "!rt::arrays_equal(" : "rt::arrays_equal(") + left + ", " +
               right + ", " + std::to_string(block.getArraySize()) + ")";
    return left + ' ' + (comparison.empty() ? "==" : comparison) + ' ' + right;
}

bool SequenceGenerator::isKnownVariable(const std::string& name) const
{
    return m_variables.count(name) > 0;
}

void SequenceGenerator::addProblem(const IProcessBlock& block, const char* source,
                                   std::initializer_list<std::string> arguments)
{
    if (m_context.result.problems.size() < MaxProblems)
        m_context.result.problems.push_back(problemText(
            QT_TRANSLATE_NOOP("codegen", "序列“%1”的步骤“%2”: %3"),
            {m_sequence.source->info.name, block.name, problemText(source, arguments)}));
}

} // namespace codegen
