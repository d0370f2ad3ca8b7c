// The converter's file types in one table: which extensions reach which
// converter window, each window's texts and reader, which windows divide
// libraries, and which types are converted without a window (the
// force-field family). The driver's routing, the windows, and the text
// FileTypes that start-up tests a bare command-line name against all come
// from it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "convert/schakal.hpp"   // for the atom tables a Schakal window keeps
#include "core/program.hpp"

namespace ravelo::formats {

// Progress texts a reader shows in its window while it works.
using Progress = std::function<void(const std::string&)>;

// What a converter window keeps from one of its conversions to the next.
struct ReaderMemory {
    readers::Schakal::Tables schakal;
    std::int32_t m3dLastAtom = 0;   // the last atom number an M3D file gave
};

// A format's reader, run by its window on one file.
using Reader = void (*)(Program& p, const std::string& fileName, ReaderMemory& memory, const Progress& progress);

struct WindowTexts {
    std::string_view caption;    // the window's caption
    std::string_view title;      // Label1
    std::string_view prompt;     // Label3 when no name is given
    std::string_view question;   // Label5 after a conversion of a typed name
};

struct Format {
    std::string_view window;   // the converter window's design name
    WindowTexts texts;
    Reader read;
    // A file that may hold several entries is divided first where a line
    // holds this marker (empty: never divided); the entries are named NAME_i
    // plus `entryExtension` (empty: the file's own, from its first ".").
    std::string_view libraryMarker = {};
    std::string_view entryExtension = {};
};

// Where a file of a type goes.
enum class Route {
    Window,       // its format's converter window
    ForceField,   // the force-field input conversion, without a window
    Nothing,      // a type the command line accepts that nothing converts
};

struct FileType {
    std::string_view extension;   // as ConvertByType takes it: the last three characters
    Route route;
    std::string_view window = {};  // Route::Window: the format's window
    // What the type adds to the text FileTypes: its extension, or less where
    // the neighbouring letters already spell it (the text's "xcxcc" holds
    // both "xcx" and "xcc"; "mol2" holds "mol").
    std::optional<std::string_view> listedAs = std::nullopt;
};

std::span<const Format> Formats();
std::span<const FileType> FileTypes();

// The format of a window, nullptr when no converter window has that name.
const Format* FormatOfWindow(std::string_view window);
// The type of a (lower-case) extension, nullptr when it is none.
const FileType* TypeOfExtension(std::string_view extension);

// What the types add, joined in the table's order: the text a bare
// command-line name's last three characters are looked for in.
std::string FileTypesText();

}  // namespace ravelo::formats
