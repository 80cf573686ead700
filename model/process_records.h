#pragma once

#include "model/SequenceInfo.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class IProcessBlock;

/// The scope of a variable. 3 marks a variable that can't be dragged.
enum processVariableType : std::int32_t {
    SequenceVariable = 0,
    ProcessVariable = 1,
    GlobalVariable = 2,
    FixedVariable = 3
};

/// One variable, by value. Texts are UTF-8 but for one. Every lookup goes through @c uuid, never
/// through the name.
struct processVariable
{
    std::string uuid;
    std::string name; ///< "^[a-zA-Z_][a-zA-Z0-9_]{0,19}$"
    std::string type; ///< type keyword, primary or alias
    std::string value;
    std::string description;
    /// The sequence's id, the applet's name (local 8-bit encoding), or empty, by scope.
    std::string ownerId;
    processVariableType scope = SequenceVariable;
    bool isLocked = false;   ///< the row can't be selected or changed
    bool isEditable = false; ///< under isLocked: the value and the length still can be changed
    std::int32_t length = 1; ///< elements of an array or most bytes of a text
};

/// A frozen copy of a sequence with all that it needs. By value; blocks are shared.
struct processTemplateInfo
{
    std::string id; ///< empty: no template
    std::string name;
    SequenceInfo mainSequence;
    std::vector<SequenceInfo> subSequences;                ///< what the main one calls
    std::vector<std::shared_ptr<IProcessBlock>> blocks;    ///< of the main sequence, top level
    std::vector<std::shared_ptr<IProcessBlock>> subBlocks; ///< of the others
    std::vector<processVariable> sequenceVariables;
    std::vector<processVariable> processVariables;
    std::map<std::string, processTemplateInfo> subTemplates; ///< by id
};
