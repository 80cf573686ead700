#pragma once

#include "logic/BreakPointColumn.h"
#include "logic/CheckStateEditor.h"
#include "logic/ChosenRow.h"
#include "logic/EditSheets.h"
#include "logic/RunView.h"
#include "logic/StepEditor.h"
#include "ui_LogicView.h"

#include <QLabel>

#include <memory>

/// What a LogicView is made of. The objects that watch its trees go before these do.
struct LogicViewParts
{
    Ui::LogicView ui;
    EditSheets* sheets = nullptr; ///< child of the view, goes after the trees
    CheckStateEditor checkStates;
    std::unique_ptr<StepEditor> steps;
    std::unique_ptr<ChosenRow> chosenRow;
    std::unique_ptr<BreakPointColumn> breakPoints;
    std::unique_ptr<RunView> run;
    QLabel* runSequence = nullptr; ///< beside the tabs
};
