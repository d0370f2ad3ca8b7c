// The XYZ reader on the cases the golden files leave out: the count line,
// short comment lines, line ends, bad input and a real file.
#include "convert/xyz.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "convert/filcvrt.hpp"
#include "support/error_of.hpp"
#include "support/sxs_record.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// The value that start-up sets and the reader uses: the element symbols.

// Writes the input, cleans it as the converter window does, converts it and
// returns the SXS file ("" when there is none).
std::string Convert(TestProgram& t, const std::string& bytes, const std::string& path = "C:\\d\\w.xyz",
                    const std::string& output = "C:\\d\\w.sxs") {
    t.Write(path, bytes);
    FilCvrt::PrepareInputFile(t.program(), path);
    readers::XYZ::ConvertFile(t.program(), path);
    return t.Read(output);
}

TEST(XyzReader, ShortLinesWithADecimalPointArePassedOver) {
    TestProgram t;
    // "short." and the 20-character C line hold a "." and are passed over;
    // the 21-character O line is the first atom. "H 0 0 0" has no "." as
    // written, but the cleaning widens each lone 0 to 0.0000 first, which
    // makes it a long atom line of its own.
    EXPECT_EQ(Convert(t,
                      "3\r\n"
                      "short.\r\n"
                      "C .2345 .3456 1.4567\r\n"
                      "O .2345 .3456 11.4567\r\n"
                      "H 0 0 0\r\n"
                      "N 1.1111 2.2222 3.3333\r\n"),
              ".2345,.3456,11.4567,\"O\",1\r\n"
              "0,0,0,\"H\",2\r\n"
              "1.1111,2.2222,3.3333,\"N\",3\r\n"
              "0,0,0,\"w\",4\r\n");
}

TEST(XyzReader, ACountBeyondTheAtomLinesEndsAtTheEndOfTheFile) {
    TestProgram t;
    // Five promised, three there: serials 1 to 3, the end record 3 + 1.
    EXPECT_EQ(Convert(t,
                      "5\r\n"
                      "only three.\r\n"
                      "C 1.1111 2.2222 3.3333\r\n"
                      "C 4.4444 5.5555 6.6666\r\n"
                      "Cl 7.7777 8.8888 9.9999\r\n"),
              "1.1111,2.2222,3.3333,\"C\",1\r\n"
              "4.4444,5.5555,6.6666,\"C\",2\r\n"
              "7.7777,8.8888,9.9999,\"Cl\",3\r\n"
              "0,0,0,\"w\",4\r\n");
}

TEST(XyzReader, TheCountLineIsKnownByItsLengthOnly) {
    const std::string atoms =
        "C 1.1111 2.2222 3.3333\r\n"
        "C 4.4444 5.5555 6.6666\r\n"
        "H 7.7777 8.8888 9.9999\r\n";
    {
        // "x" reads 0, printed back as "0": one character each, so it is a
        // count line with the count 0 and nothing is converted.
        TestProgram t;
        EXPECT_EQ(Convert(t, "x\r\n" + atoms), "");
        EXPECT_FALSE(t.Exists("C:\\d\\w.sxs"));
    }
    {
        // "3.0" prints back as "3": not a count line, so every non-empty line
        // is tried; "3.0" itself is a short line with a "." and is passed over.
        TestProgram t;
        EXPECT_EQ(Convert(t, "3.0\r\n" + atoms),
                  "1.1111,2.2222,3.3333,\"C\",1\r\n"
                  "4.4444,5.5555,6.6666,\"C\",2\r\n"
                  "7.7777,8.8888,9.9999,\"H\",3\r\n"
                  "0,0,0,\"w\",4\r\n");
    }
}

TEST(XyzReader, ACountBeyond32BitsOverflows) {
    TestProgram t;
    const std::string input = "4294967296\r\nbig\r\nC 1.1111 2.2222 3.3333\r\n";
    t.Write("C:\\d\\big.xyz", input);
    FilCvrt::PrepareInputFile(t.program(), "C:\\d\\big.xyz");
    EXPECT_EQ(ErrorOf([&] { readers::XYZ::ConvertFile(t.program(), "C:\\d\\big.xyz"); }), 6);
    EXPECT_EQ(t.Read("C:\\d\\big.xyz"), input);
    EXPECT_FALSE(t.Exists("C:\\d\\big.sxs"));
}

TEST(XyzReader, TheOutputPathEndsAtTheFirstDotOfTheWholePath) {
    TestProgram t;
    const std::string sxs = Convert(t,
                                    "3\r\nwater\r\n"
                                    "O 1.1111 2.2222 3.3333\r\n"
                                    "H 4.4444 5.5555 6.6666\r\n"
                                    "H 7.7777 8.8888 9.9999\r\n",
                                    "C:\\data.v2\\w.xyz", "C:\\data.sxs");
    // The title is still the file's own name.
    EXPECT_NE(sxs.find("0,0,0,\"w\",4\r\n"), std::string::npos) << sxs;
    EXPECT_FALSE(t.Exists("C:\\data.v2\\w.sxs"));
}

TEST(XyzReader, EveryKindOfLineEndGivesTheSameFile) {
    const std::vector<std::string> lines = {"3", "water", "O 0.000000 0.000000 0.117300",
                                            "H 0.000000 0.757200 -0.469200",
                                            "H 0.000000 -0.757200 -0.469200"};
    const std::string expected =
        "0,0,.1173,\"O\",1\r\n0,.7572,-.4692,\"H\",2\r\n0,-.7572,-.4692,\"H\",3\r\n0,0,0,\"w\",4\r\n";
    for (const std::string end : {"\r\n", "\n", "\r", ""}) {
        std::string input;
        for (const std::string& line : lines) input += line + (end.empty() ? "\r\n" : end);
        if (end.empty()) input.resize(input.size() - 2);  // no end after the last line
        TestProgram t;
        EXPECT_EQ(Convert(t, input), expected) << "line end of " << end.size() << " characters";
    }
}

TEST(XyzReader, BadInputConvertsOrEndsInAReadingErrorAndKeepsTheInput) {
    {
        TestProgram t;  // empty: only the end record, which is too short to keep
        EXPECT_EQ(Convert(t, ""), "");
        EXPECT_TRUE(t.Exists("C:\\d\\w.xyz"));
    }
    {
        TestProgram t;  // one atom and the end record: too short to keep
        EXPECT_EQ(Convert(t, "C 1.1111 2.2222 3.3333"), "");
        EXPECT_EQ(t.Read("C:\\d\\w.xyz"), "C 1.1111 2.2222 3.3333\r\n");
    }
    {
        TestProgram t;
        std::string binary;
        for (int i = 0; i < 4000; ++i) binary += static_cast<char>((i * 37 + i / 7) % 256);
        t.Write("C:\\d\\w.xyz", binary);
        FilCvrt::PrepareInputFile(t.program(), "C:\\d\\w.xyz");
        // A number too large for a count (6) or a short line at the end (62)
        // may stop it; nothing else may.
        const int error = ErrorOf([&] { readers::XYZ::ConvertFile(t.program(), "C:\\d\\w.xyz"); });
        EXPECT_TRUE(error == 0 || error == 6 || error == 62) << error;
        EXPECT_TRUE(t.Exists("C:\\d\\w.xyz"));
    }
}

}  // namespace
}  // namespace ravelo
