#pragma once

/// All block classes at once, for code that treats every kind of step. The services define those of
/// their members that have no body in the headers.
#include "model/blocks/ApiProcessBlock.h"
#include "model/blocks/BuzzProcessBlock.h"
#include "model/blocks/ConditionProcessBlock.h"
#include "model/blocks/DelayProcessBlock.h"
#include "model/blocks/ExpressionProcessBlock.h"
#include "model/blocks/ForProcessBlock.h"
#include "model/blocks/GotoProcessBlock.h"
#include "model/blocks/PlainProcessBlock.h"
#include "model/blocks/PopupWindowProcessBlock.h"
#include "model/blocks/RecvMessageProcessBlock.h"
#include "model/blocks/SendMessageProcessBlock.h"
#include "model/blocks/SequenceProcessBlock.h"
#include "model/blocks/StatementProcessBlock.h"
#include "model/blocks/UdsProcessBlock.h"
