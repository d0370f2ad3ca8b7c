// The division of a library file (many CIF data blocks or PDB entries in one
// file) into one file per entry, base_1.ext, base_2.ext, ..., which the
// converter then converts one by one.
#include <optional>

#include "convert/filcvrt.hpp"
#include "runtime/error.hpp"
#include "runtime/number.hpp"   // for NumText
#include "runtime/text.hpp"
#include "core/shared.hpp"   // for WaitSeconds, WriteFilConvLib

namespace ravelo::FilCvrt {

namespace {

// How a line of the library bears on the entry being written.
enum class Cut { None, After, Before };

// The number of entries: ".pdb" counts the lines that begin with the marker
// (at least 1), any other type the lines that hold it anywhere.
std::int32_t CountEntries(Program& p, const std::string& source, const std::string& marker, const std::string& ext);
// Writes one entry into `path`, starting with the carried line if there is
// one; leaves in `carried` the line that begins the next entry.
void WriteEntry(Program& p, InputFile& in, const std::string& path, const std::string& marker,
                const std::string& ext, std::optional<std::string>& carried);

std::int32_t CountEntries(Program& p, const std::string& source, const std::string& marker, const std::string& ext) {
    InputFile in = p.fs.OpenInput(source);
    std::int32_t count = 0;
    const bool pdb = ext == ".pdb";
    std::string line;
    while (!in.Eof()) {
        in.LineInput(line);
        const std::string_view trimmed = TrimView(line);
        if (pdb ? StartsWithNoCase(trimmed, marker) : ContainsNoCase(trimmed, marker)) ++count;
    }
    if (pdb && count == 0) count = 1;
    return count;
}

// Per entry the counters start at zero. A ".cif" entry ends after "#END",
// after a deposition number line once atom sites were seen (unless the
// number is the placeholder 'CCDC 0'), and before a "######" row once atom
// sites were seen or before a second data block header once the entry had
// its marker; those lines begin the next entry. A ".pdb" entry ends after
// any line holding "END" (ENDMDL too). Other types never end an entry.
void WriteEntry(Program& p, InputFile& in, const std::string& path, const std::string& marker,
                const std::string& ext, std::optional<std::string>& carried) {
    OutputFile out = p.fs.OpenOutput(path);
    int markerLines = 0;
    int atomSiteLines = 0;
    int dataHeaders = 0;
    std::string lastRead;   // upper case
    for (;;) {
        std::string line;
        if (carried) {
            line = std::move(*carried);
            carried.reset();
        } else if (in.Eof()) {
            break;
        } else {
            line = in.LineInput();
        }
        line = Trim(line);
        const std::string upper = UCase(line);
        lastRead = upper;

        if (Contains(upper, marker)) ++markerLines;
        Cut cut = Cut::None;
        if (ext == ".cif") {
            if (Contains(upper, "_ATOM_SITE_")) ++atomSiteLines;
            if (Contains(upper, "DATABASE_CODE_DEPNUM_CCDC_ARCHIVE") && atomSiteLines > 0 &&
                !Contains(upper, "'CCDC 0'")) {
                cut = Cut::After;
            } else if (Contains(upper, "#END")) {
                cut = Cut::After;
            } else if (Contains(upper, "######") && atomSiteLines > 0) {
                cut = Cut::Before;
            } else if (Contains(upper, "DATA_") && !Contains(upper, "_DATA_")) {
                // The entry's first data block header belongs to it; a later
                // one begins the next entry once this one had its marker.
                if (dataHeaders > 0 && markerLines > 0)
                    cut = Cut::Before;
                else
                    ++dataHeaders;
            }
        } else if (ext == ".pdb") {
            if (Contains(upper, "END")) cut = Cut::After;
        }

        if (cut == Cut::Before) {
            carried = std::move(line);
            break;
        }
        out.PrintLine(line);
        if (cut == Cut::After) break;
    }
    // Every piece closes as a file of its own type does. The test is on the
    // last line read, which for a piece cut before a line is that line.
    if (ext == ".cif" && !Contains(lastRead, "#END")) out.PrintLine("#END");
    if (ext == ".pdb" && !Contains(lastRead, "END")) out.PrintLine("END");
    out.Close();
}

}  // namespace

void SplitLibraryFile(Program& p, std::int32_t& count, const std::string& source, std::string marker,
                      const std::string& ext, const std::function<void(const std::string&)>& progress) {
    marker = UCase(marker);
    p.LibraryCount = 1;
    count = CountEntries(p, source, marker, ext);
    p.LibraryCount = count;
    WriteFilConvLib(p, count);
    if (count < 2) return;

    if (progress) progress("Separating Library into" + NumText(static_cast<long long>(count)) + " Files.");

    // The pieces are named after the library's full name up to its last ".".
    const std::size_t point = InStrRev(source, ".");
    if (point == 0) Raise(kInvalidCall);
    const std::string base = Left(source, static_cast<long long>(point) - 1);

    InputFile in = p.fs.OpenInput(source);
    std::optional<std::string> carried;
    for (std::int32_t i = 1; i <= count; ++i) {
        // The library may run out before the count does.
        if (!carried && in.Eof()) break;
        WriteEntry(p, in, base + "_" + std::to_string(i) + ext, marker, ext, carried);
        WaitSeconds(p, 1.0);
    }
}

}  // namespace ravelo::FilCvrt
