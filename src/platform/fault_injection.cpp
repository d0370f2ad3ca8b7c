#include "platform/fault_injection.hpp"

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace ravelo::platform::faults {
namespace {

bool WriteEverything(host::Handle file, const char* data, std::size_t n) {
    while (n > 0) {
        const std::ptrdiff_t written = host::Write(file, data, n);
        if (written < 0) return false;
        data += written;
        n -= static_cast<std::size_t>(written);
    }
    return true;
}

#ifdef RAVELO_FAULT_INJECTION
struct Plan {
    long limit = 0;
    bool diskFull = false;
};

const Plan& ThePlan() {
    static const Plan plan = [] {
        Plan made;
        if (const char* text = std::getenv("RAVELO_FAULT_AFTER")) made.limit = std::atol(text);
        const char* kind = std::getenv("RAVELO_FAULT_KIND");
        made.diskFull = kind != nullptr && std::string_view(kind) == "diskfull";
        return made;
    }();
    return plan;
}

bool KillDue() {
    static long count = 0;
    return ThePlan().limit > 0 && !ThePlan().diskFull && ++count == ThePlan().limit;
}

bool DiskFullDue() {
    static long writes = 0;
    return ThePlan().limit > 0 && ThePlan().diskFull && ++writes >= ThePlan().limit;
}
#else
constexpr bool KillDue() { return false; }
constexpr bool DiskFullDue() { return false; }
#endif

}  // namespace

void CountFileOperation() {
    if (KillDue()) std::_Exit(kFaultExitStatus);
}

bool WriteAll(host::Handle file, const char* data, std::size_t n) {
    if (KillDue()) {
        // A write cut short: half of it reaches the file.
        WriteEverything(file, data, n / 2);
        std::_Exit(kFaultExitStatus);
    }
    if (DiskFullDue()) {
        WriteEverything(file, data, n / 2);
        errno = ENOSPC;
        return false;
    }
    return WriteEverything(file, data, n);
}

}  // namespace ravelo::platform::faults
