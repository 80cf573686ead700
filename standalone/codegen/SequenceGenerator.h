#pragma once

#include "standalone/codegen/CodeWriter.h"
#include "standalone/codegen/SequencePlan.h"

#include <initializer_list>
#include <string>
#include <vector>

class ApiProcessBlock;
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
};

/// Writes the function of one sequence. Structure is written as C++ structure: a jump to a step
/// works wherever C++ lets a goto go. A long sequence without jumps becomes several functions,
/// since a compiler's time grows faster than the length of a function.
class SequenceGenerator
{
public:
    SequenceGenerator(GenerationContext& context, const PlannedSequence& sequence,
                      CodeWriter& writer);

    void generate();

    /// The files of the statements that have one of their own; each defines one function.
    const std::vector<GeneratedFile>& statementFiles() const { return m_statementFiles; }

private:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    // A long sequence (sequence_parts.cpp)
    bool canBeParted() const;
    void generateInParts();
    void generatePart(const Blocks& blocks, int part);

    // Structure (SequenceGenerator.cpp)
    void generateVariables();
    void generateSiblings(const Blocks& blocks, bool inLoop);
    std::size_t generateIf(const Blocks& blocks, std::size_t at, bool inLoop);
    void generateLoop(const IProcessBlock& block);
    void generateFor(const ForProcessBlock& block, const std::string& step);
    void generateJumpOut(const IProcessBlock& block, bool inLoop);
    void generateClosing(const IProcessBlock& block);
    void generateDisabled(const IProcessBlock& block);

    // Steps without children (step_code.cpp)
    void generateLeaf(const IProcessBlock& block);
    void generateBody(const IProcessBlock& block, const std::string& step);
    void generateStatement(const StatementProcessBlock& block, const std::string& step);
    void generateApi(const ApiProcessBlock& block);
    void generateCall(const SequenceProcessBlock& block);
    bool openStepLoop(const IProcessBlock& block, const std::string& step);
    void generateUnsupported(const IProcessBlock& block, const char* kind);

    // Shared
    std::string beginStep(const IProcessBlock& block);
    void endStep(const std::string& step);
    void generatePostActions(const IProcessBlock& block);
    void generateJump(const std::string& targetUuid, const IProcessBlock& block);
    std::string condition(const IProcessBlock& step);
    bool isKnownVariable(const std::string& name) const;
    void addProblem(const IProcessBlock& block, const char* source,
                    std::initializer_list<std::string> arguments = {});

    GenerationContext& m_context;
    const PlannedSequence& m_sequence;
    CodeWriter& m_writer;
    std::vector<GeneratedFile> m_statementFiles;
    std::unordered_set<std::string> m_variables; ///< all names that the sequence sees
};

} // namespace codegen
