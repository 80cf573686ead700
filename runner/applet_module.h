#pragma once

// The binary interface between a module and the process that runs it, without what is for steps.
#define APPLET_RUNTIME_INTERFACE_ONLY
#include "runner/applet_runtime.h"
