// The Alchemy reader: the count line decides how many lines are atoms, the
// atom type gives the symbol, the number text is taken as it stands, and a
// second conversion is appended.
#include "convert/alchemy.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

std::string Convert(TestProgram& t, const std::string& bytes) {
    return test::Convert(t, readers::Alchemy::ConvertFile, "C:\\d\\a.alc", bytes, "C:\\d\\a.sxs");
}

// Three atoms numbered 2, 3 and 7, then bond lines whose order words and
// numbers would read as atoms if they were read at all.
const std::string kAtoms =
    "    2 C3      1.1111   2.2222   3.3333     0.0000\r\n"
    "    3 CAR    -4.4444   5.5555  -6.6666    -0.1000\r\n"
    "    7 NPL3    7.7777  -8.8888   9.9999     0.1000\r\n";
const std::string kBonds = "    1     2     3  SINGLE 1.5\r\n    2     3     7  DOUBLE 2.5\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",2\r\n"
    "-4.4444,5.5555,-6.6666,\"Ca\",3\r\n"  // CAR reads as calcium
    "7.7777,-8.8888,9.9999,\"N\",7\r\n";

TEST(AlchemyReader, TheCountLineDecidesHowManyLinesAreAtoms) {
    struct Case {
        const char* name;
        std::string input, sxs;
    };
    const Case cases[] = {
        // The words after the count are not read; the end record carries the
        // last atom's own number plus 1.
        {"count", "    3 ATOMS,    2 BONDS,    0 CHARGES\r\n" + kAtoms + kBonds, kRecords + "0,0,0,\"a\",8\r\n"},
        {"later atom lines not read", "4 ATOMS\r\n" + kAtoms +
             "    9 O2      1.0000   1.0000   1.0000\r\n   10 O2      2.0000   2.0000   2.0000\r\n",
         kRecords + "1,1,1,\"O\",9\r\n0,0,0,\"a\",10\r\n"},
        // A count beyond the atom lines reads to the end of the file.
        {"two atoms: too short", "3\r\n" + kAtoms.substr(0, kAtoms.find("    7 NPL3")), ""},
        {"count beyond", "5\r\n" + kAtoms, kRecords + "0,0,0,\"a\",8\r\n"},
        // A bare 0 has no point, so it is passed over and the next numbers
        // with a point move up: the charge becomes z. (Normalised, the 0
        // would have been 0.0000 and read as x.)
        {"numbers as written",
         "3\r\n    1 C3    0        2.0000   3.0000     0.5000\r\n"
         "    2 H     1.0000   2.0000   3.0000     0.0000\r\n    3 H     4.0000   5.0000   6.0000     0.0000\r\n",
         "2,3,.5,\"C\",1\r\n1,2,3,\"H\",2\r\n4,5,6,\"H\",3\r\n0,0,0,\"a\",4\r\n"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(Convert(t, c.input), c.sxs) << c.name;
    }
}

TEST(AlchemyReader, ASecondConversionIsAppended) {
    TestProgram t;
    const std::string input = "3 ATOMS\r\n" + kAtoms + kBonds, once = kRecords + "0,0,0,\"a\",8\r\n";
    EXPECT_EQ(Convert(t, input), once);
    EXPECT_EQ(Convert(t, input), once + once);
}

}  // namespace
}  // namespace ravelo
