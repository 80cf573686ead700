#include "standalone/codegen/CodeWriter.h"
#include "standalone/codegen/SequenceGenerator.h"
#include "standalone/codegen/SequencePlan.h"
#include "standalone/codegen/applet_source.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/variable_code.h"

#include "model/type_tables.h"

namespace codegen {

const char* const SharedHeaderName = "a_capplet.h";

namespace {

const char* const warning = "由流程编辑器生成, 手工修改会在下次编译时丢失。";

/// The variables of a scope: what the units are told of them, and what they are.
void writeVariables(const char* title, const std::vector<processVariable>& variables,
                    CodeWriter& header, CodeWriter& module, GeneratedCode& result)
{
    if (variables.empty())
        return;
    header.comment(title);
    module.comment(title);
    for (const processVariable& variable : variables) {
        const VariableCode code = variableCode(variable);
        if (!code.problem.empty()) {
            result.problems.push_back({{}, code.problem});
            continue;
        }
        const std::string removal = macroRemoval(variable.name);
        if (!removal.empty())
            header.line(removal);
        header.line("extern " + code.declaration + ';');
        if (!variable.description.empty())
            module.comment(variable.description);
        for (const std::string& line : code.lines)
            module.line(line);
    }
    header.blankLine();
    module.blankLine();
}

void writeDeclarations(const GenerationContext& context, CodeWriter& header, CodeWriter& module)
{
    for (CodeWriter* writer : {&header, &module}) {
        writer->line("namespace applet {");
        writer->blankLine();
    }
    writeVariables("全局变量", context.source.globalVariables, header, module, context.result);
    for (const SequenceGroup* group : context.plan.groups()) {
        const std::string space = context.plan.spaceOf(group);
        for (CodeWriter* writer : {&header, &module}) {
            writer->line("namespace " + space + " {");
            writer->blankLine();
        }
        writeVariables(group->templateId.empty() ? "流程变量" : "模板的流程变量", group->variables,
                       header, module, context.result);
        const auto heads = context.heads.find(group);
        if (heads != context.heads.end() && !heads->second.empty()) {
            header.comment("语句中定义的函数");
            for (const std::string& head : heads->second)
                header.line(head + ';');
            header.blankLine();
        }
        header.line("} // namespace " + space);
        for (const PlannedSequence& sequence : context.plan.sequences()) {
            if (sequence.group == group)
                module.line("void " + sequence.function + "();");
        }
        module.blankLine();
        module.line("} // namespace " + space);
    }
    for (CodeWriter* writer : {&header, &module})
        writer->line("} // namespace applet");
}

/// The numbers that the units leave open, so that a change of one doesn't change the others.
void writeNumbers(const SequencePlan& plan, CodeWriter& writer)
{
    writer.line("namespace rt {");
    for (const PlannedSequence& sequence : plan.sequences()) {
        const auto number = [&](const char* name, std::uint32_t value) {
            writer.line("extern const u32 " + (name + sequence.unit()) + " = " +
                        std::to_string(value) + ';');
        };
        number("index_of_", sequence.index);
        number("first_of_", sequence.firstStep);
    }
    writer.line("} // namespace rt");
    writer.blankLine();
}

/// What the process that loads the module asks it for.
void writeModule(const SequencePlan& plan, CodeWriter& writer)
{
    writer.line("static const applet_sequence sequences[] = {");
    writer.indent();
    for (const PlannedSequence& sequence : plan.sequences()) {
        const std::string& owner = sequence.group->templateId;
        writer.line('{' + stringLiteral(sequence.source->info.id) + ", " +
                    nameLiteral(sequence.title) + ", " +
                    (owner.empty() ? "0" : stringLiteral(owner)) + ", applet::" + sequence.space +
                    "::" + sequence.function + "},");
    }
    writer.outdent();
    writer.line("};");
    writer.blankLine();
    writer.line("static const applet_step steps[] = {");
    writer.indent();
    for (const PlannedStep& step : plan.steps())
        writer.line('{' + std::to_string(step.sequence) + ", " + stringLiteral(step.uuid) + ", " +
                    nameLiteral(step.name) + ", " + std::to_string(step.turnStep) + "},");
    writer.line("{0, 0, 0, 0}");
    writer.outdent();
    writer.line("};");
    writer.blankLine();
    writer.line("static const applet_module module_description = {APPLET_RUNTIME_VERSION, " +
                std::to_string(plan.sequences().size()) + ", sequences, " +
                std::to_string(plan.steps().size()) + ", steps};");
    writer.blankLine();
    writer.line("extern \"C\" APPLET_EXPORT const applet_module* applet_module_entry(");
    writer.line("    const applet_runtime_api* api)");
    writer.open("");
    writer.line("rt::api = api;");
    writer.line("return &module_description;");
    writer.close();
}

} // namespace

GeneratedCode generate(const AppletSource& source)
{
    GeneratedCode result;
    const SequencePlan plan(source);
    if (plan.sequences().empty()) {
        result.problems.push_back(
            {{}, problemText(QT_TRANSLATE_NOOP("codegen", "找不到要编译的序列"))});
        return result;
    }
    result.stepCount = plan.steps().size();
    result.files.push_back({cappletSourceName, std::string(), true});
    result.files.push_back({SharedHeaderName, std::string(), false});

    GenerationContext context{source, plan, result, {}, {}};
    for (const FunctionSignature& function : source.functions)
        context.functions.emplace(function.name, &function);
    for (const PlannedSequence& sequence : plan.sequences())
        SequenceGenerator(context, sequence).generate();

    std::vector<LineRange> noLines;
    CodeWriter header(1, noLines);
    header.comment(warning);
    header.line("#pragma once");
    header.blankLine();
    header.line("#include \"applet_values.h\"");
    header.blankLine();
    CodeWriter module(0, noLines);
    module.comment(warning);
    module.comment("小程序: " + source.applet.name);
    module.line(std::string("#include \"") + SharedHeaderName + '"');
    module.blankLine();
    writeDeclarations(context, header, module);
    module.blankLine();
    writeNumbers(plan, module);
    writeModule(plan, module);
    result.files[0].text = module.text();
    result.files[1].text = header.text();
    return result;
}

CodePlace placeOf(const GeneratedCode& code, const std::string& fileName, int line)
{
    std::size_t file = 0;
    while (file < code.files.size() && code.files[file].name != fileName)
        ++file;
    const LineRange* range = nullptr;
    for (const LineRange& candidate : code.lines) {
        if (candidate.file == file && candidate.firstLine <= line &&
            (!range || range->firstLine <= candidate.firstLine))
            range = &candidate;
    }
    CodePlace place;
    if (!range || range->owner < 0)
        return place;
    place.owner = code.owners[static_cast<std::size_t>(range->owner)];
    if (range->text) {
        place.text = problemText(range->text);
        place.line = range->textLine + line - range->firstLine;
    }
    return place;
}

} // namespace codegen
