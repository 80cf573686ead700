#pragma once

#include "model/process_records.h"

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

struct AppletSource
{
    SequenceGroup applet;
    std::vector<processVariable> globalVariables;
    std::string targetSequenceId; ///< only what it reaches is generated
    bool forVci = false;
};

struct GeneratedFile
{
    std::string name; ///< without a folder
    std::string text;
};

/// Which lines of a file a step, or a sequence outside its steps, has made.
struct LineRange
{
    std::size_t file = 0;
    int firstLine = 1; ///< up to the next range of the file
    std::string sequence;
    std::string step; ///< empty: the sequence's own lines
};

struct GeneratedCode
{
    std::vector<GeneratedFile> files;  ///< the first is the one to compile
    std::vector<std::string> problems; ///< for the user; any of them forbids the compile
    std::vector<LineRange> lines;      ///< in ascending order for each file
    std::size_t stepCount = 0;
};

/// The name of the runtime header that the code includes; it is not among the files.
extern const char* const RuntimeHeaderName;

/// The same source gives the same text, byte by byte. The work grows with the number of steps.
GeneratedCode generate(const AppletSource& source);

} // namespace codegen
