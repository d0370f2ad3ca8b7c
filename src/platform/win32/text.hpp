// The program's text (bytes of the ANSI code page) and the API's UTF-16,
// converted at the boundary only.
#pragma once

#include <string>
#include <string_view>

namespace ravelo::platform {

// UTF-16 of the program's text; a host path (`path`) gets "\" for "/".
std::wstring Wide(std::string_view text, bool path = false);
// The program's text of UTF-16; characters the code page lacks become "?".
std::string Narrow(std::wstring_view text);
// A Windows path with "/" separators, as host paths are written.
std::string HostForm(std::string path);

}  // namespace ravelo::platform
