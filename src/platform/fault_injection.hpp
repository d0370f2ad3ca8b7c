// The fault switch of test builds (CMake option RAVELO_FAULT_INJECTION; off in
// release builds, where these hooks cost nothing and do nothing).
//
// RAVELO_FAULT_AFTER=N chooses an instant. By default the N-th file operation
// (an open, a write, a rename, a delete, a copy) ends the process on the
// spot, as a kill would, with kFaultExitStatus, so that a test can look at
// what a crash at that instant leaves. With RAVELO_FAULT_KIND=diskfull the
// N-th write finds the disk full instead, and so does every write after it,
// as on a real full disk.
#pragma once

#include <cstddef>

#include "platform/host_files.hpp"

namespace ravelo::platform::faults {

constexpr int kFaultExitStatus = 86;

// Counts one file operation; ends the process when it is the chosen one.
void CountFileOperation();

// Writes `n` bytes of `data` to `file` through partial writes and
// interruptions. False with errno set when the host refuses, or when the
// switch says the process dies (half the bytes reach the file first) or the
// disk is full (ENOSPC).
bool WriteAll(host::Handle file, const char* data, std::size_t n);

}  // namespace ravelo::platform::faults
