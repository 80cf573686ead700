#pragma once

#include "model/process_records.h"
#include "model/type_tables.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

class IProcessBlock;

/// What goes into the code generator and what comes out. Plain values: the generator knows no
/// store. All texts are UTF-8.
namespace codegen {

struct SequenceSource
{
    SequenceInfo info;
    /// Top-level blocks of the initial, the main and the end flow.
    std::array<std::vector<std::shared_ptr<IProcessBlock>>, 3> flows;
    std::vector<processVariable> variables;
};

/// Sequences that know each other and share variables: those of the applet, or of one template.
struct SequenceGroup
{
    std::string templateId;                ///< empty for the applet itself
    std::string name;                      ///< of the applet or the template
    std::vector<SequenceSource> sequences; ///< of a template: its main sequence first
    std::vector<processVariable> variables;
    std::map<std::string, SequenceGroup> templates; ///< that these sequences call, by id
};

/// A function that the runtime offers to applets.
struct FunctionSignature
{
    std::string name; ///< as it is called, with its prefix
    DrelVarType returnType = DrelVoid;
    std::vector<DrelVarType> parameters;
};

struct AppletSource
{
    SequenceGroup applet;
    std::vector<processVariable> globalVariables;
    std::vector<FunctionSignature> functions; ///< empty: calls are left to the compiler
    std::string targetSequenceId;             ///< only what it reaches is generated
    bool forVci = false;
};

struct GeneratedFile
{
    std::string name; ///< without a folder
    std::string text;
    bool isUnit = false; ///< compiled by itself; the others are included
};

/// Whose code it is: a step's, or a sequence's outside its steps.
struct CodeOwner
{
    std::string sequence;   ///< name; with that of its template before it
    std::string sequenceId; ///< empty for a sequence of a template, which no editor shows
    std::string step;       ///< name; empty: the sequence's own
    std::string stepId;
};

/// A place in what the user has written.
struct CodePlace
{
    CodeOwner owner;
    std::string text; ///< which of the step's texts, as the user knows it; may be empty
    int line = 0;     ///< of that text, from 1; 0 if it isn't known
};

/// What keeps an applet from being compiled, or will not be as somebody may think.
struct Problem
{
    CodePlace place; ///< of none if it is about the applet
    std::string words;
};

/// Who made these lines of a file, and which text of theirs stands in them.
struct LineRange
{
    std::size_t file = 0;
    int firstLine = 1; ///< up to the next range of the file
    int owner = -1;    ///< index into the owners, -1: nobody
    const char* text = nullptr;
    int textLine = 0; ///< what the first line is in that text
};

struct GeneratedCode
{
    std::vector<GeneratedFile> files; ///< the first describes the module and holds its variables
    std::vector<Problem> problems;    ///< for the user; any of them forbids the compile
    std::vector<Problem> warnings;    ///< for the user; they forbid nothing
    std::vector<CodeOwner> owners;
    std::vector<LineRange> lines; ///< in ascending order for each file
    std::size_t stepCount = 0;
};

/// The header of all generated units; it includes those of the runtime.
extern const char* const SharedHeaderName;

/// A unit for each sequence that the target reaches, and one for the module. Units can be compiled
/// together, unless their text has directives beside that for the shared header. The same source
/// gives the same texts, byte by byte, and a change in one sequence changes the texts of no other.
/// The work grows with the number of steps.
GeneratedCode generate(const AppletSource& source);

/// The place of a line of a generated file; its owner has no name if it is nobody's.
CodePlace placeOf(const GeneratedCode& code, const std::string& fileName, int line);

} // namespace codegen
