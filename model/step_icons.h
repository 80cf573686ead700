#pragma once

#include <QString>

/// Resource paths of the step icons, by step type. A number without an icon gives an empty string.
/// Callers scale the icon through StyleManager::scaledToolbarIcon. Any thread.

/// Icon of a basic step (base type 3); step types outside 1..27 have none.
QString getBaseStepIconName(int stepType);

/// Icon of a diagnostic step (base type 5); step types outside 1..16 and 8 have none.
QString getUDSStepIconName(int stepType);

/// Icon of a step of either base type; any other base type has none.
QString getStepIconName(int baseType, int stepType);
