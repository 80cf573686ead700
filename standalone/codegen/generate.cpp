#include "standalone/codegen/CodeWriter.h"
#include "standalone/codegen/SequenceGenerator.h"
#include "standalone/codegen/SequencePlan.h"
#include "standalone/codegen/applet_source.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/variable_code.h"

#include "model/type_tables.h"

namespace codegen {

const char* const RuntimeHeaderName = "applet_runtime.h";

namespace {

void writeVariables(const char* title, const std::vector<processVariable>& variables,
                    CodeWriter& writer, GeneratedCode& result)
{
    writer.comment(title);
    for (const processVariable& variable : variables) {
        const VariableCode code = variableCode(variable, true);
        if (!code.problem.empty())
            result.problems.push_back(code.problem);
        for (const std::string& line : code.lines)
            writer.line(line);
    }
    writer.blankLine();
}

/// The functions of all sequences, and by group the files that they include.
using StatementFiles = std::map<const SequenceGroup*, std::vector<std::string>>;
StatementFiles writeSequences(GenerationContext& context, CodeWriter& writer)
{
    StatementFiles files;
    for (const SequenceGroup* group : context.plan.groups()) {
        writer.line("namespace " + context.plan.spaceOf(group) + " {");
        writer.blankLine();
        for (const PlannedSequence& sequence : context.plan.sequences()) {
            if (sequence.group != group)
                continue;
            SequenceGenerator generator(context, sequence, writer);
            generator.generate();
            for (const GeneratedFile& file : generator.statementFiles())
                files[group].push_back(file.name);
        }
        writer.setOwner(std::string(), std::string());
        writer.line("} // namespace " + context.plan.spaceOf(group));
        writer.blankLine();
    }
    return files;
}

void writeDeclarations(const GenerationContext& context, const StatementFiles& files,
                       CodeWriter& writer)
{
    for (const SequenceGroup* group : context.plan.groups()) {
        const std::string space = context.plan.spaceOf(group);
        writer.line("namespace " + space + " {");
        writer.blankLine();
        writeVariables(group->templateId.empty() ? "流程变量" : "模板的流程变量", group->variables,
                       writer, context.result);
        for (const PlannedSequence& sequence : context.plan.sequences()) {
            if (sequence.group == group)
                writer.line("static void " + sequence.function + "();");
        }
        writer.blankLine();
        const auto own = files.find(group);
        if (own != files.end()) {
            for (const std::string& file : own->second)
                writer.line("#include \"" + file + '"');
            writer.blankLine();
        }
        writer.line("} // namespace " + space);
        writer.blankLine();
    }
}

/// What the process that loads the module asks it for.
void writeModule(const SequencePlan& plan, CodeWriter& writer)
{
    writer.line("static const applet_sequence sequences[] = {");
    writer.indent();
    for (const PlannedSequence& sequence : plan.sequences()) {
        const std::string& owner = sequence.group->templateId;
        writer.line('{' + stringLiteral(sequence.source->info.id) + ", " +
                    (owner.empty() ? "0" : stringLiteral(owner)) + ", applet::" + sequence.space +
                    "::" + sequence.function + "},");
    }
    writer.outdent();
    writer.line("};");
    writer.blankLine();
    writer.line("static const applet_step steps[] = {");
    writer.indent();
    for (const PlannedStep& step : plan.steps())
        writer.line('{' + std::to_string(step.sequence) + ", " + stringLiteral(step.uuid) + "},");
    writer.line("{0, 0}");
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
        result.problems.push_back(problemText(QT_TRANSLATE_NOOP("codegen", "找不到要编译的序列")));
        return result;
    }
    result.stepCount = plan.steps().size();
    result.files.push_back({cappletSourceName, std::string()});

    // The functions come last but tell which files are to be included above them.
    GenerationContext context{source, plan, result};
    std::vector<LineRange> bodyLines;
    CodeWriter body(0, bodyLines);
    const StatementFiles files = writeSequences(context, body);
    body.line("} // namespace applet");
    body.blankLine();
    writeModule(plan, body);

    CodeWriter head(0, result.lines);
    head.comment("由流程编辑器生成, 手工修改会在下次编译时丢失。");
    head.comment("小程序: " + source.applet.name);
    head.line(std::string("#include \"") + RuntimeHeaderName + '"');
    head.blankLine();
    head.line("namespace applet {");
    head.blankLine();
    writeVariables("全局变量", source.globalVariables, head, result);
    writeDeclarations(context, files, head);

    const int offset = head.lineNumber() - 1;
    for (LineRange& range : bodyLines) {
        range.firstLine += offset;
        result.lines.push_back(std::move(range));
    }
    result.files.front().text = head.text() + body.text();
    return result;
}

} // namespace codegen
