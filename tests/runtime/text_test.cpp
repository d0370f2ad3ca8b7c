// The error table and the text routines: byte semantics, positions from 1,
// and the cutting rules for a marker or length that is not there.
#include <gtest/gtest.h>

#include <functional>

#include "runtime/error.hpp"
#include "support/error_of.hpp"
#include "runtime/text.hpp"

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
    EXPECT_THROW(
        try { EndProgram(3); } catch (const ProgramEnd& end) {
            EXPECT_EQ(end.status, 3);
            throw;
        },
        ProgramEnd);
}

TEST(Text, TrimsBlanksOnlyAndChangesAsciiCaseOnly) {
    EXPECT_EQ(Trim("  a\tb  "), "a\tb");
    EXPECT_EQ(Trim("\t a \t"), "\t a \t");  // a tab is not a blank
    EXPECT_EQ(Trim("    "), "");
    EXPECT_EQ(LTrim("  a  ") + RTrim("  a  "), "a    a");
    // Bytes above 127 (Latin-1 e-acute, A-grave) and "{" stay as they are.
    EXPECT_EQ(UCase("az{\xe9"), "AZ{\xe9");
    EXPECT_EQ(LCase("\xc0" "BZ@"), "\xc0" "bz@");
}

TEST(Text, SearchesFromOneWithStartClampedBelow) {
    EXPECT_EQ(InStr("abcabc", "c"), 3u);
    EXPECT_EQ(InStr("abcabc", "c", 4), 6u);
    EXPECT_EQ(InStr("abcabc", "c", 0), 3u);
    EXPECT_EQ(InStr("abcabc", "c", 7), 0u);
    EXPECT_EQ(InStr("abc", "", 4), 4u);
    EXPECT_EQ(InStr("abc", "", 5), 0u);
    EXPECT_EQ(InStrRev("C:\\a\\b.c", "\\"), 5u);
    EXPECT_TRUE(Contains("molecule.log", ".lo"));
    EXPECT_FALSE(Contains("molecule.log", ".LO"));
}

TEST(Text, SearchesWithoutCase) {
    EXPECT_TRUE(ContainsNoCase("REMARK   2 RESOLUTION RANGE HIGH", "resolution range high"));
    EXPECT_TRUE(ContainsNoCase("_refine.ls_D_RES_high 2.0", "d_res_high"));
    EXPECT_TRUE(ContainsNoCase("xdd_res_high", "d_res_high"));  // a false start just before
    EXPECT_FALSE(ContainsNoCase("d_res_hig", "d_res_high"));
    EXPECT_TRUE(ContainsNoCase("ab", ""));
    EXPECT_FALSE(ContainsNoCase("\xe9", "\xc9"));  // ASCII letters only, as UCase
    EXPECT_TRUE(ContainsNoCase("a_1", "_1"));
    EXPECT_TRUE(StartsWithNoCase("header    x", "HEADER"));
    EXPECT_FALSE(StartsWithNoCase("HEAD", "HEADER"));
    EXPECT_EQ(TrimView("  a b  "), "a b");
    EXPECT_EQ(MidView("abc", 4), "");
    EXPECT_EQ(ErrorOf([] { MidView("abc", 0); }), 5);
    std::string s = "  x  ";
    TrimInPlace(s);
    EXPECT_EQ(s, "x");
    s = "   ";
    TrimInPlace(s);
    EXPECT_EQ(s, "");
}

TEST(Text, PositionalCutsOfShortTextsAndNegativeLengths) {
    EXPECT_EQ(Left("abc", 5), "abc");
    EXPECT_EQ(Right("abc", 9), "abc");
    EXPECT_EQ(Mid("abcdef", 3), "cdef");
    EXPECT_EQ(Mid("abc", 4), "");
    EXPECT_EQ(Mid("abcdef", 2, 3), "bcd");
    EXPECT_EQ(Mid("abc", 2, 10), "bc");
    EXPECT_EQ(Mid("abc", 5, 1), "");
    EXPECT_EQ(DropLast("name.mol", 4), "name");
    EXPECT_EQ(DropLast("abc", 3), "");
    EXPECT_EQ(DropFirst(""), "");
    EXPECT_EQ(Spaces(3), "   ");
    for (const auto& cut : std::vector<std::function<void()>>{
             [] { Left("abc", -1); }, [] { Right("abc", -1); }, [] { Mid("abc", 0); },
             [] { Mid("abc", 1, -1); }, [] { DropLast("abc", 4); }, [] { DropLast("abc", -1); },
             [] { Spaces(-1); }}) {
        EXPECT_EQ(ErrorOf(cut), 5);
    }
}

TEST(Text, CuttingAtAMissingMarker) {
    EXPECT_EQ(TextBefore("file.tar.gz", "."), "file");
    EXPECT_EQ(ErrorOf([] { TextBefore("file", "."); }), 5);
    EXPECT_EQ(TextFrom("a=b=c", "="), "=b=c");
    EXPECT_EQ(TextFrom("abc", "="), "");
    EXPECT_EQ(TextAfter("a=b=c", "="), "b=c");
    EXPECT_EQ(TextAfter("abc", "="), "");
    EXPECT_EQ(TextUpToIncluding("a=b=c", "=b"), "a=b");
    EXPECT_EQ(TextUpToIncluding("abc", "="), "");
}

TEST(Text, ReplaceIsOnePassLeftToRight) {
    EXPECT_EQ(Replace("x=END=ENDy", "=END", ""), "xy");
    EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(Replace("ab", "a", "aa"), "aab");  // the inserted text is not searched again
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
}
