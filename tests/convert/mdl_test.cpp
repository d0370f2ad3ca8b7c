// The MDL MOL/SDF reader on the cases the golden files leave out: the counts
// line, the end record's count, the title, bad input and real SD files.
#include "convert/mdl.hpp"

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
std::string Convert(TestProgram& t, const std::string& bytes, const std::string& path = "C:\\d\\m.mol",
                    const std::string& output = "C:\\d\\m.sxs") {
    t.Write(path, bytes);
    FilCvrt::PrepareInputFile(t.program(), path);
    readers::MDL::ConvertFile(t.program(), path);
    return t.Read(output);
}

// Three atom lines in the molfile's columns, and what they give.
const std::string kAtoms =
    "    1.1111    2.2222    3.3333 C   0  0  0  0  0  0\r\n"
    "   -4.4444    5.5555   -6.6666 Cl  0  0  0  0  0  0\r\n"
    "    7.7777   -8.8888    9.9999 N   0  0  0  0  0  0\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",1\r\n"
    "-4.4444,5.5555,-6.6666,\"Cl\",2\r\n"
    "7.7777,-8.8888,9.9999,\"N\",3\r\n";

TEST(MdlReader, ANameLineThatStartsWithANumberIsTheCountsLine) {
    TestProgram t;
    // "3 rings" is both the title and the counts line (3 atoms), so the atom
    // block starts on line 2; a full block of 3 ends with 3 + 2.
    EXPECT_EQ(Convert(t, "3 rings\r\n" + kAtoms + "  1  2  1  1\r\nM  END\r\n"),
              kRecords + "0,0,0,\"3 rings\",5\r\n");
}

TEST(MdlReader, TheEndRecordCountDependsOnHowTheBlockEnds) {
    const std::string header = "chain\r\n  test\r\n  3  2  0  0  0  0  0  0  0  0999 V2000\r\n";
    {
        // All three atoms read: the counter was raised to 4 before the
        // count stopped it, so the end record carries 3 + 2.
        TestProgram t;
        EXPECT_EQ(Convert(t, header + kAtoms + "  1  2  1  1\r\nM  END\r\n"),
                  kRecords + "0,0,0,\"chain\",5\r\n");
    }
    {
        // The file ends right after the third atom: 3 + 1.
        TestProgram t;
        EXPECT_EQ(Convert(t, header + kAtoms), kRecords + "0,0,0,\"chain\",4\r\n");
    }
}

TEST(MdlReader, ARunTogetherCountsLineReadsOnIntoTheBondBlock) {
    const std::string header = "chain\r\n  test\r\n101112  0  0  0  0  0  0999 V2000\r\n";
    {
        // The six digits are one count of 101112. A bond line of whole
        // numbers without a lone 0 ends the block at the fourth try: 4 + 1.
        TestProgram t;
        EXPECT_EQ(Convert(t, header + kAtoms + "  1  2  1  1\r\nM  END\r\n"),
                  kRecords + "0,0,0,\"chain\",5\r\n");
    }
    {
        // A bond line with lone zeros is widened to 0.0000 by the cleaning
        // and read as a fourth atom at the origin, without a letter for a
        // symbol; "M  END" ends the block at the fifth try: 5 + 1.
        TestProgram t;
        EXPECT_EQ(Convert(t, header + kAtoms + "  1  2  1  0  0  0  0\r\nM  END\r\n"),
                  kRecords + "0,0,0,\"\",4\r\n0,0,0,\"chain\",6\r\n");
    }
}

TEST(MdlReader, TheOutputPathEndsAtTheFirstDotOfThePath) {
    const std::string input = "t\r\n  3  2\r\n" + kAtoms;
    {
        TestProgram t;  // a folder with a dot: the output lies in the drive's root
        EXPECT_EQ(Convert(t, input, "C:\\data.v2\\m.mol", "C:\\data.sxs"), kRecords + "0,0,0,\"t\",4\r\n");
    }
    {
        // A typed name without any dot: the output is ".sxs" in the current
        // folder.
        TestProgram t;
        t.Write("C:\\d\\plain", input);
        t.program().fs.ChDir("C:\\d");
        readers::MDL::ConvertFile(t.program(), "plain");
        EXPECT_EQ(t.Read("C:\\d\\.sxs"), kRecords + "0,0,0,\"t\",4\r\n");
    }
}

TEST(MdlReader, BadInputConvertsOrEndsInAReadingErrorAndKeepsTheInput) {
    auto run = [](TestProgram& t, const std::string& bytes) {
        t.Write("C:\\d\\m.sdf", bytes);
        FilCvrt::PrepareInputFile(t.program(), "C:\\d\\m.sdf");
        return ErrorOf([&] { readers::MDL::ConvertFile(t.program(), "C:\\d\\m.sdf"); });
    };
    for (const std::string& noCounts :
         {std::string(), std::string("no counts\r\n  prog\r\n    0.1111    2.2222    3.3333 C\r\n")}) {
        // No line's first field is a positive number (0.1111 rounds to 0):
        // the search for the counts line reads past the end of the file.
        TestProgram t;
        EXPECT_EQ(run(t, noCounts), 62);
        EXPECT_EQ(t.Read("C:\\d\\m.sdf"), noCounts);
        EXPECT_EQ(t.Read("C:\\d\\m.sxs"), "");  // nothing written to it
    }
    {
        TestProgram t;  // a counts line alone: no atoms, the end record is deleted
        EXPECT_EQ(run(t, "  3  2  0"), 0);
        EXPECT_FALSE(t.Exists("C:\\d\\m.sxs"));
        EXPECT_EQ(t.Read("C:\\d\\m.sdf"), "  3  2  0\r\n");
    }
    {
        TestProgram t;
        std::string binary;
        for (int i = 0; i < 4000; ++i) binary += static_cast<char>((i * 37 + i / 7) % 256);
        // No counts line (62) or a first field too large for a count (6)
        // may stop it; nothing else may.
        const int error = run(t, binary);
        EXPECT_TRUE(error == 0 || error == 6 || error == 62) << error;
        EXPECT_TRUE(t.Exists("C:\\d\\m.sdf"));
    }
}

}  // namespace
}  // namespace ravelo
