// The internet file reader: "readurl ADDRESS TARGET" fetches one file.
#pragma once

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

// The reader's window: created and unloaded, never shown.
class RaveloReadURLForm : public ui::Form {
public:
    static constexpr std::string_view kName = "RaveloReadURLForm";
    explicit RaveloReadURLForm(Program& p);
};

namespace RaveloReadURL {

// Downloads the file that CommandTail names ("ADDRESS TARGET", taken in
// lower case as a whole) without a word to the user: every failure is
// ignored and simply leaves the target unwritten.
void ReadURL(Program& p);

}  // namespace RaveloReadURL

// Registers the "readurl" command word and the reader's window.
void RegisterReadUrl(Program& p);

}  // namespace ravelo
