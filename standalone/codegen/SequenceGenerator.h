#pragma once

#include "standalone/codegen/CodeWriter.h"
#include "standalone/codegen/Macros.h"
#include "standalone/codegen/SequencePlan.h"
#include "standalone/codegen/user_code.h"
#include "standalone/codegen/value_kinds.h"

#include <initializer_list>
#include <set>
#include <string>
#include <vector>

class ApiProcessBlock;
class ExpressionProcessBlock;
class ForProcessBlock;
class SequenceProcessBlock;
class StatementProcessBlock;

namespace codegen {

/// What all sequences of an applet share while they are generated.
struct GenerationContext
{
    const AppletSource& source;
    const SequencePlan& plan;
    GeneratedCode& result;
    std::unordered_map<std::string, const FunctionSignature*> functions; ///< of the runtime
    /// By group the heads of the functions that its statements define.
    std::map<const SequenceGroup*, std::vector<std::string>> heads;
};

/// Writes the unit of one sequence. Structure is written as C++ structure: a jump to a step works
/// wherever C++ lets a goto go. A long sequence without jumps becomes several functions, since a
/// compiler's time grows faster than the length of a function.
class SequenceGenerator
{
public:
    SequenceGenerator(GenerationContext& context, const PlannedSequence& sequence);

    /// Adds the unit to the files, and the files that it includes.
    void generate();

private:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    // The unit (SequenceGenerator_unit.cpp)
    void generateFunction();
    void generateVariables();
    void writeHead(CodeWriter& writer) const;
    void assembleUnit();
    std::string takeFunctions(const StatementProcessBlock& block);

    // A long sequence (SequenceGenerator_parts.cpp)
    bool canBeParted() const;
    void generateInParts();
    void generatePart(const Blocks& blocks, int part);

    // Structure (SequenceGenerator.cpp)
    void generateSiblings(const Blocks& blocks, bool inLoop);
    std::size_t generateIf(const Blocks& blocks, std::size_t at, bool inLoop);
    bool generateBranch(const IProcessBlock& branch, bool inLoop);
    void generateLoop(const IProcessBlock& block);
    void generateFor(const ForProcessBlock& block, const std::string& step);
    std::string counterOf(const ForProcessBlock& block) const;
    void generateJumpOut(const IProcessBlock& block, bool inLoop);
    void generateClosing(const IProcessBlock& block);
    void generateDisabled(const IProcessBlock& block);
    bool openGuard(const IProcessBlock& block);
    void generateStatements(const std::string& code, const char* userText);

    // Steps without children (SequenceGenerator_steps.cpp)
    void generateLeaf(const IProcessBlock& block);
    bool openStepLoop(const IProcessBlock& block, const std::string& step);
    void closeStepLoop(const IProcessBlock& block);
    void generateBody(const IProcessBlock& block, const std::string& step);
    void generateStatement(const StatementProcessBlock& block);
    void generateExpression(const ExpressionProcessBlock& block);
    void generateApi(const ApiProcessBlock& block);
    void checkApi(const ApiProcessBlock& block);
    void generateCall(const SequenceProcessBlock& block);
    void generateUnsupported(const IProcessBlock& block, const char* kind);

    // Jumps (SequenceGenerator_jumps.cpp)
    void findLoopsWithTargets(const Blocks& blocks, std::vector<const ForProcessBlock*>& around);
    void generatePostActions(const IProcessBlock& block);
    void generateAction(const IProcessBlock& block, int kind, const std::string& target);
    void generateJump(const std::string& targetUuid, const IProcessBlock& block);
    bool leadsIntoCustomLoop(const std::string& targetUuid) const;

    // Shared (SequenceGenerator.cpp)
    std::string stepNumber(const IProcessBlock& block) const;
    std::string beginStep(const IProcessBlock& block);
    void endStep(const std::string& step);
    std::string callOf(const PlannedSequence& callee);
    std::string condition(const IProcessBlock& step);
    void own(const IProcessBlock& block);
    void disown() { m_writer.setOwner(m_owner); }
    bool isKnownVariable(const std::string& name) const { return m_names.variables.count(name); }
    ValueKind kindOf(const IProcessBlock& block, const std::string& expression) const;
    std::vector<std::pair<std::string, ValueKind>> hideNames(const std::string& text);
    void showNames(const std::vector<std::pair<std::string, ValueKind>>& hidden);
    void writeUserCode(const std::string& code, const char* userText);
    void endMacros();
    void checkCode(const IProcessBlock& block, const std::string& code, const char* userText);
    void addProblem(const IProcessBlock& block, const char* source,
                    std::initializer_list<std::string> arguments = {},
                    const char* userText = nullptr, int line = 0);
    void addWarning(const IProcessBlock& block, const char* source);
    Problem problemOf(const IProcessBlock& block, std::string words) const;

    GenerationContext& m_context;
    const PlannedSequence& m_sequence;
    const std::size_t m_file; ///< the unit's place among the files
    int m_owner;              ///< the sequence itself
    std::unordered_map<const IProcessBlock*, int> m_owners;
    std::vector<LineRange> m_functionLines;
    std::vector<LineRange> m_lines;
    CodeWriter m_functions; ///< what the statements define
    CodeWriter m_writer;    ///< the sequence's own function
    std::vector<std::string> m_includes;
    std::set<const PlannedSequence*> m_callees; ///< as they stand in the plan, one behind the other
    KnownNames m_names;
    Macros m_macros;                       ///< of the step
    std::vector<std::string> m_keptMacros; ///< the names whose former meanings come back after it
    /// Of each jump target the loops around it that a jump from outside can't enter.
    std::unordered_map<std::string, std::vector<const ForProcessBlock*>> m_closedLoops;
    std::vector<const ForProcessBlock*> m_openLoops;
    /// Defined above all steps with their first value, since a jump leads into their loop.
    std::map<std::string, int> m_loopVariables;
};

} // namespace codegen
