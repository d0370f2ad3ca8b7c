// What the host-specific parts of platform/ give the shared ones.
#pragma once

#include <ctime>
#include <utility>

namespace ravelo::platform {

// Local time now, with the fraction of the current second.
std::pair<std::tm, double> LocalNow();

}  // namespace ravelo::platform
