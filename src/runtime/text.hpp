// Text routines with the classic string semantics: one character per byte,
// positions counted from 1, blanks (code 32 only) trimmed, ASCII case changes.
// Every "cut at a character" rule of the program goes through these, so the
// behaviour for a missing character is decided in one place.
#pragma once

#include <string>
#include <string_view>

namespace ravelo {

std::string Trim(std::string_view s);   // blanks only, never tabs
std::string_view TrimView(std::string_view s);  // the same, without a copy
void TrimInPlace(std::string& s);               // the same, in the text's own storage
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
std::string UCase(std::string_view s);  // A-Z / a-z only
std::string LCase(std::string_view s);

// Position (from 1) of `what` in `s` at or after `start` (from 1), 0 when not
// found. A start before the first character counts as the first character.
// An empty `what` is found at `start` when start <= len + 1.
std::size_t InStr(std::string_view s, std::string_view what, long long start = 1);
// Position of the last occurrence, 0 when not found.
std::size_t InStrRev(std::string_view s, std::string_view what);
bool Contains(std::string_view s, std::string_view what);
// Contains(UCase(s), UCase(what)) and the same for a text's start, without
// building the upper-case copies (for passes over every line of a file).
bool ContainsNoCase(std::string_view s, std::string_view what);
bool StartsWithNoCase(std::string_view s, std::string_view what);

// The first n characters (the whole text when shorter). n < 0 raises 5.
std::string Left(std::string_view s, long long n);
// The last n characters (the whole text when shorter). n < 0 raises 5.
std::string Right(std::string_view s, long long n);
// From character `start` (from 1) on; empty when start is past the end.
// start < 1 raises 5 (as the classic Mid does).
std::string Mid(std::string_view s, long long start);
std::string_view MidView(std::string_view s, long long start);  // the same, without a copy
// `length` characters from `start`; length < 0 or start < 1 raises 5.
std::string Mid(std::string_view s, long long start, long long length);
// The text less its last n characters; n larger than the text, or n < 0,
// raises 5.
std::string DropLast(std::string_view s, long long n);
// The text less its first character; empty stays empty.
std::string DropFirst(std::string_view s);

// Cutting at the first occurrence of `marker`:
// "the text before the first X": raises 5 when X does not occur.
std::string TextBefore(std::string_view s, std::string_view marker);
// "the text from the first X on": empty when X does not occur.
std::string TextFrom(std::string_view s, std::string_view marker);
// "the text after the first X": empty when X does not occur.
std::string TextAfter(std::string_view s, std::string_view marker);
// "up to and including the first X": empty when X does not occur.
std::string TextUpToIncluding(std::string_view s, std::string_view marker);

// Every occurrence of `what` replaced by `with`, left to right, one pass.
std::string Replace(std::string_view s, std::string_view what, std::string_view with);

// " " repeated n times (n < 0 raises 5).
std::string Spaces(long long n);

}  // namespace ravelo
