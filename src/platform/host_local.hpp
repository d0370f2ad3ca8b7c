// What the host-specific parts of platform/ give the shared ones.
#pragma once

#include <ctime>

namespace ravelo::platform {

// The local time of a moment (localtime_r or localtime_s).
void LocalTime(std::time_t seconds, std::tm& local);

}  // namespace ravelo::platform
