// Start-up: the program-wide values, the reading of the command line, and
// the dispatch of the command word to its utility.
#pragma once

#include <string>
#include <string_view>

#include "core/program.hpp"

namespace ravelo {

// The start-up routine. `commandLine` is the whole command line; with
// `window` set and an empty command line, that window is shown instead of
// the main window.
void Main(Program& p, const std::string& commandLine, std::string_view window = {});

// Splits a non-empty command line into CommandWord, CommandTail and
// LibraryCount: a bare name whose last three characters are a known file type
// is a file to convert; a last word of one character with a value not 0 is a
// library count; a word with a wildcard becomes its first match.
void ReadCommandLine(Program& p, const std::string& commandLine);

// Opens the utility that CommandWord names.
void DispatchCommand(Program& p);

// The texts that start-up sets.
inline constexpr std::string_view kNotOffered = "Sorry, this application is not currently offered.";

}  // namespace ravelo
