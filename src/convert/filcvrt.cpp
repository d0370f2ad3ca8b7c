// The converter's shared routines. Every reader prepares its input, cleans
// its number text, reads coordinates and element symbols and writes its
// records through these, so a rule of the converter lives in one place.
#include "convert/filcvrt.hpp"

#include <array>
#include <cmath>
#include <string_view>

#include "runtime/number.hpp"   // for Val, Power, Divide, RoundHalfEven, CheckedResult
#include "runtime/text.hpp"
#include "startup/shared.hpp"   // for DeleteIfExists

namespace ravelo::FilCvrt {

namespace {

// True when the line ends of the file are all CR LF and no empty line and no
// control character occurs.
bool LineEndsPass(Program& p, const std::string& path);
// Copies `from` into `to` (appended), turning control characters into line
// breaks, tabs into blanks and dropping bytes from 127 on.
void RebuildLineEnds(Program& p, const std::string& from, const std::string& to);
// Copies `from` into `to` line by line with "=END", "<i>" and "</i>" handled
// and empty lines dropped.
void CleanLines(Program& p, const std::string& from, const std::string& to);

// The rebuilding rules of the number cleaning, each one pass over the line.
std::string Widen(const std::string& s, std::string_view pattern, std::string_view emit, std::size_t resume);
std::string PadShortFractions(const std::string& s);
std::string RemoveUncertainties(const std::string& s);

// The blank-separated items of a text (runs of blanks separate).
std::array<std::string, 4> FirstFourItems(std::string_view s);

bool LineEndsPass(Program& p, const std::string& path) {
    InputFile in = p.fs.OpenInput(path);
    // Counts the line-end characters in a row: CR LF raises it by two, a
    // second CR (the start of an empty line) brings it to 3.
    int run = 0;
    while (!in.Eof()) {
        const auto c = static_cast<unsigned char>(in.GetChar());
        if (c == '\r') {
            ++run;
            // The character after a carriage return is taken whatever it is
            // (code 1 stands for the end of the file) and is not examined
            // further: "A", CR, "B", CR, LF thus counts 3 and fails.
            const int next = in.Eof() ? 1 : static_cast<unsigned char>(in.GetChar());
            if (next == '\n') ++run;
            if (run >= 3) return false;
        } else if (c < 32) {
            return false;
        } else {
            run = 0;
        }
    }
    return true;
}

void RebuildLineEnds(Program& p, const std::string& from, const std::string& to) {
    InputFile in = p.fs.OpenInput(from);
    OutputFile out = p.fs.OpenAppend(to);
    std::string chunk;
    bool lastWasBreak = false;
    while (!in.Eof()) {
        const auto c = static_cast<unsigned char>(in.GetChar());
        if (c == '\t') {
            // Written as a blank, and so it counts as the last character.
            chunk += ' ';
            lastWasBreak = false;
        } else if (c >= 32 && c <= 126) {
            chunk += static_cast<char>(c);
            lastWasBreak = false;
        } else if (c <= 31 && !lastWasBreak) {
            // Runs of control characters, empty lines among them, give one
            // line break.
            chunk += "\r\n";
            lastWasBreak = true;
        }
        if (chunk.size() >= 65536) {
            out.Print(chunk);
            chunk.clear();
        }
    }
    out.Print(chunk);
    out.Close();
}

void CleanLines(Program& p, const std::string& from, const std::string& to) {
    InputFile in = p.fs.OpenInput(from);
    OutputFile out = p.fs.OpenOutput(to);
    while (!in.Eof()) {
        std::string line = in.LineInput();
        // "==END" becomes "END" too: the replacement runs until none is left.
        while (line.find("=END") != std::string::npos) line = Replace(line, "=END", "END");
        if (line.find("<i>") != std::string::npos) line = Replace(line, "<i>", "");
        if (line.find("</i>") != std::string::npos) line = Replace(line, "</i>", "");
        // A line of blanks is not empty and stays.
        if (!line.empty()) out.PrintLine(line);
    }
    out.Close();
}

// Replaces every occurrence of `pattern` by `emit` and goes on searching
// from `resume` characters after the occurrence's start. The rules that use
// it put back the occurrence's last blank, so searching on in the original
// text from that blank finds exactly what a fresh search of the rebuilt line
// from its start would find: one pass instead of one rebuild per zero.
std::string Widen(const std::string& s, std::string_view pattern, std::string_view emit, std::size_t resume) {
    std::size_t at = s.find(pattern);
    if (at == std::string::npos) return s;
    std::string out;
    out.reserve(s.size() + 16);
    std::size_t from = 0;
    while (at != std::string::npos) {
        out.append(s, from, at - from);
        out.append(emit);
        from = at + resume;
        at = s.find(pattern, from);
    }
    out.append(s, from, std::string::npos);
    return out;
}

// A "." whose text up to the next blank is at most 4 characters long (the
// point and up to three digits) gets "0000" and a blank after that text:
// -0.3 becomes -0.30000 and a blank. The search goes on after the point; a
// further point inside a number already padded sees a text of at least 5
// characters and is left alone, so the pass continues after the number.
std::string PadShortFractions(const std::string& s) {
    std::size_t dot = s.find('.');
    if (dot == std::string::npos) return s;
    std::string out;
    out.reserve(s.size() + 32);
    std::size_t from = 0;
    while (dot != std::string::npos) {
        std::size_t end = s.find(' ', dot);
        if (end == std::string::npos) end = s.size();
        if (end - dot <= 4) {
            out.append(s, from, end - from);
            out.append("0000 ");
            from = end;
            dot = s.find('.', end);
        } else {
            dot = s.find('.', dot + 1);
        }
    }
    out.append(s, from, std::string::npos);
    return out;
}

// A bracketed standard uncertainty up to the next ")" is removed: with a "."
// anywhere before it (in what is kept of the line) it becomes "000 ", so
// 1.2345(6) reads 1.2345000; without one, three blanks. A "(" without a ")"
// after it ends the removal and stays.
std::string RemoveUncertainties(const std::string& s) {
    std::size_t open = s.find('(');
    if (open == std::string::npos) return s;
    std::string out;
    out.reserve(s.size() + 8);
    std::size_t from = 0;
    bool pointBefore = false;
    while (open != std::string::npos) {
        const std::size_t close = s.find(')', open);
        if (close == std::string::npos) break;
        const std::string_view kept(s.data() + from, open - from);
        pointBefore = pointBefore || kept.find('.') != std::string_view::npos;
        out.append(kept);
        out.append(pointBefore ? "000 " : "   ");
        from = close + 1;
        open = s.find('(', from);
    }
    out.append(s, from, std::string::npos);
    return out;
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

void PrepareInputFile(Program& p, const std::string& path) {
    std::string base;
    if (Contains(path, ".")) {
        // The first "." of the whole path: a folder name with a point gives a
        // longer extension, and the work files sit beside that folder.
        p.InputExt = TextFrom(path, ".");
        base = TextBefore(path, ".");
    }
    MakeCleanTempFile(p, path, base, p.InputExt);
}

void MakeCleanTempFile(Program& p, const std::string& path, const std::string& base, const std::string& ext) {
    const std::string tmpPath = base + ".tmp";
    const std::string tnpPath = base + ".tnp";

    p.LineEndsOk = p.YesText;
    if (LineEndsPass(p, path)) {
        p.fs.FileCopy(path, tmpPath);
    } else {
        p.LineEndsOk = p.NoText;
        RebuildLineEnds(p, path, tmpPath);
    }
    CleanLines(p, tmpPath, tnpPath);

    // The cleaned text goes back to base + ext, the input's own path. The
    // copy is renamed over the target only once it is whole, so the user's
    // file is never missing; an input elsewhere (a path without a point) is
    // deleted only after that.
    const std::string target = base + ext;
    p.fs.FileCopy(tnpPath, target);
    if (LCase(target) != LCase(path)) {
        p.fs.Kill(path);
    } else {
        // The input is written anew under its name as given, so a file
        // found in another case (Methyl_diol.xcc named methyl_diol.xcc)
        // takes the case of the name.
        p.fs.Name(target, target);
    }
    p.fs.Kill(tmpPath);
    p.fs.Kill(tnpPath);
}

void SplitFileName(Program& p, const std::string& path, std::string& name) {
    const std::size_t slash = InStrRev(path, "\\");
    if (slash == 0) return;
    p.SourceDir = Left(path, static_cast<long long>(slash));
    // Fewer than 4 characters after the "\" cannot lose an extension: error 5.
    name = DropLast(Mid(path, static_cast<long long>(slash) + 1), 4);
}

void CleanNumericLine(std::string& line) {
    if (Contains(line, "UNK")) return;

    // The two blanks make a number at the end of the line look like one in
    // its middle. (Adding two more before each rebuild, as the rules also
    // allow, changes nothing once the line is trimmed.)
    std::string s = line + "  ";
    if (s.find('\t') != std::string::npos) s = Replace(s, "\t", "   ");
    if (s.find(" (") != std::string::npos) s = Replace(s, " (", "(");
    if (s.find(" . ") != std::string::npos) s = Replace(s, " . ", " ");
    for (char& c : s)
        if (c == '?') c = ' ';

    // A lone zero becomes 0.0000 so that it holds a point: " 0 " gives
    // "  0.0000 ", " .0 " gives "  0.0000 ", " 0.0 " gives " 0.0000  " (its
    // own last blank follows).
    s = Widen(s, " 0 ", "  0.0000", 2);
    s = Widen(s, " .0 ", "  0.0000", 3);
    s = Widen(s, " 0.0 ", " 0.0000 ", 4);

    s = PadShortFractions(s);
    s = RemoveUncertainties(s);
    line = Trim(s);
}

void ReadCoordinates(Program& p, InputFile& in, std::string& line, double& x, double& y, double& z) {
    if (p.InputExt == ".XCX") {
        // Crystal coordinate lines: a label, then the three numbers, all
        // separated by blanks; a missing item reads 0.
        line = Trim(line);
        const std::array<std::string, 4> items = FirstFourItems(line);
        x = Val(items[1]);
        y = Val(items[2]);
        z = Val(items[3]);
        return;
    }

    std::string rest = line;
    for (double* coordinate : {&x, &y, &z}) {
        *coordinate = 0;
        std::size_t dot = rest.find('.');
        // A line short of numbers continues on the next lines. At the end of
        // the file the coordinate reads 0 and the line is the last one read.
        while (dot == std::string::npos && !in.Eof()) {
            line = Trim(in.LineInput());
            rest = line;
            dot = rest.find('.');
        }
        if (dot == std::string::npos) continue;
        // Back to the blank before the number: serial numbers and atom types
        // without a point that stand before it are passed over.
        const std::size_t blank = rest.rfind(' ', dot);
        if (blank != std::string::npos) rest.erase(0, blank);
        rest = Trim(rest);
        const std::size_t end = rest.find(' ');
        *coordinate = Val(std::string_view(rest).substr(0, end));
        rest = end == std::string::npos ? std::string() : rest.substr(end);
    }
}

void GetElementSymbol(Program& p, std::string& label, std::string& symbol) {
    symbol.clear();
    label = Trim(label);
    std::size_t at = 0;
    while (at < label.size() && !IsLetter(static_cast<unsigned char>(label[at]))) ++at;
    if (at == label.size()) return;
    symbol = UCase(label.substr(at, 1));
    if (at + 1 == label.size() || !IsLetter(static_cast<unsigned char>(label[at + 1]))) return;

    const char second = label[at + 1];
    // Protein and crystal labels name the position, not the element: CA, CB,
    // HD, OD are carbon, hydrogen and oxygen there. The file type is matched
    // as a piece of the list, so an empty type counts as one of them.
    if (Contains(".ENT.PDB.CSD.CIF", UCase(p.InputExt)) && (symbol == "C" || symbol == "H" || symbol == "O") &&
        second >= 'A' && second <= 'D')
        return;
    const std::string candidate = symbol + LCase(std::string(1, second));
    if (Contains(p.ElementSymbols, candidate)) symbol = candidate;
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

void ValidateOutputFile(Program& p, const std::string& path) {
    std::int32_t lines = 0;
    {
        InputFile in = p.fs.OpenInput(path);
        while (!in.Eof()) {
            in.LineInput();
            ++lines;
        }
    }
    // Fewer than three atoms and the end record is no structure.
    if (lines < 4) {
        DeleteIfExists(p, path);
        p.ConvertResult = p.NoText;
    } else {
        p.ConvertResult = p.YesText;
    }
}

void WriteAtomRecord(OutputFile& out, double x, double y, double z, const std::string& symbol,
                     std::int32_t serial) {
    out.WriteRecord({Field::Double(x), Field::Double(y), Field::Double(z), Field::Text(symbol), Field::Integer(serial)});
}

void WriteEndRecord(const Program& p, OutputFile& out, const std::string& title, std::int32_t count) {
    out.WriteRecord({Field::Integer(p.ZeroValue), Field::Integer(p.ZeroValue), Field::Integer(p.ZeroValue),
                     Field::Text(title), Field::Integer(count)});
}

void MoveFile(Program& p, const std::string& from, const std::string& to) {
    // The copy appears whole under its new name before the old file goes.
    p.fs.FileCopy(from, to);
    p.fs.Kill(from);
}

}  // namespace ravelo::FilCvrt
