#include "standalone/codegen/SequenceGenerator.h"

#include "model/process_blocks.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/user_texts.h"

namespace codegen {

/// Statements before, body, statements after and the condition of what follows share one scope, so
/// that a variable defined in the first is known in the others. A step whose pre-condition fails
/// leads to the next one.
void SequenceGenerator::generateLeaf(const IProcessBlock& block)
{
    if (!block.children.empty())
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "此类步骤不能包含子步骤"));
    const std::string step = beginStep(block);
    const auto* jump = dynamic_cast<const GotoProcessBlock*>(&block);
    const bool isMark =
        (jump || (block.baseType() == BasicStep && block.stepType() == step_type::GotoTag)) &&
        isBlank(block.preStatements) && isBlank(block.postStatements);
    const bool jumps = jump && (!jump->targetUuid.empty() || !jump->targetTag.empty());
    if (isMark && !jumps && postActions(block).empty()) {
        endStep(step);
        return;
    }

    const bool isGuarded = openGuard(block);
    if (!isGuarded)
        m_writer.open("");
    if (!isBlank(block.preStatements)) {
        checkCode(block, block.preStatements, user_text::Before);
        writeUserCode(block.preStatements, user_text::Before);
    }
    const bool isLooped = openStepLoop(block, step);
    generateBody(block, step);
    if (isLooped)
        closeStepLoop(block);
    if (!isBlank(block.postStatements)) {
        checkCode(block, block.postStatements, user_text::After);
        writeUserCode(block.postStatements, user_text::After);
    }
    const bool goesOn = !jumps && postActions(block).empty();
    if (!goesOn) {
        endStep(step);
        generatePostActions(block);
        if (jumps)
            generateJump(jumpTarget(m_sequence, *jump), block);
    }
    endMacros();
    m_writer.close();
    if (goesOn)
        endStep(step);
    else if (isGuarded)
        m_writer.line("else if (!rt::step_end(" + step + ")) return;");
}

/// The header of a step's own loop; false if it has none.
bool SequenceGenerator::openStepLoop(const IProcessBlock& block, const std::string& step)
{
    constexpr int FixedCount = 1;
    constexpr int CustomLoop = 2;
    if (block.loopType != FixedCount && block.loopType != CustomLoop)
        return false;
    m_writer.open("");
    m_writer.line("const rt::own_turns turns_of_this_step;");
    if (block.loopType == FixedCount) {
        const std::string name = block.loopVariable.empty() ? "turn" : block.loopVariable;
        if (!isIdentifier(name))
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "“%1”不能用作循环变量名"), {name});
        const std::string count = std::to_string(block.loopCount);
        m_writer.open("for (" + std::string(isKnownVariable(name) ? "" : "s32 ") + name +
                          " = 0; rt::running() && " + name + " < " + count + "; ++" + name + ")",
                      user_text::StepLoop);
        m_writer.line("rt::step_turn(" + step + ", " + name + ", 0, " + count + ");");
    } else {
        for (const std::string* text : {&block.loopInit, &block.loopCondition, &block.loopStep})
            checkCode(block, *text, user_text::StepLoop);
        const std::string test = isBlank(block.loopCondition)
                                     ? std::string()
                                     : " && (" + expressionText(block.loopCondition) + ")";
        m_writer.open("for (" + expressionText(block.loopInit) + "; rt::running()" + test + "; " +
                          expressionText(block.loopStep) + ")",
                      user_text::StepLoop);
    }
    m_writer.line("++rt::turn;");
    return true;
}

/// Each turn's result goes to the log if the step asks for it.
void SequenceGenerator::closeStepLoop(const IProcessBlock& block)
{
    if (block.loopResultInReport)
        m_writer.line("rt::log_turn(" + nameLiteral(block.name) + ");");
    m_writer.close();
    m_writer.close();
}

void SequenceGenerator::generateBody(const IProcessBlock& block, const std::string& step)
{
    if (block.baseType() == DiagnosticStep) {
        generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "诊断步骤"));
        return;
    }
    if (const auto* statement = dynamic_cast<const StatementProcessBlock*>(&block)) {
        generateStatement(*statement);
    } else if (const auto* expression = dynamic_cast<const ExpressionProcessBlock*>(&block)) {
        generateExpression(*expression);
    } else if (const auto* api = dynamic_cast<const ApiProcessBlock*>(&block)) {
        generateApi(*api);
    } else if (const auto* call = dynamic_cast<const SequenceProcessBlock*>(&block)) {
        generateCall(*call);
    } else if (const auto* delay = dynamic_cast<const DelayProcessBlock*>(&block)) {
        m_writer.line("rt::step_delay(" + step + ", " + std::to_string(delay->delay) + ");");
    } else {
        switch (block.stepType()) {
        case step_type::Goto:
        case step_type::GotoTag:
            break;
        case step_type::PopupWindow:
            generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "弹窗"));
            break;
        case step_type::SendMessage:
            generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "发送CAN"));
            break;
        case step_type::RecvMessage:
            generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "接收CAN"));
            break;
        case step_type::Buzz:
            generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "蜂鸣器"));
            break;
        default:
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "未知的步骤类型 %1"),
                       {std::to_string(block.stepType())});
        }
    }
}

void SequenceGenerator::generateStatement(const StatementProcessBlock& block)
{
    checkCode(block, block.customCode(), user_text::Statement);
    const std::string code = takeFunctions(block);
    if (!block.getSplitFile()) {
        if (!code.empty())
            writeUserCode(code, user_text::Statement);
        return;
    }
    // A file of its own is a function of its own, included where only the variables of the applet
    // and the global ones are known.
    const std::string function =
        "statement_" + m_sequence.unit() + '_' + std::to_string(m_sequence.steps.at(block.uuid));
    CodeWriter writer(m_context.result.files.size(), m_context.result.lines);
    writer.setOwner(m_owners.at(&block));
    writer.comment(block.name + "  " + block.uuid);
    writer.line("static void " + function + "()");
    writer.open("");
    const std::vector<std::string> macros = macrosIn(code);
    keepMacros(writer, macros);
    writer.userCode(code, user_text::Statement);
    restoreMacros(writer, macros);
    writer.close();
    m_context.result.files.push_back({function + ".inc", writer.text(), false});
    m_includes.push_back(function + ".inc");
    m_writer.line(function + "();");
}

void SequenceGenerator::generateExpression(const ExpressionProcessBlock& block)
{
    checkCode(block, block.leftValue, user_text::Expression);
    checkCode(block, block.rightExpression, user_text::Expression);
    const std::string left = expressionText(block.leftValue);
    const std::string right = expressionText(block.rightExpression);
    if (left.empty()) {
        m_writer.line(right + ";", user_text::Expression);
        return;
    }
    const ValueKind leftKind = kindOf(block, left);
    const ValueKind rightKind = kindOf(block, right);
    if (right.empty())
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "表达式缺少右值"));
    else if (differ(leftKind, rightKind))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "类型不符: “%1”是%2, “%3”是%4"),
                   {left, kindText(leftKind), right, kindText(rightKind)}, user_text::Expression,
                   1);
    m_writer.line(left + " = " + right + ";", user_text::Expression);
}

void SequenceGenerator::generateApi(const ApiProcessBlock& block)
{
    if (isBlank(block.callText)) {
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "未选择函数"));
        return;
    }
    checkApi(block);
    std::string arguments;
    for (const ApiProcessBlock::Parameter& parameter : block.parameters()) {
        checkCode(block, parameter.value, user_text::Call);
        arguments += (arguments.empty() ? "" : ", ") + expressionText(parameter.value);
    }
    // The call text names the types in the places of the arguments.
    std::string call = expressionText(block.callText);
    const std::size_t bracket = call.find('(');
    if (bracket == std::string::npos || !block.parameters().empty())
        call = call.substr(0, bracket) + '(' + arguments + ')';
    const std::string target = expressionText(block.returnVariable);
    m_writer.line((target.empty() ? "" : target + " = ") + call + ";", user_text::Call);
}

/// Number and types of the arguments and the result, as far as they are known.
void SequenceGenerator::checkApi(const ApiProcessBlock& block)
{
    const std::string name = expressionText(block.callText.substr(0, block.callText.find('(')));
    const auto known = m_names.functions.find(name);
    const FunctionSignature* function =
        known == m_names.functions.end() || block.userFunction ? nullptr : known->second;
    const std::size_t count = block.parameters().size();
    // Without parameters the call stands as it was typed.
    if (function && count > 0 && function->parameters.size() != count)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数“%1”需要 %2 个参数, 实际为 %3 个"),
                   {name, std::to_string(function->parameters.size()), std::to_string(count)});
    for (std::size_t i = 0; i < count; ++i) {
        const ApiProcessBlock::Parameter& parameter = block.parameters()[i];
        if (isBlank(parameter.value)) {
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数的第 %1 个参数缺少值"),
                       {std::to_string(i + 1)});
            continue;
        }
        const ValueKind wanted = kindOfType(parameter.type);
        const ValueKind given = kindOf(block, parameter.value);
        if (differ(wanted, given))
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数的第 %1 个参数应为%2, “%3”是%4"),
                       {std::to_string(i + 1), kindText(wanted), parameter.value, kindText(given)});
    }
    if (isBlank(block.returnVariable))
        return;
    const DrelVarType type = function ? function->returnType : varTypeFromKeyword(block.returnType);
    const ValueKind target = kindOf(block, block.returnVariable);
    if (type == DrelVoid && (function || block.returnType == "void"))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数“%1”没有返回值"), {name});
    else if (differ(target, kindOfType(type)))
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "类型不符: “%1”是%2, “%3”是%4"),
                   {block.returnVariable, kindText(target), name, kindText(kindOfType(type))});
}

void SequenceGenerator::generateCall(const SequenceProcessBlock& block)
{
    const PlannedSequence* callee = m_context.plan.callee(m_sequence, block);
    if (block.sourceKind == SequenceProcessBlock::NothingChosen)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "未选择要调用的序列"));
    else if (!callee)
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "找不到要调用的序列“%1”"),
                   {block.sourceKind == SequenceProcessBlock::AppletSequence ? block.sequenceName
                                                                             : block.templateName});
    else
        m_writer.line(callOf(*callee));
}

/// A step that this runtime has no device or window for says so in the log.
void SequenceGenerator::generateUnsupported(const IProcessBlock& block, const char* kind)
{
    const std::string line =
        problemText(QT_TRANSLATE_NOOP("codegen", "步骤“%1”(%2)未执行: 此运行时暂不支持该类步骤"),
                    {block.name, problemText(kind)});
    m_writer.line("log_warning(\"%s\", " + stringLiteral(line) + ");");
}

} // namespace codegen
