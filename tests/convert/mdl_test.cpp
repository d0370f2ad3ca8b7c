// The MDL MOL/SDF reader on the cases the golden files leave out: the counts
// line, the end record's count, the title and the output's path.
#include "convert/mdl.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Three atom lines in the molfile's columns, and what they give.
const std::string kAtoms =
    "    1.1111    2.2222    3.3333 C   0  0  0  0  0  0\r\n"
    "   -4.4444    5.5555   -6.6666 Cl  0  0  0  0  0  0\r\n"
    "    7.7777   -8.8888    9.9999 N   0  0  0  0  0  0\r\n";
const std::string kRecords = "1.1111,2.2222,3.3333,\"C\",1\r\n-4.4444,5.5555,-6.6666,\"Cl\",2\r\n7.7777,-8.8888,9.9999,\"N\",3\r\n";

TEST(MdlReader, TheCountsLineAndHowTheBlockEndsGiveTheEndRecordsCount) {
    const std::string counts = "chain\r\n  test\r\n  3  2  0  0  0  0  0  0  0  0999 V2000\r\n";
    const std::string runTogether = "chain\r\n  test\r\n101112  0  0  0  0  0  0999 V2000\r\n";
    struct Case {
        const char* name;
        std::string input, sxs;
    };
    const Case cases[] = {
        // "3 rings" is both the title and the counts line (3 atoms), so the
        // atom block starts on line 2; a full block of 3 ends with 3 + 2.
        {"title is the counts line", "3 rings\r\n" + kAtoms + "  1  2  1  1\r\nM  END\r\n",
         kRecords + "0,0,0,\"3 rings\",5\r\n"},
        // All three atoms read: the counter was raised to 4 before the count
        // stopped it, so the end record carries 3 + 2.
        {"full block", counts + kAtoms + "  1  2  1  1\r\nM  END\r\n", kRecords + "0,0,0,\"chain\",5\r\n"},
        {"file ends after the block", counts + kAtoms, kRecords + "0,0,0,\"chain\",4\r\n"},
        // The six digits are one count of 101112. A bond line of whole
        // numbers without a lone 0 ends the block at the fourth try: 4 + 1.
        {"run-together counts", runTogether + kAtoms + "  1  2  1  1\r\nM  END\r\n",
         kRecords + "0,0,0,\"chain\",5\r\n"},
        // A bond line with lone zeros is widened to 0.0000 by the cleaning
        // and read as a fourth atom at the origin, without a letter for a
        // symbol; "M  END" ends the block at the fifth try: 5 + 1.
        {"bond line read as an atom", runTogether + kAtoms + "  1  2  1  0  0  0  0\r\nM  END\r\n",
         kRecords + "0,0,0,\"\",4\r\n0,0,0,\"chain\",6\r\n"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(test::Convert(t, readers::MDL::ConvertFile, "C:\\d\\m.mol", c.input, "C:\\d\\m.sxs"), c.sxs)
            << c.name;
    }
}

TEST(MdlReader, TheOutputPathEndsAtTheFirstDotOfThePath) {
    const std::string input = "t\r\n  3  2\r\n" + kAtoms, sxs = kRecords + "0,0,0,\"t\",4\r\n";
    TestProgram t;  // a folder with a dot: the output lies in the drive's root
    EXPECT_EQ(test::Convert(t, readers::MDL::ConvertFile, "C:\\data.v2\\m.mol", input, "C:\\data.sxs"), sxs);
    // A typed name without any dot: the output is ".sxs" in the current folder.
    t.Write("C:\\d\\plain", input);
    t.program().fs.ChDir("C:\\d");
    readers::MDL::ConvertFile(t.program(), "plain");
    EXPECT_EQ(t.Read("C:\\d\\.sxs"), sxs);
}

}  // namespace
}  // namespace ravelo
