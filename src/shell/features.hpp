// The utilities and windows of this build, registered with a program.
#pragma once

#include "core/program.hpp"

namespace ravelo {

// Registers every window and command word of the build (the main window,
// the file converter and its windows, ...).
void RegisterFeatures(Program& p);

}  // namespace ravelo
