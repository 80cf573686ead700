#include "standalone/codegen/SequenceGenerator.h"

#include "model/process_blocks.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/user_texts.h"

#include <algorithm>
#include <unordered_set>

namespace codegen {

namespace {

constexpr std::size_t MaxProblems = 100;

} // namespace

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
    disown();
    m_writer.comment("已禁用: " + block.name + "  " + block.uuid);
}

/// The brace of a pre-condition; false if there is none.
bool SequenceGenerator::openGuard(const IProcessBlock& block)
{
    if (isBlank(block.preCondition))
        return false;
    checkCode(block, block.preCondition, user_text::PreCondition);
    m_writer.open("if (" + expressionText(block.preCondition) + ")", user_text::PreCondition);
    return true;
}

/// Statements around a step with children have a scope of their own.
void SequenceGenerator::generateStatements(const std::string& code, const char* userText)
{
    if (isBlank(code))
        return;
    m_writer.open("");
    writeUserCode(code, userText);
    endMacros();
    m_writer.close();
}

/// The chain from an if to the last of its branches; returns the index behind it.
std::size_t SequenceGenerator::generateIf(const Blocks& blocks, std::size_t at, bool inLoop)
{
    const IProcessBlock& first = *blocks[at];
    checkCode(first, first.preStatements, user_text::Before);
    checkCode(first, first.postStatements, user_text::After);
    const std::string firstStep = beginStep(first);
    const bool isGuarded = openGuard(first);
    generateStatements(first.preStatements, user_text::Before);
    m_writer.open("if (rt::step_test(" + firstStep + ", " + condition(first) + "))",
                  user_text::Condition);
    generateSiblings(first.children, inLoop);
    own(first);
    endStep(firstStep);

    bool hasElse = false;
    std::size_t i = at + 1;
    for (; i < blocks.size() && isBranch(*blocks[i]); ++i) {
        if (isDisabled(*blocks[i])) {
            generateDisabled(*blocks[i]);
            continue;
        }
        if (hasElse)
            addProblem(*blocks[i], QT_TRANSLATE_NOOP("codegen", "else 之后不能再有分支"));
        hasElse |= generateBranch(*blocks[i], inLoop);
    }
    own(first);
    m_writer.close();
    generateStatements(first.postStatements, user_text::After);
    if (isGuarded) {
        m_writer.close("} else {");
        m_writer.indent();
        endStep(firstStep);
        m_writer.close();
    }
    generatePostActions(first);
    return i;
}

/// Whether it is an else.
bool SequenceGenerator::generateBranch(const IProcessBlock& branch, bool inLoop)
{
    own(branch);
    if (m_sequence.jumpTargets.count(branch.uuid))
        addProblem(branch, QT_TRANSLATE_NOOP("codegen", "分支不能作为跳转目标"));
    const std::string step = stepNumber(branch);
    m_writer.comment(branch.name + "  " + branch.uuid);
    const bool isElse = branch.stepType() == step_type::Else;
    if (isElse) {
        m_writer.close("} else {");
        m_writer.indent();
        m_writer.line("if (!rt::step_begin(" + step + ")) return;");
    } else {
        m_writer.close("} else if (rt::step_begin(" + step + ") && rt::step_test(" + step + ", " +
                           condition(branch) + ")) {",
                       user_text::Condition);
        m_writer.indent();
    }
    generateSiblings(branch.children, inLoop);
    own(branch);
    endStep(step);
    return isElse;
}

void SequenceGenerator::generateLoop(const IProcessBlock& block)
{
    checkCode(block, block.preStatements, user_text::Before);
    checkCode(block, block.postStatements, user_text::After);
    const std::string step = beginStep(block);
    const bool isGuarded = openGuard(block);
    generateStatements(block.preStatements, user_text::Before);
    if (const auto* loop = dynamic_cast<const ForProcessBlock*>(&block)) {
        generateFor(*loop, step);
    } else {
        const std::string header = "while (rt::running() && (" + condition(block) + "))";
        const bool testFirst = block.stepType() == step_type::While;
        if (testFirst)
            m_writer.open(header, user_text::Condition);
        else
            m_writer.open("do");
        generateSiblings(block.children, true);
        own(block);
        if (testFirst)
            m_writer.close();
        else
            m_writer.close("} " + header + ";", user_text::Condition);
    }
    generateStatements(block.postStatements, user_text::After);
    if (isGuarded)
        m_writer.close();
    endStep(step);
    generatePostActions(block);
}

void SequenceGenerator::generateFor(const ForProcessBlock& block, const std::string& step)
{
    if (block.getCustom()) {
        for (const std::string* text : {&block.getFun1(), &block.getFun2(), &block.getFun3()})
            checkCode(block, *text, user_text::LoopHeader);
        const std::string test = isBlank(block.getFun2())
                                     ? std::string()
                                     : " && (" + expressionText(block.getFun2()) + ")";
        m_writer.open("for (" + expressionText(block.getFun1()) + "; rt::running()" + test + "; " +
                          expressionText(block.getFun3()) + ")",
                      user_text::LoopHeader);
        m_openLoops.push_back(&block);
        const auto hidden = hideNames(block.getFun1());
        generateSiblings(block.children, true);
        showNames(hidden);
        m_openLoops.pop_back();
        own(block);
        m_writer.close();
        return;
    }

    const int begin = block.getBeginValue();
    const int end = block.getEndValue();
    const int increment = block.getStepValue();
    const bool isNameless = block.getVariableName().empty();
    const std::string name = counterOf(block);
    if (!isIdentifier(name))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "“%1”不能用作循环变量名"), {name});
    if (increment == 0)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "循环步长不能为 0"));

    const bool isDefinedHere = (isNameless || block.isNeedDefine() || !isKnownVariable(name)) &&
                               !m_loopVariables.count(name);
    m_writer.open("");
    if (isDefinedHere)
        m_writer.line("s32 " + name + ";");
    const std::string first = std::to_string(begin);
    const std::string last = std::to_string(end);
    m_writer.open("for (" + name + " = " + first + "; rt::running() && " + name +
                      (increment < 0 ? " > " : " < ") + last + "; " + name +
                      " += " + std::to_string(increment) + ")",
                  user_text::LoopHeader);
    m_writer.line("rt::step_turn(" + step + ", " + name + ", " + first + ", " + last + ");");
    const auto hidden = hideNames(isDefinedHere ? name : std::string());
    generateSiblings(block.children, true);
    showNames(hidden);
    own(block);
    m_writer.close();
    m_writer.close();
}

/// The name of a fixed loop's variable.
std::string SequenceGenerator::counterOf(const ForProcessBlock& block) const
{
    return block.getVariableName().empty()
               ? "turn_" + std::to_string(m_sequence.steps.at(block.uuid))
               : block.getVariableName();
}

void SequenceGenerator::generateJumpOut(const IProcessBlock& block, bool inLoop)
{
    const bool isBreak = block.stepType() == step_type::Break;
    const std::string word = isBreak ? "break" : "continue";
    if (!inLoop)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "%1 不在循环之内"), {word});
    endStep(beginStep(block));
    const bool isGuarded = openGuard(block);
    m_writer.line(word + ";");
    if (isGuarded)
        m_writer.close();
}

void SequenceGenerator::generateClosing(const IProcessBlock& block)
{
    endStep(beginStep(block));
}

/// The number that reports name a step by.
std::string SequenceGenerator::stepNumber(const IProcessBlock& block) const
{
    return "rt::first_of_" + m_sequence.unit() + " + " +
           std::to_string(m_sequence.steps.at(block.uuid));
}

/// Writes what stands before the work of any step, and returns its number as text.
std::string SequenceGenerator::beginStep(const IProcessBlock& block)
{
    const std::string step = stepNumber(block);
    m_macros = Macros();
    own(block);
    m_writer.comment(block.name + "  " + block.uuid);
    if (pauses(block))
        addWarning(block, QT_TRANSLATE_NOOP("codegen", "“暂停”暂未开放, 按“跳转到下一步”执行"));
    if (m_sequence.jumpTargets.count(block.uuid))
        m_writer.label("step_" + std::to_string(m_sequence.steps.at(block.uuid)));
    m_writer.line("if (!rt::step_begin(" + step + ")) return;");
    return step;
}

void SequenceGenerator::endStep(const std::string& step)
{
    m_writer.line("if (!rt::step_end(" + step + ")) return;");
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
    checkCode(block, block.getFun1(), user_text::Condition);
    checkCode(block, block.getFun2(), user_text::Condition);
    const std::string left = isBlank(block.getFun1()) ? "0" : operandText(block.getFun1());
    const std::string right = isBlank(block.getFun2()) ? "0" : operandText(block.getFun2());
    const ValueKind leftKind = kindOf(step, left);
    const ValueKind rightKind = kindOf(step, right);
    if (differ(leftKind, rightKind))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "类型不符: “%1”是%2, “%3”是%4"),
                   {left, kindText(leftKind), right, kindText(rightKind)}, user_text::Condition, 1);
    const std::string& comparison = block.getOperator();
    if (block.getOperatorIsArray())
        return (comparison == "!=" ? "!rt::arrays_equal(" : "rt::arrays_equal(") + left + ", " +
               right + ", " + std::to_string(block.getArraySize()) + ")";
    return left + ' ' + (comparison.empty() ? "==" : comparison) + ' ' + right;
}

/// What a step's own texts may define hides what is known.
ValueKind SequenceGenerator::kindOf(const IProcessBlock& block, const std::string& expression) const
{
    constexpr int CustomLoop = 2;
    const bool mayDefine = !isBlank(block.preStatements) || block.loopType == CustomLoop;
    return mayDefine ? ValueKind::Unknown : kindOfExpression(expression, m_names);
}

/// Forgets the kinds of the variables that a text names, since it may define others of their names.
std::vector<std::pair<std::string, ValueKind>> SequenceGenerator::hideNames(const std::string& text)
{
    std::vector<std::pair<std::string, ValueKind>> hidden;
    for (const std::string& word : wordsIn(text)) {
        const auto known = m_names.variables.find(word);
        if (known == m_names.variables.end())
            continue;
        hidden.emplace_back(*known);
        known->second = ValueKind::Unknown;
    }
    return hidden;
}

void SequenceGenerator::showNames(const std::vector<std::pair<std::string, ValueKind>>& hidden)
{
    // A name may stand in a text more than once: the first entry has its kind.
    for (auto name = hidden.rbegin(); name != hidden.rend(); ++name)
        m_names.variables[name->first] = name->second;
}

/// From here on lines belong to this step.
void SequenceGenerator::own(const IProcessBlock& block)
{
    const auto found = m_owners.find(&block);
    if (found != m_owners.end()) {
        m_writer.setOwner(found->second);
        return;
    }
    const int owner = static_cast<int>(m_context.result.owners.size());
    CodeOwner record = m_context.result.owners[static_cast<std::size_t>(m_owner)];
    record.step = block.name;
    record.stepId = block.uuid;
    m_context.result.owners.push_back(std::move(record));
    m_owners.emplace(&block, owner);
    m_writer.setOwner(owner);
}

/// Statements on lines of their own. What macros they define goes no further than their step, and
/// what the generator's own lines are made of no further than they.
void SequenceGenerator::writeUserCode(const std::string& code, const char* userText)
{
    std::vector<std::string> names = macrosIn(code);
    const std::vector<std::string> reserved = reservedAmong(names);
    std::unordered_set<std::string> known(reserved.begin(), reserved.end());
    known.insert(m_keptMacros.begin(), m_keptMacros.end());
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&known](const std::string& name) { return known.count(name) > 0; }),
                names.end());
    keepMacros(m_writer, names);
    keepMacros(m_writer, reserved);
    m_keptMacros.insert(m_keptMacros.end(), names.begin(), names.end());
    m_writer.userCode(code, userText);
    restoreMacros(m_writer, reserved);
}

void SequenceGenerator::endMacros()
{
    restoreMacros(m_writer, m_keptMacros);
    m_keptMacros.clear();
    m_macros = Macros();
}

/// What a compiler would complain of somewhere else is told here.
void SequenceGenerator::checkCode(const IProcessBlock& block, const std::string& code,
                                  const char* userText)
{
    const CodeFault fault = m_macros.take(code);
    if (hasDirectives(code) && !user_text::isStatements(userText))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "此处不能使用预处理指令"), {}, userText, 1);
    else if (fault.words)
        addProblem(block, fault.words, {}, userText, fault.line);
}

void SequenceGenerator::addProblem(const IProcessBlock& block, const char* source,
                                   std::initializer_list<std::string> arguments,
                                   const char* userText, int line)
{
    if (m_context.result.problems.size() >= MaxProblems)
        return;
    Problem problem = problemOf(block, problemText(source, arguments));
    problem.place.text = userText ? problemText(userText) : std::string();
    problem.place.line = line;
    m_context.result.problems.push_back(std::move(problem));
}

void SequenceGenerator::addWarning(const IProcessBlock& block, const char* source)
{
    if (m_context.result.warnings.size() < MaxProblems)
        m_context.result.warnings.push_back(problemOf(block, problemText(source)));
}

Problem SequenceGenerator::problemOf(const IProcessBlock& block, std::string words) const
{
    Problem problem;
    problem.place.owner = m_context.result.owners[static_cast<std::size_t>(m_owner)];
    problem.place.owner.step = block.name;
    problem.place.owner.stepId = block.uuid;
    problem.words = std::move(words);
    return problem;
}

} // namespace codegen
