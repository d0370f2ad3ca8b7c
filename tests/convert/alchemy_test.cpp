// The Alchemy reader: the count line decides how many lines are atoms, the
// atom type gives the symbol, the number text is taken as it stands, and a
// second conversion is appended.
#include "convert/alchemy.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/filcvrt.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// Writes the input, cleans it as the converter window does, converts it and
// returns the SXS file ("" when there is none).
std::string Convert(TestProgram& t, const std::string& bytes, const std::string& path = "C:\\d\\a.alc",
                    const std::string& output = "C:\\d\\a.sxs") {
    t.Write(path, bytes);
    FilCvrt::PrepareInputFile(t.program(), path);
    readers::Alchemy::ConvertFile(t.program(), path);
    return t.Read(output);
}

// Three atoms numbered 2, 3 and 7, then bond lines whose order words and
// numbers would read as atoms if they were read at all.
const std::string kAtoms =
    "    2 C3      1.1111   2.2222   3.3333     0.0000\r\n"
    "    3 CAR    -4.4444   5.5555  -6.6666    -0.1000\r\n"
    "    7 NPL3    7.7777  -8.8888   9.9999     0.1000\r\n"
    "    1     2     3  SINGLE 1.5\r\n"
    "    2     3     7  DOUBLE 2.5\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",2\r\n"
    "-4.4444,5.5555,-6.6666,\"Ca\",3\r\n"  // CAR reads as calcium
    "7.7777,-8.8888,9.9999,\"N\",7\r\n";

TEST(AlchemyReader, TheCountLineDecidesHowManyLinesAreAtoms) {
    {
        // The words after the count are not read; the end record carries the
        // last atom's own number plus 1.
        TestProgram t;
        EXPECT_EQ(Convert(t, "    3 ATOMS,    2 BONDS,    0 CHARGES\r\n" + kAtoms),
                  kRecords + "0,0,0,\"a\",8\r\n");
    }
    {
        // A count below the atoms: the later atom lines are not read.
        TestProgram t;
        EXPECT_EQ(Convert(t, "4 ATOMS\r\n" + kAtoms.substr(0, kAtoms.find("    1     2")) +
                                 "    9 O2      1.0000   1.0000   1.0000\r\n"
                                 "   10 O2      2.0000   2.0000   2.0000\r\n"),
                  kRecords + "1,1,1,\"O\",9\r\n0,0,0,\"a\",10\r\n");
    }
    {
        // A count beyond the atom lines reads to the end of the file.
        TestProgram t;
        EXPECT_EQ(Convert(t, "3\r\n" + kAtoms.substr(0, kAtoms.find("    7 NPL3"))),
                  "");  // two atoms: too short
        EXPECT_EQ(Convert(t, "5\r\n" + kAtoms.substr(0, kAtoms.find("    1     2"))),
                  kRecords + "0,0,0,\"a\",8\r\n");
    }
}

TEST(AlchemyReader, NumbersAreTakenAsWrittenWithoutNormalising) {
    // A coordinate written as a bare 0 has no point, so it is passed over
    // and the next numbers with a point move up: here the charge becomes z.
    // (Normalised, the 0 would have been 0.0000 and read as x.)
    TestProgram t;
    EXPECT_EQ(Convert(t,
                      "3\r\n"
                      "    1 C3    0        2.0000   3.0000     0.5000\r\n"
                      "    2 H     1.0000   2.0000   3.0000     0.0000\r\n"
                      "    3 H     4.0000   5.0000   6.0000     0.0000\r\n"),
              "2,3,.5,\"C\",1\r\n1,2,3,\"H\",2\r\n4,5,6,\"H\",3\r\n0,0,0,\"a\",4\r\n");
}

TEST(AlchemyReader, ASecondConversionIsAppended) {
    TestProgram t;
    const std::string input = "3 ATOMS\r\n" + kAtoms;
    const std::string once = kRecords + "0,0,0,\"a\",8\r\n";
    EXPECT_EQ(Convert(t, input), once);
    EXPECT_EQ(Convert(t, input), once + once);
}

TEST(AlchemyReader, ACountLineWithoutANumberConvertsNothingAndAnEmptyFileFails) {
    {
        TestProgram t;
        EXPECT_EQ(Convert(t, "ATOMS 3\r\n" + kAtoms), "");
        EXPECT_FALSE(t.Exists("C:\\d\\a.sxs"));
    }
    {
        // No count line at all: reading it is past the end of the file.
        TestProgram t;
        t.Write("C:\\d\\a.alc", "");
        EXPECT_EQ(ErrorOf([&] { readers::Alchemy::ConvertFile(t.program(), "C:\\d\\a.alc"); }), 62);
        EXPECT_TRUE(t.Exists("C:\\d\\a.alc"));
    }
}

}  // namespace
}  // namespace ravelo
