#pragma once

#include "logic/edit/CheckStateEditor.h"
#include "logic/edit/ChosenRow.h"
#include "logic/edit/EditSheets.h"
#include "logic/edit/StepEditor.h"
#include "logic/look/BreakPointColumn.h"
#include "logic/run/RunView.h"
#include "ui_LogicView.h"

#include <QLabel>

#include <memory>

/// What a LogicView is made of. The objects that watch its trees go before these do.
struct LogicViewParts
{
    Ui::LogicView ui;
    EditSheets* sheets = nullptr; ///< child of the view, goes after the trees
    CheckStateEditor checkStates;
    std::unique_ptr<UdsStepEditor> udsSteps;
    std::unique_ptr<StepEditor> steps;
    std::unique_ptr<ChosenRow> chosenRow;
    std::unique_ptr<BreakPointColumn> breakPoints;
    std::unique_ptr<RunView> run;
    QLabel* runSequence = nullptr; ///< beside the tabs
};
