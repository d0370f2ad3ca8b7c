// Classic string routines over bytes. Positions count from 1; every length
// and position is checked here, so callers never index outside a text.
#include "runtime/text.hpp"

#include <algorithm>

#include "runtime/error.hpp"

namespace ravelo {
namespace {

constexpr char kBlank = ' ';

// The start of a position-from-1 cut, or npos when `start` lies past the end.
std::size_t Offset(std::string_view s, long long start) {
    return static_cast<unsigned long long>(start) > s.size()
               ? std::string_view::npos
               : static_cast<std::size_t>(start - 1);
}

void RequireNonNegative(long long n) {
    if (n < 0) Raise(kInvalidCall);
}

char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string LTrim(std::string_view s) {
    const std::size_t first = s.find_first_not_of(kBlank);
    return first == std::string_view::npos ? std::string() : std::string(s.substr(first));
}

std::string RTrim(std::string_view s) {
    const std::size_t last = s.find_last_not_of(kBlank);
    return last == std::string_view::npos ? std::string() : std::string(s.substr(0, last + 1));
}

std::string_view TrimView(std::string_view s) {
    const std::size_t first = s.find_first_not_of(kBlank);
    if (first == std::string_view::npos) return {};
    const std::size_t last = s.find_last_not_of(kBlank);
    return s.substr(first, last - first + 1);
}

std::string Trim(std::string_view s) { return std::string(TrimView(s)); }

void TrimInPlace(std::string& s) {
    const std::size_t last = s.find_last_not_of(kBlank);
    s.erase(last == std::string::npos ? 0 : last + 1);
    s.erase(0, s.find_first_not_of(kBlank));
}

std::string UCase(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(), ToUpper);
    return out;
}

std::string LCase(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(), ToLower);
    return out;
}

std::size_t InStr(std::string_view s, std::string_view what, long long start) {
    if (start < 1) start = 1;
    // Beyond len + 1 nothing can be found, not even the empty text.
    if (static_cast<unsigned long long>(start) > s.size() + 1) return 0;
    const std::size_t at = s.find(what, static_cast<std::size_t>(start - 1));
    return at == std::string_view::npos ? 0 : at + 1;
}

std::size_t InStrRev(std::string_view s, std::string_view what) {
    if (s.empty()) return 0;
    // As the classic routine searching from the last character: an empty
    // `what` is found there.
    if (what.empty()) return s.size();
    const std::size_t at = s.rfind(what);
    return at == std::string_view::npos ? 0 : at + 1;
}

bool Contains(std::string_view s, std::string_view what) {
    return s.find(what) != std::string_view::npos;
}

bool StartsWithNoCase(std::string_view s, std::string_view what) {
    if (what.size() > s.size()) return false;
    for (std::size_t i = 0; i < what.size(); ++i)
        if (ToUpper(s[i]) != ToUpper(what[i])) return false;
    return true;
}

bool ContainsNoCase(std::string_view s, std::string_view what) {
    if (what.empty()) return true;
    if (what.size() > s.size()) return false;
    // Candidates are the places of the first character in either case, each
    // found by a library search; the nearer one is tried and searched anew.
    const std::string_view starts = s.substr(0, s.size() - what.size() + 1);
    const char cases[2] = {ToUpper(what[0]), ToLower(what[0])};
    std::size_t next[2] = {starts.find(cases[0]), cases[0] == cases[1] ? std::string_view::npos : starts.find(cases[1])};
    for (;;) {
        const int nearer = next[1] < next[0] ? 1 : 0;
        const std::size_t at = next[nearer];
        if (at == std::string_view::npos) return false;
        if (StartsWithNoCase(s.substr(at), what)) return true;
        next[nearer] = starts.find(cases[nearer], at + 1);
    }
}

std::string Left(std::string_view s, long long n) {
    RequireNonNegative(n);
    return std::string(s.substr(0, static_cast<std::size_t>(std::min<unsigned long long>(
                                       static_cast<unsigned long long>(n), s.size()))));
}

std::string Right(std::string_view s, long long n) {
    RequireNonNegative(n);
    const std::size_t keep = static_cast<std::size_t>(
        std::min<unsigned long long>(static_cast<unsigned long long>(n), s.size()));
    return std::string(s.substr(s.size() - keep));
}

std::string_view MidView(std::string_view s, long long start) {
    if (start < 1) Raise(kInvalidCall);
    const std::size_t at = Offset(s, start);
    return at == std::string_view::npos ? std::string_view() : s.substr(at);
}

std::string Mid(std::string_view s, long long start) { return std::string(MidView(s, start)); }

std::string Mid(std::string_view s, long long start, long long length) {
    if (start < 1) Raise(kInvalidCall);
    RequireNonNegative(length);
    const std::size_t at = Offset(s, start);
    if (at == std::string_view::npos) return {};
    const std::size_t count = static_cast<std::size_t>(
        std::min<unsigned long long>(static_cast<unsigned long long>(length), s.size() - at));
    return std::string(s.substr(at, count));
}

std::string DropLast(std::string_view s, long long n) {
    RequireNonNegative(n);
    if (static_cast<unsigned long long>(n) > s.size()) Raise(kInvalidCall);
    return std::string(s.substr(0, s.size() - static_cast<std::size_t>(n)));
}

std::string DropFirst(std::string_view s) {
    return s.empty() ? std::string() : std::string(s.substr(1));
}

std::string TextBefore(std::string_view s, std::string_view marker) {
    const std::size_t at = s.find(marker);
    if (at == std::string_view::npos) Raise(kInvalidCall);
    return std::string(s.substr(0, at));
}

std::string TextFrom(std::string_view s, std::string_view marker) {
    const std::size_t at = s.find(marker);
    return at == std::string_view::npos ? std::string() : std::string(s.substr(at));
}

std::string TextAfter(std::string_view s, std::string_view marker) {
    const std::size_t at = s.find(marker);
    return at == std::string_view::npos ? std::string() : std::string(s.substr(at + marker.size()));
}

std::string TextUpToIncluding(std::string_view s, std::string_view marker) {
    const std::size_t at = s.find(marker);
    return at == std::string_view::npos ? std::string()
                                        : std::string(s.substr(0, at + marker.size()));
}

std::string Replace(std::string_view s, std::string_view what, std::string_view with) {
    // Replacing the empty text would never end; the classic routine returns
    // the text unchanged.
    if (what.empty()) return std::string(s);
    std::string out;
    out.reserve(s.size());
    std::size_t from = 0;
    for (std::size_t at = s.find(what); at != std::string_view::npos; at = s.find(what, from)) {
        out.append(s.substr(from, at - from));
        out.append(with);
        from = at + what.size();
    }
    out.append(s.substr(from));
    return out;
}

std::string Spaces(long long n) {
    RequireNonNegative(n);
    return std::string(static_cast<std::size_t>(n), kBlank);
}

}  // namespace ravelo
