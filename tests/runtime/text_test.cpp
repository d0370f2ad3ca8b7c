// The error table and the text routines: byte semantics, positions from 1,
// and the cutting rules for a marker or length that is not there.
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "runtime/error.hpp"
#include "runtime/text.hpp"
#include "support/error_of.hpp"

using namespace ravelo;

namespace {
using test::ErrorOf;
}  // namespace

TEST(RuntimeErrors, RaiseCarriesTheClassicText) {
    try {
        Raise(kInputPastEnd);
        FAIL();
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number, 62);
        EXPECT_STREQ(e.what(), "Input past end of file");
    }
    EXPECT_EQ(ErrorDescription(75), "Path/File access error");
    EXPECT_EQ(ErrorDescription(1234), "Application-defined or object-defined error");
    try {
        EndProgram(3);
        FAIL();
    } catch (const ProgramEnd& end) {
        EXPECT_EQ(end.status, 3);
    }
}

TEST(Text, TrimsBlanksOnlyAndChangesAsciiCaseOnly) {
    EXPECT_EQ(Trim("  a\tb  "), "a\tb");
    EXPECT_EQ(Trim("\t a \t"), "\t a \t");  // a tab is not a blank
    EXPECT_EQ(Trim("    ") + std::string(TrimView("  a b  ")), "a b");
    EXPECT_EQ(LTrim("  a  ") + RTrim("  a  "), "a    a");
    std::string s = "  x  ", blanks = "   ";
    TrimInPlace(s);
    TrimInPlace(blanks);
    EXPECT_EQ(s + blanks, "x");
    // Bytes above 127 (Latin-1 e-acute, A-grave) and "{" stay as they are.
    EXPECT_EQ(UCase("az{\xe9"), "AZ{\xe9");
    EXPECT_EQ(LCase("\xc0" "BZ@"), "\xc0" "bz@");
}

TEST(Text, SearchesFromOneWithStartClampedBelowAndWithoutCase) {
    EXPECT_EQ(InStr("abcabc", "c"), 3u);
    EXPECT_EQ(InStr("abcabc", "c", 4), 6u);
    EXPECT_EQ(InStr("abcabc", "c", 0), 3u);
    EXPECT_EQ(InStr("abcabc", "c", 7), 0u);
    EXPECT_EQ(InStr("abc", "", 4), 4u);
    EXPECT_EQ(InStr("abc", "", 5), 0u);
    EXPECT_EQ(InStrRev("C:\\a\\b.c", "\\"), 5u);
    EXPECT_TRUE(Contains("molecule.log", ".lo"));
    EXPECT_FALSE(Contains("molecule.log", ".LO"));
    const std::tuple<const char*, const char*, bool> noCase[] = {
        {"REMARK   2 RESOLUTION RANGE HIGH", "resolution range high", true},
        {"_refine.ls_D_RES_high 2.0", "d_res_high", true},
        {"xdd_res_high", "d_res_high", true},  // a false start just before
        {"d_res_hig", "d_res_high", false}, {"ab", "", true}, {"a_1", "_1", true},
        {"\xe9", "\xc9", false},  // ASCII letters only, as UCase
    };
    for (const auto& [text, part, found] : noCase) EXPECT_EQ(ContainsNoCase(text, part), found) << text;
    EXPECT_TRUE(StartsWithNoCase("header    x", "HEADER"));
    EXPECT_FALSE(StartsWithNoCase("HEAD", "HEADER"));
}

TEST(Text, CutsOfShortTextsAtMissingMarkersAndOnePassReplace) {
    const std::pair<std::string, const char*> cuts[] = {
        {Left("abc", 5), "abc"}, {Right("abc", 9), "abc"}, {Mid("abcdef", 3), "cdef"}, {Mid("abc", 4), ""},
        {Mid("abcdef", 2, 3), "bcd"}, {Mid("abc", 2, 10), "bc"}, {Mid("abc", 5, 1), ""},
        {std::string(MidView("abc", 4)), ""}, {DropLast("name.mol", 4), "name"}, {DropLast("abc", 3), ""},
        {DropFirst(""), ""}, {Spaces(3), "   "}, {TextBefore("file.tar.gz", "."), "file"},
        {TextFrom("a=b=c", "="), "=b=c"}, {TextFrom("abc", "="), ""}, {TextAfter("a=b=c", "="), "b=c"},
        {TextAfter("abc", "="), ""}, {TextUpToIncluding("a=b=c", "=b"), "a=b"},
        {TextUpToIncluding("abc", "="), ""}, {Replace("x=END=ENDy", "=END", ""), "xy"},
        {Replace("aaa", "aa", "b"), "ba"},
        {Replace("ab", "a", "aa"), "aab"},  // the inserted text is not searched again
        {Replace("abc", "", "x"), "abc"},
    };
    int k = 0;
    for (const auto& [got, expected] : cuts) EXPECT_EQ(got, expected) << "case " << k++;
    for (const auto& cut : std::vector<std::function<void()>>{
             [] { Left("abc", -1); }, [] { Right("abc", -1); }, [] { Mid("abc", 0); },
             [] { Mid("abc", 1, -1); }, [] { DropLast("abc", 4); }, [] { DropLast("abc", -1); },
             [] { Spaces(-1); }, [] { MidView("abc", 0); }, [] { TextBefore("file", "."); }})
        EXPECT_EQ(ErrorOf(cut), 5);
}
