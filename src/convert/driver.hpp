// The conversion driver: the "fileconv" job (one file, a wildcard, or the
// FileConv window), the safe renaming of the input, and the choice of the
// converter window by the file's extension.
#pragma once

#include <string>
#include <string_view>

#include "startup/program.hpp"

namespace ravelo {

// The "fileconv" command: converts the file (or every match of a wildcard)
// named by CommandTail, then ends the program; with no tail it shows the
// FileConv window.
void FileConvStart(Program& p);

// Converts CurrentFile (or the file CommandTail names) by its extension: the
// file is first renamed to a safe name, then its converter window is shown.
void ConvertByType(Program& p);

// The name of the converter window for a three-letter extension, or empty
// when no window of this build converts it.
std::string ConverterWindowFor(const Program& p, std::string_view extension);

// Registers the "fileconv" command word and the converter's windows.
void RegisterConverter(Program& p);

}  // namespace ravelo
