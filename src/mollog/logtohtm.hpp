// The molecule log and its HTML index: the modeller's log of saved models
// copied into a page of links (molecule.htm, with its search results page
// MolSrchData.htm), and the page copied back into the log's own format
// (molecule.txt). The work runs from the window LogHtmForm1.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/program.hpp"

namespace ravelo::LogToHtm {

// The molecule log, \ravelo\molecule.log on the installation drive.
std::string LogPath(const Program& p);

// The record buffer: elements 1 to 10 (element 0 is not used). It lives as
// long as the window and is shared by both copies.
using RecordBuffer = std::array<std::string, 11>;

// "all" when the argument, trimmed and lower-cased, is exactly "all";
// "new" for anything else, no argument included.
std::string ModeWord(std::string_view commandTail);

// The headers of the HTML index and of the search results page, each only
// when FileExists answers no for its page. The search page is written at
// once; the index's header is returned (empty when the index is there), to
// be written with the first records copied into it, or alone by
// WritePendingHeader: the index appears once, whole.
std::string MakeHtmlHeaders(Program& p);
// Writes a header MakeHtmlHeaders returned and not yet written, as the
// index; clears it.
void WritePendingHeader(Program& p, std::string& indexHeader);

// The text of a link: the path line trimmed and without double quotes, then
// cut from both ends down to a character whose code lies from 65 to 122.
std::string LinkText(std::string_view pathLine);

// Appends every record of the log after the mode's starting point to the
// HTML index, as a link and its four field lines; a pending header of a new
// index goes first (and is cleared).
void CopyLogToHtml(Program& p, std::string_view mode, RecordBuffer& record, std::string& indexHeader);

// Appends every link of the HTML index after the mode's starting point to
// molecule.txt as a log record (after the log's header in mode "new").
void CopyHtmlToLog(Program& p, std::string_view mode, RecordBuffer& record);

}  // namespace ravelo::LogToHtm
