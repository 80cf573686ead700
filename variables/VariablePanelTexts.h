#pragma once

#include <QCoreApplication>

/// The texts of the variable panel are the panel's, whichever of its parts says them.
struct VariablePanelTexts
{
    Q_DECLARE_TR_FUNCTIONS(wgtLocalVariable)
};
