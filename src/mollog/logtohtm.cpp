// The molecule log copied into its HTML index and back.
#include "mollog/logtohtm.hpp"

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <utility>

#include "runtime/text.hpp"    // for Contains, LCase, Replace, Right, TextAfter, TextBefore, Trim
#include "core/shared.hpp"  // for FileExists

namespace ravelo::LogToHtm {
namespace {

std::string HtmlPath(const Program& p) { return p.InstallDrive + "\\ravelo\\molecule.htm"; }
std::string SearchPagePath(const Program& p) { return p.InstallDrive + "\\ravelo\\MolSrchData.htm"; }
std::string TextLogPath(const Program& p) { return p.InstallDrive + "\\ravelo\\molecule.txt"; }

// A record line carries the structure file's path; every path holds a "\".
bool IsPathLine(std::string_view line) { return Contains(line, "\\"); }

// Today's date as month-day-year: 11-21-2026.
std::string DateText(const platform::Date& date) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d-%02d-%04d", date.month, date.day, date.year);
    return text;
}

// Lines joined, each ended by CR LF.
std::string Lines(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (std::string_view line : lines) {
        text += line;
        text += "\r\n";
    }
    return text;
}

// The first lines of both pages.
constexpr std::string_view kHtmlOpen = "<html>";
constexpr std::string_view kMakerComment = "<!--  Tessal, Inc.  -->";
constexpr std::string_view kHeadOpen = "<head>";
constexpr std::string_view kHeadClose = "</head>";
constexpr std::string_view kBody = "<body bgcolor=#ffffd8>";

// A page's header when FileExists answers no for the page, else nothing.
// FileExists has by then removed a stub of fewer than 8 bytes, so the page
// is new and gets its header whole in one step.
std::string HeaderIfMissing(Program& p, const std::string& path, std::string header) {
    std::string name = path;
    return FileExists(p, name) ? std::string() : header;
}

// Opens `path` for reading and moves past the line where the mode's records
// start: in mode "new" the first line ending in "*", in mode "all" the first
// line holding "date" in any case. Without such a line reading starts again
// at the top.
InputFile OpenPositioned(Program& p, const std::string& path, std::string_view mode) {
    InputFile in = p.fs.OpenInput(path);
    while (!in.Eof()) {
        const std::string line = in.LineInput();
        const bool start = mode == "new"   ? Right(line, 1) == "*"
                           : mode == "all" ? Contains(LCase(line), "date")
                                           : false;
        if (start) return in;
    }
    return p.fs.OpenInput(path);
}

// Codes 65 ("A") to 122 ("z") may begin and end a link text.
bool IsLinkEnd(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code >= 65 && code <= 122;
}


}  // namespace

std::string LogPath(const Program& p) { return p.InstallDrive + "\\ravelo\\molecule.log"; }

std::string ModeWord(std::string_view commandTail) {
    return LCase(Trim(commandTail)) == "all" ? "all" : "new";
}

std::string MakeHtmlHeaders(Program& p) {
    const std::string setupDate = "<i>Setup Date - " + DateText(p.clock.Today()) + "</i>";
    std::string indexHeader = HeaderIfMissing(
        p, HtmlPath(p),
        Lines({kHtmlOpen, kMakerComment, kHeadOpen, "<title>The Kalmodyn Molecule Log</title>", kHeadClose,
               kBody, "<H1>The Kalmodyn Molecule Log</H1>", "<hr size=7>",
               "<b>This LOG (a HTML file) stores data on molecular models you saved using the SAVE AS "
               "routine.</b><br>",
               "<b>Use the EDIT/FIND function of this HTML viewer to search the data below, using a suitable "
               "keyword.</b><br>",
               "<b>Click on the URL - underlined highlighted description - and the file will be OPENED by "
               "Kalmodyn.</b><br>",
               setupDate, "<hr size=7>"}));
    // The pages stay open-ended (no closing body or html tag): records are
    // appended below the header, and browsers show such a page as it is.
    const std::string searchHeader = HeaderIfMissing(
        p, SearchPagePath(p),
        Lines({kHtmlOpen, kMakerComment, kHeadOpen, "<title>The Kalmodyn Molecule Log Search Results</title>",
               kHeadClose, kBody, "<H1>The Kalmodyn Molecule Log Search Results</H1>"}));
    if (!searchHeader.empty()) p.fs.ReplaceFile(SearchPagePath(p), searchHeader);
    return indexHeader;
}

void WritePendingHeader(Program& p, std::string& indexHeader) {
    if (indexHeader.empty()) return;
    p.fs.ReplaceFile(HtmlPath(p), indexHeader);
    indexHeader.clear();
}

std::string LinkText(std::string_view pathLine) {
    std::string text = Replace(Trim(pathLine), "\"", "");
    // Cut from the front first, then from the back, one character a turn.
    // Digits at the end of a name go too (mol12 shows as mol): the link text
    // is a label, the href keeps the full path.
    std::size_t first = 0, last = text.size();
    while (first < last) {
        if (!IsLinkEnd(text[first])) {
            ++first;
        } else if (!IsLinkEnd(text[last - 1])) {
            --last;
        } else {
            break;
        }
    }
    return text.substr(first, last - first);
}

void CopyLogToHtml(Program& p, std::string_view mode, RecordBuffer& record, std::string& indexHeader) {
    // The index grows as a whole: a kill leaves it as it was or with every
    // record of this run (and a new index with its header).
    platform::Replacement index = indexHeader.empty() ? p.fs.OpenExtension(HtmlPath(p))
                                                      : p.fs.OpenReplacement(HtmlPath(p));
    index.File().Print(std::exchange(indexHeader, std::string()));
    platform::WriteAndCommit(index, [&](OutputFile& htm) {
        InputFile log = OpenPositioned(p, LogPath(p), mode);
        while (!log.Eof()) {
            // No end-of-file test inside a record: a log that ends in a partial
            // record or a blank line runs past its end (error 62), and the
            // records appended before stay in the index.
            std::string pathLine;
            do {
                pathLine = log.LineInput();
            } while (!IsPathLine(pathLine));
            for (std::size_t k = 1; k <= 4; ++k) record[k] = Replace(log.LineInput(), "\"", "") + "<br>";
            // The four "<br>" tags alone make every record long enough to be
            // kept, so no record of the log is ever left out here.
            // The path line keeps its own double quotes, which quote the href.
            htm.PrintLine("<a href=" + pathLine + ">" + LinkText(pathLine) + "</a><br>");
            for (std::size_t k = 1; k <= 4; ++k) htm.PrintLine(record[k]);
            htm.PrintLine("<hr size=1>");
        }
    });
}

void CopyHtmlToLog(Program& p, std::string_view mode, RecordBuffer& record) {
    InputFile htm = OpenPositioned(p, HtmlPath(p), mode);
    platform::Replacement textLog = p.fs.OpenExtension(TextLogPath(p));
    platform::WriteAndCommit(textLog, [&](OutputFile& text) {
        if (mode == "new") {
            for (const char* heading : {"File path/Name", "Molecule Description", "Molecular Formula",
                                        "Molecular Energy", "Date*"}) {
                text.WriteRecord({Field::Text(heading)});
            }
        }
        while (!htm.Eof()) {
            do {
                record[1] = htm.LineInput();
            } while (!IsPathLine(record[1]) && !htm.Eof());
            // Elements not reached before the end keep what they held.
            for (std::size_t k = 2; k <= 6 && !htm.Eof(); ++k) record[k] = htm.LineInput();

            // The link target between the first two double quotes of the
            // "<a href=" line; a line without them ends in error 5.
            record[1] = TextBefore(TextAfter(record[1], "\""), "\"");
            std::string running;
            for (std::size_t k = 1; k <= 5; ++k) {
                record[k] = Replace(Replace(record[k], "\"", ""), "<br>", "");
                running += record[k];
            }
            if (running.size() < 11) continue;
            for (std::size_t k = 1; k <= 4; ++k) text.WriteRecord({Field::Text(record[k])});
            // The date goes out bare, as the modeller writes it; element 6 (the
            // "<hr size=1>" rule) is dropped.
            text.PrintLine(record[5]);
        }
    });
}

}  // namespace ravelo::LogToHtm
