#include "standalone/codegen/SequenceGenerator.h"

#include "model/blocks/StatementProcessBlock.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/user_texts.h"
#include "standalone/codegen/variable_code.h"

#include <algorithm>

namespace codegen {

SequenceGenerator::SequenceGenerator(GenerationContext& context, const PlannedSequence& sequence)
    : m_context(context), m_sequence(sequence), m_file(context.result.files.size()),
      m_owner(static_cast<int>(context.result.owners.size())), m_functions(m_file, m_functionLines),
      m_writer(m_file, m_lines)
{
    const bool isApplet = sequence.group->templateId.empty();
    context.result.files.push_back({sequence.unit() + ".cpp", std::string(), true});
    context.result.owners.push_back({sequence.title,
                                     isApplet ? sequence.source->info.id : std::string(),
                                     std::string(), std::string()});
    // The inner ones hide the outer ones.
    for (const auto* list : {&context.source.globalVariables, &sequence.group->variables,
                             &sequence.source->variables}) {
        for (const processVariable& variable : *list)
            m_names.variables[variable.name] = kindOfType(variable.type);
    }
    m_names.functions = context.functions;
}

void SequenceGenerator::generate()
{
    std::vector<const ForProcessBlock*> around;
    if (!m_sequence.jumpTargets.empty()) {
        for (const Blocks& flow : m_sequence.source->flows)
            findLoopsWithTargets(flow, around);
    }
    disown();
    if (canBeParted())
        generateInParts();
    else
        generateFunction();
    assembleUnit();
}

void SequenceGenerator::generateFunction()
{
    m_writer.line("void " + m_sequence.function + "()");
    m_writer.open("");
    generateVariables();
    for (const auto& [name, begin] : m_loopVariables)
        m_writer.line("s32 " + name + " = " + std::to_string(begin) + ';');
    for (std::size_t flow = 0; flow < m_sequence.source->flows.size(); ++flow) {
        m_writer.comment(flowTitle(flow));
        generateSiblings(m_sequence.source->flows[flow], false);
        disown();
    }
    m_writer.close();
}

void SequenceGenerator::generateVariables()
{
    for (const processVariable& variable : m_sequence.source->variables) {
        const VariableCode code = variableCode(variable);
        if (!code.problem.empty()) {
            CodePlace place;
            place.owner = m_context.result.owners[static_cast<std::size_t>(m_owner)];
            m_context.result.problems.push_back({place, code.problem});
        }
        const std::string removal = macroRemoval(variable.name);
        if (!removal.empty())
            m_writer.line(removal);
        for (const std::string& line : code.lines)
            m_writer.line(line);
    }
}

/// A statement's code without the functions that it defines: these go before the sequence, and
/// their heads into the shared header.
std::string SequenceGenerator::takeFunctions(const StatementProcessBlock& block)
{
    const std::vector<FunctionDefinition> functions = functionsIn(block.customCode());
    std::vector<std::string>& heads = m_context.heads[m_sequence.group];
    for (const FunctionDefinition& function : functions) {
        if (std::find(heads.begin(), heads.end(), function.head) != heads.end()) {
            addProblem(block, QT_TRANSLATE_NOOP("codegen", "函数“%1”已在别处定义"), {function.name},
                       user_text::Statement, function.line);
            continue;
        }
        heads.push_back(function.head);
        own(block);
        m_functions.setOwner(m_owners.at(&block));
        m_functions.comment(block.name + "  " + block.uuid);
        const std::vector<std::string> macros = macrosIn(function.code);
        keepMacros(m_functions, macros);
        m_functions.userCode(function.code, user_text::Statement, function.line);
        restoreMacros(m_functions, macros);
        m_functions.blankLine();
    }
    return withoutFunctions(block.customCode(), functions);
}

void SequenceGenerator::writeHead(CodeWriter& writer) const
{
    const SequenceInfo& info = m_sequence.source->info;
    writer.comment("由流程编辑器生成, 手工修改会在下次编译时丢失。");
    writer.comment("序列: " + m_sequence.title + "  " + info.id);
    writer.line(std::string("#include \"") + SharedHeaderName + '"');
    writer.blankLine();

    writer.line("namespace rt {");
    writer.line("extern const u32 first_of_" + m_sequence.unit() + "; // 本序列第一个步骤的编号");
    std::map<std::string, std::vector<const PlannedSequence*>> callees;
    for (const PlannedSequence* sequence : m_callees) {
        callees[sequence->space].push_back(sequence);
        writer.line("extern const u32 index_of_" + sequence->unit() + ';');
    }
    writer.line("} // namespace rt");
    writer.blankLine();
    writer.line("namespace applet {");
    const auto declare = [&writer](const std::vector<const PlannedSequence*>& sequences) {
        for (const PlannedSequence* sequence : sequences)
            writer.line("void " + sequence->function + "();");
    };
    for (const auto& [space, sequences] : callees) {
        if (space == m_sequence.space)
            continue;
        writer.line("namespace " + space + " {");
        declare(sequences);
        writer.line("} // namespace " + space);
    }
    writer.line("namespace " + m_sequence.space + " {");
    writer.blankLine();
    if (callees.count(m_sequence.space)) {
        declare(callees[m_sequence.space]);
        writer.blankLine();
    }
    for (const std::string& file : m_includes)
        writer.line("#include \"" + file + '"');
    if (!m_includes.empty())
        writer.blankLine();
}

void SequenceGenerator::assembleUnit()
{
    std::vector<LineRange> noLines;
    CodeWriter head(m_file, noLines);
    writeHead(head);
    const auto append = [this](const std::vector<LineRange>& lines, int offset) {
        for (LineRange range : lines) {
            range.firstLine += offset;
            m_context.result.lines.push_back(range);
        }
    };
    const int headLines = head.lineNumber() - 1;
    append(m_functionLines, headLines);
    append(m_lines, headLines + m_functions.lineNumber() - 1);
    m_context.result.files[m_file].text = head.text() + m_functions.text() + m_writer.text() +
                                          "\n} // namespace " + m_sequence.space +
                                          "\n} // namespace applet\n";
}

} // namespace codegen
