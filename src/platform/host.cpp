// The environment strings, the system clock and the wait scale: what every
// host shares (the rest is in platform/posix/host.cpp and platform/win32/host.cpp).
#include "platform/host.hpp"

#include "platform/host_local.hpp"

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <thread>

namespace ravelo::platform {
namespace {

bool StartsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

// Local time now, with the fraction of the current second.
std::pair<std::tm, double> LocalNow() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto fraction = now - std::chrono::system_clock::from_time_t(seconds);
    std::tm local{};
    LocalTime(seconds, local);
    return {local, std::chrono::duration<double>(fraction).count()};
}

}  // namespace

// ---- Environment -----------------------------------------------------------

Environment::Environment(std::vector<std::string> strings) : strings_(std::move(strings)) {}

std::string Environment::At(std::size_t i) const {
    if (i == 0 || i > strings_.size()) return {};
    return strings_[i - 1];
}

std::string Environment::Get(std::string_view name) const {
    for (const auto& text : strings_) {
        if (text.size() > name.size() && text[name.size()] == '=' && StartsWith(text, name)) {
            return text.substr(name.size() + 1);
        }
    }
    return {};
}

// ---- SystemClock -----------------------------------------------------------

std::uint32_t SystemClock::Millis() {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
    return static_cast<std::uint32_t>(ms);   // deliberately wraps at 2^32
}

double SystemClock::Timer() {
    const auto [local, fraction] = LocalNow();
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction;
}

Date SystemClock::Today() {
    const std::tm local = LocalNow().first;
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

void SystemClock::Idle() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

// ---- Wait scale --------------------------------------------------------------

double WaitScaleFromEnvironment() {
    const char* text = std::getenv("RAVELO_WAIT_SCALE");
    if (text == nullptr) return 1;
    std::string_view value = text;
    while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
    double scale = 1;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), scale);
    if (value.empty() || error != std::errc() || end != value.data() + value.size() || !std::isfinite(scale) ||
        scale < 0) {
        return 1;
    }
    return scale == 0 ? 0.0 : scale;   // "-0" is 0
}

}  // namespace ravelo::platform
