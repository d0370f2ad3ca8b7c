// Molecule log records into the molecule database subfiles.
#include "moldb/updatmol.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "runtime/error.hpp"
#include "runtime/number.hpp"  // for ToInt32
#include "runtime/text.hpp"    // for Contains, DropLast, Left, Mid
#include "core/shared.hpp"  // for CheckInstallation, WaitSeconds
#include "ui/host.hpp"


namespace ravelo::UpdatMol {
namespace {

// A subfile's template: the lines after its header, copied into every new
// subfile.
constexpr int kTemplateLines = 11;
// The log: five header lines, then records of five lines.
constexpr int kLogHeaderLines = 5;
constexpr int kRecordLines = 5;

// The first record of a subfile.
struct SubfileHeader {
    std::int32_t fieldCount = 0;  // fields (lines) per record
    double carried = 0;           // belongs to the database program; copied as it is
    std::int32_t fieldWidth = 0;  // characters per field
    std::int32_t number = 0;      // the subfile's own number
    std::int32_t records = 0;
};

// What a database field receives from a log record.
enum class Source { Path = 1, Description = 2, Formula = 3, Energy = 4, Date = 5 };

// The database fields that the settings file names, and what each receives;
// the fields not named get "V".
struct FieldMap {
    explicit FieldMap(std::int32_t count);  // a count below 0 raises 9
    // A field outside 0 to the field count raises 9.
    void Set(std::int32_t field, Source source);

    std::int32_t fieldCount;
    std::map<std::int32_t, Source> sources;
};

// The five lines of a log record, as read.
using LogRecord = std::array<std::string, 5>;

// The records of the log after its header, and the position of the last
// one whose date line holds "*".
struct LogCount {
    long long count = 0;
    long long transferred = 0;
};

SubfileHeader ReadHeader(InputFile& in) {
    SubfileHeader header;
    header.fieldCount = in.InputLong();
    header.carried = in.InputNumber();
    header.fieldWidth = in.InputLong();
    header.number = in.InputLong();
    header.records = in.InputLong();
    return header;
}

void WriteHeader(OutputFile& out, const SubfileHeader& header) {
    out.WriteRecord({Field::Integer(header.fieldCount), Field::Double(header.carried),
                     Field::Integer(header.fieldWidth), Field::Integer(header.number),
                     Field::Integer(header.records)});
}

void WriteQuoted(OutputFile& out, std::string text) { out.WriteRecord({Field::Text(std::move(text))}); }


std::string LogPath(const Program& p) { return p.InstallDrive + "\\ravelo\\molecule.log"; }
std::string SettingsPath(const Program& p) { return p.InstallDrive + "\\ravelo\\updtmol.dat"; }

// "live" when the file is at least 16 bytes long; otherwise "dead", and
// the file is deleted (a missing file is made by the test, then deleted).
std::string FileLiveOrDead(Program& p, const std::string& path) {
    {
        OutputFile opened = p.fs.OpenAppend(path);  // creates a missing file
    }
    if (p.fs.FileLen(path) >= 16) return "live";
    // Shorter files are broken leftovers (or the empty file just made).
    p.fs.Kill(path);
    return "dead";
}

// Makes subfile `n` from subfile 001: its header with the new number and no
// records, then its template lines. The new subfile appears whole.
SubfileHeader MakeSubfile(Program& p, const std::string& name, long long n) {
    InputFile first = p.fs.OpenInput(SubfilePath(p, 1));
    SubfileHeader header = ReadHeader(first);
    platform::Replacement made = p.fs.OpenReplacement(name);
    header.number = ToInt32(static_cast<double>(n));
    header.records = 0;
    WriteHeader(made.File(), header);
    // The template lines are read as items and written back quoted, so a
    // quoted line comes out as it went in.
    for (int k = 0; k < kTemplateLines; ++k) WriteQuoted(made.File(), first.InputText());
    made.Commit();
    return header;
}

FieldMap::FieldMap(std::int32_t count) : fieldCount(count) {
    if (count < 0) Raise(kSubscript);
}

void FieldMap::Set(std::int32_t field, Source source) {
    if (field < 0 || field > fieldCount) Raise(kSubscript);
    sources[field] = source;
}

// Reads the settings file into `map` and returns the record limit per
// subfile. Without a usable file, Label6 says so and the read that follows
// fails (error 53).
std::int32_t ReadFieldMap(Program& p, TransferView& view, FieldMap& map) {
    const std::string path = SettingsPath(p);
    if (FileLiveOrDead(p, path) == "dead") {
        // Reported only; the read below then fails on the missing file.
        view.SetMessage(6, "No UPDTMOL.DAT file was found.  Must terminate.");
        view.Repaint();
    }
    InputFile in = p.fs.OpenInput(path);
    // Every line starts with a label, which is skipped.
    in.InputText();
    const std::int32_t subfileLimit = in.InputLong();
    in.InputText();
    for (int k = 0; k < 3; ++k) map.Set(in.InputLong(), Source::Description);
    for (Source source : {Source::Formula, Source::Path, Source::Energy, Source::Date}) {
        in.InputText();
        map.Set(in.InputLong(), source);
    }
    return subfileLimit;
}

// Finds the subfile to write to. `name` "Exit" asks only for subfile 001's
// field count and width. Otherwise `name` becomes the first subfile with
// fewer records than `subfileLimit` and `room` the records it may still
// take; after the last subfile a new one is made from subfile 001's header
// and template lines, with room for `subfileLimit` records.
void FindSubfile(Program& p, std::string& name, std::int32_t& fieldCount, std::int32_t& fieldWidth,
                 long long& room, std::int32_t subfileLimit) {
    const bool sizesOnly = name == "Exit";
    long long n = 1;
    for (;; ++n) {
        name = SubfilePath(p, n);
        if (FileLiveOrDead(p, name) == "dead" && room == 0) break;
        InputFile in = p.fs.OpenInput(name);
        const SubfileHeader header = ReadHeader(in);
        fieldCount = header.fieldCount;
        fieldWidth = header.fieldWidth;
        if (sizesOnly) return;
        if (header.records < subfileLimit) {
            room = static_cast<long long>(subfileLimit) - header.records;
            return;
        }
    }
    // The first number without a subfile: a new one, empty, from the template.
    const SubfileHeader header = MakeSubfile(p, name, n);
    fieldCount = header.fieldCount;
    fieldWidth = header.fieldWidth;
    room = subfileLimit;
}

// Writes the fields of one log record, one quoted value a line, in field
// order.
void WriteFieldValues(OutputFile& subfile, const FieldMap& map, const LogRecord& record,
                      const std::array<std::string, 3>& parts) {
    std::size_t nextPart = 0;
    for (long long field = 1; field <= map.fieldCount; ++field) {
        const auto named = map.sources.find(static_cast<std::int32_t>(field));
        if (named == map.sources.end()) {
            WriteQuoted(subfile, "V");
            continue;
        }
        // Log lines go in as read, their double quotes included.
        switch (named->second) {
            case Source::Path:
                WriteQuoted(subfile, record[0] + " * ravelo *");
                break;
            case Source::Description:
                // The description fields take the parts in field order; the
                // settings name three of them, so a part is always left.
                if (nextPart < parts.size()) WriteQuoted(subfile, parts[nextPart++]);
                break;
            case Source::Formula:
                WriteQuoted(subfile, record[2]);
                break;
            case Source::Energy:
                WriteQuoted(subfile, record[3]);
                break;
            case Source::Date:
                WriteQuoted(subfile, "<" + record[4] + ">");
                break;
        }
    }
}

LogCount CountLogRecords(Program& p) {
    InputFile in = p.fs.OpenInput(LogPath(p));
    for (int k = 0; k < kLogHeaderLines; ++k) in.LineInput();
    LogCount result;
    while (!in.Eof()) {
        for (int k = 0; k < 4; ++k) in.LineInput();
        const std::string date = in.LineInput();
        ++result.count;
        if (Contains(date, "*")) result.transferred = result.count;
    }
    return result;
}

// Removes a file the transfer keeps as its scratch copy, where one is left
// from before.
void DeleteScratch(Program& p, const std::string& path) {
    if (p.fs.Exists(path)) p.fs.Kill(path);
}

// The bytes `first` has not yet given, then `then`: a file read as if a
// text had been appended to it.
class ChainSource final : public ByteSource {
public:
    ChainSource(InputFile first, std::string then) : first_(std::move(first)), then_(std::move(then)) {}

    std::size_t Read(char* buf, std::size_t n) override {
        if (pending_.empty() && !firstDone_) {
            pending_ = first_.ReadChunk();
            firstDone_ = pending_.empty();
            if (firstDone_) pending_ = then_;
        }
        const std::size_t k = std::min(n, pending_.size());
        std::copy_n(pending_.data(), k, buf);
        pending_.remove_prefix(k);
        return k;
    }

private:
    InputFile first_;
    std::string then_;
    std::string_view pending_;
    bool firstDone_ = false;
};

// Adds `records` (the new records' lines) to the subfile and `added` to the
// record count in its header, in one replacement: a kill leaves the subfile
// as it was or with both. The result is the header rewrite of the subfile
// with the records appended: lines copied by the rewrite end in CR LF.
void ExtendSubfile(Program& p, const std::string& subfile, const std::string& records, long long added) {
    platform::Replacement extended = p.fs.OpenReplacement(subfile);
    {
        // Read to its end and closed before the replacement takes the
        // subfile's place: Windows renames nothing over a file still open.
        InputFile in(std::make_unique<ChainSource>(p.fs.OpenInput(subfile), records));
        SubfileHeader header = ReadHeader(in);
        header.records = ToInt32(static_cast<double>(header.records) + static_cast<double>(added));
        WriteHeader(extended.File(), header);
        while (!in.Eof()) extended.File().PrintLine(in.LineInput());
    }
    extended.Commit();
    // The rewrite once went through a scratch copy beside the subfile, and
    // a file of that name does not outlive a transfer.
    DeleteScratch(p, TempCopyPath(subfile));
}

// Rewrites the log with "*" after the date of its first transferred + added
// records; the header's last line gets one too when it has none. The copy is
// made as the scratch file molecule.tmp beside the log and put in place of
// the log only when complete and at least 16 bytes long; it never has its
// own name unless an error ends the copying, which leaves it as it stands
// (and the log as it was).
void MarkLog(Program& p, long long transferred, long long added) {
    const std::string log = LogPath(p);
    std::optional<InputFile> in(p.fs.OpenInput(log));
    platform::Replacement copy = p.fs.OpenReplacement(TempCopyPath(log));
    std::int64_t length = 0;
    platform::WriteAndCommitOnError(copy, [&](OutputFile& out) {
        const auto write = [&](std::string text) {
            length += static_cast<std::int64_t>(text.size()) + 4;   // quotes and CR LF
            WriteQuoted(out, std::move(text));
        };
        // Record 1 is the header; log record k is record k + 1. Each line is
        // read as one item (its quotes go) and written quoted, so a bare date
        // line comes back quoted.
        for (long long record = 1; !in->Eof(); ++record) {
            for (int k = 0; k < 4; ++k) write(in->InputText());
            std::string date = in->InputText();
            if (!Contains(date, "*") && record <= transferred + added + 1) date += "*";
            write(std::move(date));
        }
        // A copy too short to be a log is dropped, and the log stays.
        if (length < 16) return;
        in.reset();   // closed before the copy takes its place, as Windows needs
        p.fs.Retarget(copy, log);
        copy.Commit();
    });
    DeleteScratch(p, TempCopyPath(log));
}

}  // namespace

std::string SubfilePath(const Program& p, long long n) {
    const std::string digits = std::to_string(n);
    const std::string padded = n < 10 ? "00" + digits : n < 100 ? "0" + digits : digits;
    return p.InstallDrive + "\\dmor\\molecule." + padded;
}

std::string TempCopyPath(std::string_view path) { return DropLast(path, 3) + "tmp"; }

std::array<std::string, 3> SplitDescription(std::string_view description, std::int32_t width) {
    std::array<std::string, 3> parts;
    const long long w = width;
    const auto length = static_cast<long long>(description.size());
    // A description of exactly `width` characters stays whole, while a longer
    // one is cut into pieces of width - 1: the database keeps the last
    // character of a field free whenever a description runs on.
    if (length <= w) {
        parts[0] = std::string(description);
    } else {
        parts[0] = Left(description, w - 1);  // a width below 1 raises 5
        parts[1] = Mid(description, w, w - 1);
        if (length > 2 * (w - 1)) parts[2] = Mid(description, 2 * w - 1, w - 1);
    }
    for (std::string& part : parts)
        if (part.empty()) part.assign(1, 'V');  // a field holds "V" when it holds nothing
    return parts;
}

void UpdateDatabase(Program& p, TransferView& view) {
    if (p.InstallDrive.empty()) CheckInstallation(p);
    const std::string log = LogPath(p);
    if (FileLiveOrDead(p, log) == "dead") {
        p.ui.MsgBox("2", ui::MsgButtons::Ok, kProgramTitle);
        EndProgram(0);
    }

    const LogCount counted = CountLogRecords(p);
    const long long count = counted.count, transferred = counted.transferred;
    view.SetMessage(3, std::to_string(count) + " records are present in the Molecule.Log.");
    view.SetMessage(4, std::to_string(transferred) + " of these have been transferred");
    view.SetMessage(5,
               std::to_string(count - transferred) + " new records have not yet been transferred.");
    view.SetMessage(6, "");
    view.Repaint();
    WaitSeconds(p, 2.0);

    if (view.Button() == "BEGIN") {
        // The first click only counts; the transfer waits for GO.
        view.SetButton("GO");
        view.MarkWaiting();
        view.SetMessage(6, "Click GO to transfer these records.");
        return;
    }

    long long added = 0;
    std::string subfile = "Exit";
    std::string records;
    {
        InputFile in = p.fs.OpenInput(log);
        // Past the header and the records sent before.
        for (long long k = 0; k < kLogHeaderLines + kRecordLines * transferred; ++k) in.LineInput();

        std::int32_t fieldCount = 0, fieldWidth = 0;
        long long room = 0;
        FindSubfile(p, subfile, fieldCount, fieldWidth, room, 0);
        FieldMap map(fieldCount);
        const std::int32_t subfileLimit = ReadFieldMap(p, view, map);
        subfile.clear();
        FindSubfile(p, subfile, fieldCount, fieldWidth, room, subfileLimit);
        if (room == 0) {
            view.SetMessage(5,
                       "You must manually add a new record to the database '\\Dmor\\Molecule'");
            view.SetMessage(6, "in order to create a new subfile in that database.");
            return;
        }

        // The new records are gathered first, so that the subfile changes
        // once, records and header count together.
        OutputFile out(MemorySink(records));
        try {
            while (!in.Eof() && added != count && added != room) {
                ++added;
                LogRecord record;
                for (std::string& line : record) line = in.LineInput();
                // The modeller's scratch structure is never kept in the
                // database, but its record is marked like the others.
                if (Contains(record[0], "temp.sxs")) continue;
                WriteFieldValues(out, map, record, SplitDescription(record[1], fieldWidth));
            }
        } catch (...) {
            // A log that ends inside a record: the records before it are
            // added to the subfile, whose header is not updated.
            out.Close();
            platform::Replacement extension = p.fs.OpenExtension(subfile);
            extension.File().Print(records);
            extension.Commit();
            throw;
        }
        out.Close();
    }
    view.SetMessage(5, std::to_string(added) + " records were added to " + subfile);
    view.Repaint();

    ExtendSubfile(p, subfile, records, added);
    MarkLog(p, transferred, added);

    const long long left = count - transferred - added;
    view.SetMessage(3, std::to_string(count) + " records are present in the Molecule.Log.");
    view.MarkWaiting();
    if (left < 1) {
        view.SetMessage(4, "");
        view.SetMessage(5, "");
        view.SetMessage(6, "All the relevant DMOR Molecule Database subfiles have been updated");
        view.HideButton();
    } else {
        view.SetMessage(4, std::to_string(transferred + added) + " of these have been transferred");
        view.SetMessage(5, std::to_string(left) + " new records have not yet been transferred.");
        view.SetMessage(6, "Continue to transfer these records by clicking GO");
    }
}

}  // namespace ravelo::UpdatMol
