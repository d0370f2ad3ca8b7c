// The small routines that every utility uses: file existence, the critical
// error box, the installation check, waits, the shell, directory counts and
// path parts, and the converter's log files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/program.hpp"

namespace ravelo {

// True when the file exists and is at least 8 bytes long. A file of fewer
// than 8 bytes counts as a broken leftover: it is deleted, and `path` is
// replaced by the message "Datafile <path> is missing." for the caller to
// show. `readOnly` receives the read-only bit (0 when the answer is false).
bool FileExists(Program& p, std::string& path, int* readOnly = nullptr);

// A message box with OK only, titled "RaveloUtils - Critical Error".
void ShowCriticalError(Program& p, std::string_view message);

// Reads the installation drive file and finds the modeller; ends the program
// with the critical error (missing drive file) or silently (no modeller).
void CheckInstallation(Program& p);

// Waits `seconds` (below 10: seconds; 10 and above: milliseconds; scaled by
// the program's wait scale), or, for 0 and -100, until WaitFlag is set by
// someone else. Any other negative value returns at once. Returns whether
// the wait was ended by WaitFlag rather than by the time.
bool WaitSeconds(Program& p, double seconds);

// Runs a command line through the host shell and waits until it has ended.
// Every error is ignored.
void RunAndWait(Program& p, const std::string& commandLine);

// The number of files a wildcard pattern names.
std::int32_t CountMatchingFiles(Program& p, std::string_view pattern);

// The part of `path` up to and including its last "\"; `dir` is left as it
// was when the path is empty or holds no "\".
void GetFilePath(std::string_view path, std::string& dir);

// The library count of a command line or tail: scanning back from its end
// for blanks, the first text from a blank to the end that is shorter than 3
// characters (a blank and one character) and whose value is not 0 gives
// `count`. Returns that blank's position (from 1), 0 when there is none (and
// `count` is left alone).
std::size_t FindLibraryCount(const std::string& text, std::int32_t& count);

// A name holding a double quote anywhere loses its first and last
// characters, as a quoted name from the command line does.
void DropQuotes(std::string& name);

// TempDir from the first environment string "TEMP=..." (trimmed value); the
// scan stops at the first empty string.
void GetTempDir(Program& p);

// Deletes the named file, or every file a wildcard names, double quotes
// removed; errors are ignored.
void DeleteFileByCommand(Program& p);

// The converter's log files in TempDir\Ravelo.
std::string FilConvLogPath(const Program& p, std::string_view fileName);
// DeleteIfExists: the file is deleted when FileExists answers yes (a stub of
// fewer than 8 bytes is already deleted by FileExists).
void DeleteIfExists(Program& p, std::string path);
void ClearFilConvLogs(Program& p);
void WriteFilConvN(Program& p, const Field& value);
void WriteFilConvLib(Program& p, std::int32_t counter);
void WriteFilConvStat(Program& p);

}  // namespace ravelo
