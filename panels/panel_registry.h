#pragma once

#include <QVector>

class IBlockControl;

/// Makes one panel of every kind, in the order in which a block is offered to them; the caller
/// owns them. A new step kind adds its class and one line here.
QVector<IBlockControl*> makeBlockPanels();
