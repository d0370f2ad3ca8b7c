#include "features/features.hpp"

#include "convert/driver.hpp"
#include "startup/run.hpp"

namespace ravelo {

void RegisterFeatures(Program& p) {
    RegisterStartupWindows(p);
    RegisterConverter(p);
}

}  // namespace ravelo
