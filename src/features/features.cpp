#include "features/features.hpp"

#include "convert/driver.hpp"
#include "readurl/readurl.hpp"
#include "startup/run.hpp"

namespace ravelo {

void RegisterFeatures(Program& p) {
    RegisterStartupWindows(p);
    RegisterConverter(p);
    RegisterReadUrl(p);
}

}  // namespace ravelo
