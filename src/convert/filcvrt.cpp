// The converter's shared routines. Every reader prepares its input, cleans
// its number text, reads coordinates and element symbols and writes its
// records through these, so a rule of the converter lives in one place.
#include "convert/filcvrt.hpp"

#include <array>
#include <cmath>
#include <string_view>

#include "runtime/byte_scan.hpp"  // for FindUnprintable
#include "runtime/number.hpp"   // for Val, Power, Divide, RoundHalfEven, CheckedResult
#include "runtime/text.hpp"
#include "core/shared.hpp"   // for DeleteIfExists

namespace ravelo::FilCvrt {

namespace {

// True when the line ends of the file are all CR LF and no empty line and no
// control character occurs.
bool LineEndsPass(Program& p, const std::string& path);
// Writes the lines of `from` to `out`, with the line ends rebuilt when
// `rebuild` is set (control characters become line breaks, tabs blanks, bytes
// from 127 on are dropped) and each line cleaned by CleanLine.
void CleanLines(Program& p, const std::string& from, bool rebuild, OutputFile& out);
// One line of the cleaning: "=END", "<i>" and "</i>" handled; written unless
// empty.
void CleanLine(std::string& line, OutputFile& out);
// Removes a work file that a killed earlier run left behind, so that nothing
// of it reaches the cleaned file; never the input itself.
void RemoveStaleWorkFile(Program& p, const std::string& input, const std::string& work);

// What one look at every character of a line finds for the number
// cleaning: whether it is left alone ("UNK"), and which of the rare rules
// can match. A lone zero needs a blank before "0" or ".0"; the rules before
// it only remove characters around blanks, which cannot make one, and no
// rule makes a "(".
struct NumericLineRules {
    bool unknown = false, tab = false, question = false, bracket = false;
    bool blankBracket = false, lonePoint = false, zero = false;
};
NumericLineRules FindNumericLineRules(std::string_view s);
// The same found character by character from `from` on.
NumericLineRules NumericLineRulesFrom(std::string_view s, std::size_t from);

// The first `pattern` in `s` from `from` on. The patterns of the number
// cleaning start with a blank, and atom lines are full of blanks: a plain
// loop beats a library search call per blank.
std::size_t FindFrom(std::string_view s, std::string_view pattern, std::size_t from);

// The rebuilding rules of the number cleaning, each one pass over the line,
// `s` rebuilt through `scratch` only where a rule applies.
void Widen(std::string& s, std::string& scratch, std::string_view pattern, std::string_view emit,
           std::size_t resume);
void PadShortFractions(std::string& s, std::string& scratch);
void RemoveUncertainties(std::string& s, std::string& scratch);

// The blank-separated items of a text (runs of blanks separate).
std::array<std::string, 4> FirstFourItems(std::string_view s);

bool LineEndsPass(Program& p, const std::string& path) {
    InputFile in = p.fs.OpenInput(path);
    // Counts the line-end characters in a row: CR LF raises it by two, a
    // second CR (the start of an empty line) brings it to 3.
    int run = 0;
    // The character after a carriage return is taken whatever it is (code 1
    // stands for the end of the file) and is not examined further: "A", CR,
    // "B", CR, LF thus counts 3 and fails. It may open the next chunk.
    bool afterCarriageReturn = false;
    for (std::string_view chunk = in.ReadChunk(); !chunk.empty(); chunk = in.ReadChunk()) {
        for (const char byte : chunk) {
            const auto c = static_cast<unsigned char>(byte);
            if (afterCarriageReturn) {
                afterCarriageReturn = false;
                if (c == '\n') ++run;
                if (run >= 3) return false;
            } else if (c == '\r') {
                ++run;
                afterCarriageReturn = true;
            } else if (c < 32) {
                return false;
            } else {
                run = 0;
            }
        }
    }
    return !(afterCarriageReturn && run >= 3);
}

void CleanLine(std::string& line, OutputFile& out) {
    // "==END" becomes "END" too: the replacement runs until none is left.
    if (line.find('=') != std::string::npos) {
        while (line.find("=END") != std::string::npos) line = Replace(line, "=END", "END");
    }
    if (line.find('<') != std::string::npos) {
        if (line.find("<i>") != std::string::npos) line = Replace(line, "<i>", "");
        if (line.find("</i>") != std::string::npos) line = Replace(line, "</i>", "");
    }
    // A line of blanks is not empty and stays.
    if (!line.empty()) out.PrintLine(line);
}

void CleanLines(Program& p, const std::string& from, bool rebuild, OutputFile& out) {
    InputFile in = p.fs.OpenInput(from);
    std::string line;
    if (!rebuild) {
        while (!in.Eof()) {
            in.LineInput(line);
            CleanLine(line, out);
        }
        return;
    }
    // The rebuilt text holds only CR LF breaks between runs of kept
    // characters, so its lines are the runs themselves: each goes straight
    // to the line cleaning.
    bool lastWasBreak = false;
    for (std::string_view chunk = in.ReadChunk(); !chunk.empty(); chunk = in.ReadChunk()) {
        const char* at = chunk.data();
        const char* const end = at + chunk.size();
        while (at != end) {
            // A run of printable characters is taken whole.
            const char* run = FindUnprintable(at, end);
            if (run != at) {
                line.append(at, run);
                lastWasBreak = false;
                at = run;
                if (at == end) break;
            }
            const auto c = static_cast<unsigned char>(*at++);
            if (c == '\t') {
                // Written as a blank, and so it counts as the last character.
                line.push_back(' ');
                lastWasBreak = false;
            } else if (c <= 31 && !lastWasBreak) {
                // Runs of control characters, empty lines among them, give
                // one line break.
                CleanLine(line, out);
                line.clear();
                lastWasBreak = true;
            }
        }
    }
    CleanLine(line, out);
}

void RemoveStaleWorkFile(Program& p, const std::string& input, const std::string& work) {
    if (LCase(work) != LCase(input) && p.fs.Exists(work)) p.fs.Kill(work);
}

NumericLineRules FindNumericLineRules(std::string_view s) {
    using namespace byte_scan;
    // Eight characters at a time, each word beside the one a character on,
    // so that a blank's mark meets its follower's. A line with any mark
    // (rare in atom lines) is tested character by character from its start.
    std::uint64_t marks = 0, letterU = 0;
    std::size_t i = 0;
    for (; i + 9 <= s.size(); i += 8) {
        const std::uint64_t word = Load(s.data() + i);
        const std::uint64_t next = Load(s.data() + i + 1);
        // The characters that matter after a blank.
        const std::uint64_t followers = ByteMarks(next, '(') | ByteMarks(next, '0') | ByteMarks(next, '.');
        marks |= ByteMarks(word, '?') | ByteMarks(word, '(') | ByteMarks(word, '\t') |
                 (ByteMarks(word, ' ') & followers);
        letterU |= ByteMarks(word, 'U');
    }
    if (marks != 0) return NumericLineRulesFrom(s, 0);
    NumericLineRules rules = NumericLineRulesFrom(s, i);
    // "GLU" and "LEU" hold a "U" too: only "UNK" leaves the line alone.
    if (letterU != 0 && s.find("UNK") != std::string_view::npos) rules.unknown = true;
    return rules;
}

NumericLineRules NumericLineRulesFrom(std::string_view s, std::size_t from) {
    NumericLineRules rules;
    const std::size_t n = s.size();
    for (std::size_t i = from; i < n; ++i) {
        const char c = s[i];
        if (c > ' ' && c != '?' && c != '(' && c != 'U') continue;
        if (c == ' ' && i + 1 < n) {
            const char next = s[i + 1];
            const char after = i + 2 < n ? s[i + 2] : '\0';
            rules.blankBracket = rules.blankBracket || next == '(';
            rules.zero = rules.zero || next == '0' || (next == '.' && after == '0');
            rules.lonePoint = rules.lonePoint || (next == '.' && after == ' ');
        } else if (c == '?') {
            rules.question = true;
        } else if (c == '(') {
            rules.bracket = true;
        } else if (c == '\t') {
            rules.tab = true;
        } else if (c == 'U' && s.substr(i, 3) == "UNK") {
            rules.unknown = true;
            return rules;
        }
    }
    return rules;
}

std::size_t FindFrom(std::string_view s, std::string_view pattern, std::size_t from) {
    if (pattern.empty() || pattern.size() > s.size()) return std::string_view::npos;
    const std::size_t last = s.size() - pattern.size();
    for (std::size_t i = from; i <= last; ++i) {
        if (s[i] != pattern[0]) continue;
        std::size_t k = 1;
        while (k < pattern.size() && s[i + k] == pattern[k]) ++k;
        if (k == pattern.size()) return i;
    }
    return std::string_view::npos;
}

// Replaces every occurrence of `pattern` by `emit` and goes on searching
// from `resume` characters after the occurrence's start. The rules that use
// it put back the occurrence's last blank, so searching on in the original
// text from that blank finds exactly what a fresh search of the rebuilt line
// from its start would find: one pass instead of one rebuild per zero.
void Widen(std::string& s, std::string& scratch, std::string_view pattern, std::string_view emit,
           std::size_t resume) {
    std::size_t at = FindFrom(s, pattern, 0);
    if (at == std::string::npos) return;
    scratch.clear();
    std::size_t from = 0;
    while (at != std::string::npos) {
        scratch.append(s, from, at - from);
        scratch.append(emit);
        from = at + resume;
        at = FindFrom(s, pattern, from);
    }
    scratch.append(s, from, std::string::npos);
    s.swap(scratch);
}

// A "." whose text up to the next blank is at most 4 characters long (the
// point and up to three digits) gets "0000" and a blank after that text:
// -0.3 becomes -0.30000 and a blank. The search goes on after the point; a
// further point inside a number already padded sees a text of at least 5
// characters and is left alone, so the pass continues after the number.
void PadShortFractions(std::string& s, std::string& scratch) {
    scratch.clear();
    std::size_t from = 0;
    const std::size_t n = s.size();
    for (std::size_t i = 0; i < n; ++i) {
        if (s[i] != '.') continue;
        std::size_t end = i + 1;
        while (end < n && s[end] != ' ') ++end;
        if (end - i <= 4) {
            scratch.append(s, from, end - from);
            scratch.append("0000 ");
            from = end;
            i = end;  // the blank at `end`, or the end of the text
        }
    }
    if (from == 0) return;   // no fraction was short
    scratch.append(s, from, std::string::npos);
    s.swap(scratch);
}

// A bracketed standard uncertainty up to the next ")" is removed: with a "."
// anywhere before it (in what is kept of the line) it becomes "000 ", so
// 1.2345(6) reads 1.2345000; without one, three blanks. A "(" without a ")"
// after it ends the removal and stays.
void RemoveUncertainties(std::string& s, std::string& scratch) {
    std::size_t open = s.find('(');
    if (open == std::string::npos) return;
    scratch.clear();
    std::size_t from = 0;
    bool pointBefore = false;
    while (open != std::string::npos) {
        const std::size_t close = s.find(')', open);
        if (close == std::string::npos) break;
        const std::string_view kept(s.data() + from, open - from);
        pointBefore = pointBefore || kept.find('.') != std::string_view::npos;
        scratch.append(kept);
        scratch.append(pointBefore ? "000 " : "   ");
        from = close + 1;
        open = s.find('(', from);
    }
    scratch.append(s, from, std::string::npos);
    s.swap(scratch);
}

std::array<std::string, 4> FirstFourItems(std::string_view s) {
    std::array<std::string, 4> items;
    std::size_t at = 0;
    for (std::string& item : items) {
        while (at < s.size() && s[at] == ' ') ++at;
        const std::size_t start = at;
        while (at < s.size() && s[at] != ' ') ++at;
        item = std::string(s.substr(start, at - start));
    }
    return items;
}

bool IsLetter(unsigned char c) {
    // The classic test by code: "[" to "`" count as letters too.
    return c >= 65 && c <= 122;
}

}  // namespace

bool PrepareInputFile(Program& p, const std::string& path) {
    std::string base;
    if (Contains(path, ".")) {
        // The first "." of the whole path: a folder name with a point gives a
        // longer extension, and the work files sit beside that folder.
        p.conversion.extension = TextFrom(path, ".");
        base = TextBefore(path, ".");
    }
    return MakeCleanTempFile(p, path, base, p.conversion.extension);
}

bool MakeCleanTempFile(Program& p, const std::string& path, const std::string& base, const std::string& ext) {
    // The work files base + ".tmp" and base + ".tnp" of the cleaning are
    // never written: the rebuilt and cleaned lines stream straight into the
    // replacement of the input, which leaves the same file in one pass. Ones
    // left by a killed earlier run go, as a finished run leaves none.
    RemoveStaleWorkFile(p, path, base + ".tmp");
    RemoveStaleWorkFile(p, path, base + ".tnp");

    const bool passed = LineEndsPass(p, path);

    // The cleaned text goes back to base + ext, the input's own path. It is
    // renamed over the target only once it is whole, so the user's file is
    // never missing; an input elsewhere (a path without a point) is deleted
    // only after that.
    const std::string target = base + ext;
    {
        platform::Replacement cleaned = p.fs.OpenReplacement(target);
        CleanLines(p, path, !passed, cleaned.File());
        cleaned.Commit();
    }
    if (LCase(target) != LCase(path)) {
        p.fs.Kill(path);
    } else {
        // The input is written anew under its name as given, so a file
        // found in another case (Methyl_diol.xcc named methyl_diol.xcc)
        // takes the case of the name.
        p.fs.Name(target, target);
    }
    return passed;
}

void SplitFileName(Program& p, const std::string& path, std::string& name) {
    const std::size_t slash = InStrRev(path, "\\");
    if (slash == 0) return;
    p.conversion.folder = Left(path, static_cast<long long>(slash));
    // Fewer than 4 characters after the "\" cannot lose an extension: error 5.
    name = DropLast(Mid(path, static_cast<long long>(slash) + 1), 4);
}

void CleanNumericLine(std::string& line) {
    // The two blanks make a number at the end of the line look like one in
    // its middle. (Adding two more before each rebuild, as the rules also
    // allow, changes nothing once the line is trimmed.) The working texts
    // keep their storage from call to call: the routine runs once for every
    // atom line of a file.
    thread_local std::string s, scratch;
    s.assign(line);
    s.append("  ");
    NumericLineRules rules = FindNumericLineRules(s);
    if (rules.unknown) return;
    if (rules.tab) {
        // Tabs become three blanks.
        scratch.clear();
        for (const char c : s) {
            if (c == '\t') {
                scratch.append("   ");
            } else {
                scratch.push_back(c);
            }
        }
        s.swap(scratch);
        rules = FindNumericLineRules(s);
    }

    // The rare rules are applied in their order only where they can match.
    if (rules.blankBracket) s = Replace(s, " (", "(");
    if (rules.lonePoint) s = Replace(s, " . ", " ");
    if (rules.question) {
        for (char& c : s)
            if (c == '?') c = ' ';
    }

    // A lone zero becomes 0.0000 so that it holds a point: " 0 " gives
    // "  0.0000 ", " .0 " gives "  0.0000 ", " 0.0 " gives " 0.0000  " (its
    // own last blank follows).
    if (rules.zero || rules.question) {
        Widen(s, scratch, " 0 ", "  0.0000", 2);
        Widen(s, scratch, " .0 ", "  0.0000", 3);
        Widen(s, scratch, " 0.0 ", " 0.0000 ", 4);
    }

    PadShortFractions(s, scratch);
    if (rules.bracket) RemoveUncertainties(s, scratch);
    line.assign(TrimView(s));
}

SourceType SourceTypeOf(std::string_view fileType) {
    return Contains(".ENT.PDB.CSD.CIF", UCase(fileType)) ? SourceType::Labelled : SourceType::Plain;
}

void ReadCoordinates(SourceType type, InputFile& in, std::string& line, double& x, double& y, double& z) {
    if (type == SourceType::Xcx) {
        // Crystal coordinate lines: a label, then the three numbers, all
        // separated by blanks; a missing item reads 0.
        line = Trim(line);
        const std::array<std::string, 4> items = FirstFourItems(line);
        x = Val(items[1]);
        y = Val(items[2]);
        z = Val(items[3]);
        return;
    }

    // The rest of the line is a view into `line`, which changes only when the
    // routine reads on (and the view is then taken afresh).
    std::string_view rest = line;
    for (double* coordinate : {&x, &y, &z}) {
        *coordinate = 0;
        std::size_t dot = rest.find('.');
        // A line short of numbers continues on the next lines. At the end of
        // the file the coordinate reads 0 and the line is the last one read.
        while (dot == std::string_view::npos && !in.Eof()) {
            line = Trim(in.LineInput());
            rest = line;
            dot = rest.find('.');
        }
        if (dot == std::string_view::npos) continue;
        // Back to the blank before the number: serial numbers and atom types
        // without a point that stand before it are passed over.
        const std::size_t blank = rest.rfind(' ', dot);
        if (blank != std::string_view::npos) rest.remove_prefix(blank);
        while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
        while (!rest.empty() && rest.back() == ' ') rest.remove_suffix(1);
        const std::size_t end = rest.find(' ');
        *coordinate = Val(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
    }
}

void GetElementSymbol(SourceType type, std::string& label, std::string& symbol) {
    symbol.clear();
    TrimInPlace(label);
    std::size_t at = 0;
    while (at < label.size() && !IsLetter(static_cast<unsigned char>(label[at]))) ++at;
    if (at == label.size()) return;
    symbol = UCase(label.substr(at, 1));
    if (at + 1 == label.size() || !IsLetter(static_cast<unsigned char>(label[at + 1]))) return;

    const char second = label[at + 1];
    // Protein and crystal labels name the position, not the element: CA, CB,
    // HD, OD are carbon, hydrogen and oxygen there.
    if (type == SourceType::Labelled && (symbol == "C" || symbol == "H" || symbol == "O") &&
        second >= 'A' && second <= 'D')
        return;
    const std::string candidate = symbol + LCase(std::string(1, second));
    if (Contains(kElementSymbols, candidate)) symbol = candidate;
}

void CleanMoleculeName(const std::string& fallback, std::string& name) {
    std::string clean = Trim(name);
    for (char& c : clean)
        if (c == ' ' || c == '.' || c == ',') c = '_';
    // A bare number is a poor title when the file's own name is not one.
    // The test comes after the points are gone: "0.5" stays as "0_5".
    if (Val(fallback) == 0 && Val(clean) != 0) clean = Trim(fallback);
    if (clean.empty() || clean.size() > 40) clean = fallback;
    name = Trim(clean);
}

void RoundToPlaces(double& value, std::int32_t places) {
    if (value == 0) return;
    const double scale = Power(10, places);
    const double scaled = CheckedResult(value * scale);
    // Beyond the whole-number range the value is left as it is.
    if (std::fabs(scaled) >= 2147483647.0) return;
    value = Divide(RoundHalfEven(scaled), scale);
}

bool ValidateOutputFile(Program& p, const std::string& path) {
    std::int32_t lines = 0;
    {
        InputFile in = p.fs.OpenInput(path);
        std::string line;
        while (!in.Eof()) {
            in.LineInput(line);
            ++lines;
        }
    }
    // Fewer than three atoms and the end record is no structure.
    if (lines >= 4) return true;
    DeleteIfExists(p, path);
    return false;
}

void WriteAtomRecord(OutputFile& out, double x, double y, double z, const std::string& symbol,
                     std::int32_t serial) {
    out.WriteRecord({Field::Double(x), Field::Double(y), Field::Double(z), Field::Text(symbol), Field::Integer(serial)});
}

// The end record: three zeros, the title, and the count.
void WriteEndRecord(OutputFile& out, const std::string& title, std::int32_t count) {
    out.WriteRecord({Field::Integer(0), Field::Integer(0), Field::Integer(0), Field::Text(title), Field::Integer(count)});
}

void MoveFile(Program& p, const std::string& from, const std::string& to) {
    // A free name takes the file by a rename, which the host does at once:
    // the file is under one name or the other, whole, at every instant (on
    // another drive the rename is itself a copy and a delete).
    if (!p.fs.Exists(to)) {
        p.fs.Name(from, to);
        return;
    }
    // Over an existing file, the copy appears whole under its new name
    // before the old file goes.
    p.fs.FileCopy(from, to);
    p.fs.Kill(from);
}

std::int32_t WriteNumberedAtom(InputFile& in, std::string& line, OutputFile& out) {
    double x = 0, y = 0, z = 0;
    ReadCoordinates(SourceType::Plain, in, line, x, y, z);
    std::string symbol;
    GetElementSymbol(SourceType::Plain, line, symbol);
    const std::int32_t number = ToInt32(Val(TextUpToIncluding(line, " ")));
    WriteAtomRecord(out, x, y, z, symbol, number);
    return number;
}

}  // namespace ravelo::FilCvrt
