#include "standalone/codegen/SequenceGenerator.h"

#include "model/process_blocks.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"

#include "standalone/codegen/problem_text.h"

namespace codegen {

/// Statements before, body and statements after share one scope, so that a variable defined in the
/// first is known in the others.
void SequenceGenerator::generateLeaf(const IProcessBlock& block)
{
    if (!block.children.empty())
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "此类步骤不能包含子步骤"));
    const std::string step = beginStep(block);
    const std::string guard = expressionText(block.preCondition);
    const bool isMarkOnly =
        block.baseType() == BasicStep &&
        (block.stepType() == step_type::Goto || block.stepType() == step_type::GotoTag) &&
        isBlank(block.preStatements) && isBlank(block.postStatements);
    if (!isMarkOnly) {
        m_writer.open(guard.empty() ? "" : "if (" + guard + ")");
        if (!isBlank(block.preStatements))
            m_writer.userCode(block.preStatements);
        const bool isLooped = openStepLoop(block, step);
        generateBody(block, step);
        if (isLooped)
            m_writer.close();
        if (!isBlank(block.postStatements))
            m_writer.userCode(block.postStatements);
        m_writer.close();
    }
    endStep(step);

    if (const auto* jump = dynamic_cast<const GotoProcessBlock*>(&block)) {
        if (!jump->targetUuid.empty() || !jump->targetTag.empty()) {
            if (!guard.empty())
                m_writer.open("if (" + guard + ")");
            generateJump(jumpTarget(m_sequence, *jump), block);
            if (!guard.empty())
                m_writer.close();
        }
        return;
    }
    generatePostActions(block);
}

/// The header of a step's own loop; false if it has none.
bool SequenceGenerator::openStepLoop(const IProcessBlock& block, const std::string& step)
{
    constexpr int FixedCount = 1;
    constexpr int CustomLoop = 2;
    if (block.loopType == FixedCount) {
        const std::string name = block.loopVariable.empty() ? "turn_" + step : block.loopVariable;
        if (!isIdentifier(name))
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "“%1”不能用作循环变量名"), {name});
        const std::string count = std::to_string(block.loopCount);
        m_writer.open("for (" + std::string(isKnownVariable(name) ? "" : "s32 ") + name +
                      " = 0; rt::running() && " + name + " < " + count + "; ++" + name + ")");
        m_writer.line("rt::step_turn(" + step + ", " + name + ", 0, " + count + ");");
        return true;
    }
    if (block.loopType == CustomLoop) {
        const std::string test = isBlank(block.loopCondition)
                                     ? std::string()
                                     : " && (" + expressionText(block.loopCondition) + ")";
        m_writer.open("for (" + expressionText(block.loopInit) + "; rt::running()" + test + "; " +
                      expressionText(block.loopStep) + ")");
        return true;
    }
    return false;
}

void SequenceGenerator::generateBody(const IProcessBlock& block, const std::string& step)
{
    if (block.baseType() == DiagnosticStep) {
        generateUnsupported(block, QT_TRANSLATE_NOOP("codegen", "诊断步骤"));
        return;
    }
    if (const auto* statement = dynamic_cast<const StatementProcessBlock*>(&block)) {
        generateStatement(*statement, step);
    } else if (const auto* expression = dynamic_cast<const ExpressionProcessBlock*>(&block)) {
        const std::string right = expressionText(expression->rightExpression);
        if (right.empty() && !isBlank(expression->leftValue))
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "表达式缺少右值"));
        else if (isBlank(expression->leftValue))
            m_writer.line(right + ";");
        else
            m_writer.line(expressionText(expression->leftValue) + " = " + right + ";");
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

void SequenceGenerator::generateStatement(const StatementProcessBlock& block,
                                          const std::string& step)
{
    if (!block.getSplitFile()) {
        m_writer.userCode(block.customCode());
        return;
    }
    // A file of its own is a function of its own, included where only the variables of the applet
    // and the global ones are known.
    const std::string function = "statement_" + step;
    const std::size_t file = m_context.result.files.size();
    CodeWriter writer(file, m_context.result.lines);
    writer.setOwner(m_sequence.source->info.name, block.name);
    writer.comment(block.name + "  " + block.uuid);
    writer.line("static void " + function + "()");
    writer.open("");
    writer.userCode(block.customCode());
    writer.close();
    m_context.result.files.push_back({function + ".inc", writer.text()});
    m_statementFiles.push_back(m_context.result.files.back());
    m_writer.line(function + "();");
}

void SequenceGenerator::generateApi(const ApiProcessBlock& block)
{
    if (isBlank(block.callText)) {
        addProblem(block, QT_TRANSLATE_NOOP("codegen", "未选择函数"));
        return;
    }
    std::string arguments;
    for (const ApiProcessBlock::Parameter& parameter : block.parameters()) {
        if (isBlank(parameter.value))
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数参数缺少值"));
        arguments += (arguments.empty() ? "" : ", ") + expressionText(parameter.value);
    }
    // The call text names the types in the places of the arguments.
    std::string call = expressionText(block.callText);
    const std::size_t bracket = call.find('(');
    if (bracket == std::string::npos || !block.parameters().empty())
        call = call.substr(0, bracket) + '(' + arguments + ')';
    const std::string target = expressionText(block.returnVariable);
    m_writer.line((target.empty() ? "" : target + " = ") + call + ";");
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
        m_writer.line("rt::call(" + std::to_string(callee->index) + ", " + callee->space +
                      "::" + callee->function + ");");
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
