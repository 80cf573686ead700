#pragma once

#include <QIcon>

/// An icon of the application's own for its tool bars, by name; null for an unknown name.
QIcon applicationIcon(const char* name);
