// raveloutils --install-demo [FOLDER]: the demo installation (drive C with
// the modeller's installation files) copied into an empty folder.
#pragma once

#include <string>

namespace ravelo::app {

// Copies the demo drive C into `folder` (default: the host folder of drive
// C), which must be missing or empty; says what it did on standard output,
// or why not on standard error. Returns the exit status.
int InstallDemo(const std::string& folder);

}  // namespace ravelo::app
