// The run-time error number a piece of code raises.
#pragma once

#include <functional>

#include "runtime/error.hpp"

namespace ravelo::test {

// The error number `f` raises, 0 when it returns normally.
inline int ErrorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number;
    }
    return 0;
}

}  // namespace ravelo::test
