#pragma once

#include "model/step_kinds.h"

#include <memory>

class IProcessBlock;

namespace standalone {

/// A block of the class that stands for a kind, with the class's defaults and no uuid; null for a
/// kind without a class.
std::shared_ptr<IProcessBlock> makeBlock(logicBlockType baseType, int stepType);

/// A placeholder for a kind that this version doesn't know, as a newer document may hold it.
std::shared_ptr<IProcessBlock> makePlaceholder(int stepType);

/// Whether steps of the kind may be created by a user. A bare condition, for one, may not.
bool isCreatable(logicBlockType baseType, int stepType);

} // namespace standalone
