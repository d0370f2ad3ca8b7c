// The Tripos MOL2 reader on the cases the golden files leave out: which atom
// section and title are taken, the file's own atom numbers, the append on a
// second conversion, and files without an atom section.
#include "convert/tripos.hpp"

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
std::string Convert(TestProgram& t, const std::string& bytes, const std::string& path = "C:\\d\\t.mop",
                    const std::string& output = "C:\\d\\t.sxs") {
    t.Write(path, bytes);
    FilCvrt::PrepareInputFile(t.program(), path);
    readers::Tripos::ConvertFile(t.program(), path);
    return t.Read(output);
}

// Three atoms numbered 4, 7 and 9, named CL1, C1 and N2, whose Sybyl types
// would give other symbols (the types are not read).
const std::string kAtoms =
    "@<TRIPOS>ATOM\r\n"
    "      4 CL1     1.1111    2.2222    3.3333 Cl        1 LIG  0.0000\r\n"
    "      7 C1     -4.4444    5.5555   -6.6666 N.ar      1 LIG -0.1000\r\n"
    "      9 N2      7.7777   -8.8888    9.9999 O.3       1 LIG  0.1000\r\n"
    "@<TRIPOS>BOND\r\n"
    "     1     4     7    1\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"Cl\",4\r\n"
    "-4.4444,5.5555,-6.6666,\"C\",7\r\n"
    "7.7777,-8.8888,9.9999,\"N\",9\r\n";

TEST(TriposReader, TheFirstAtomSectionKeepsTheFilesOwnNumbersAndTheMoleculesName) {
    TestProgram t;
    // The name is taken as it stands apart from its outer blanks (no "_"
    // for the blank, the comma or the point); the end record carries the
    // last atom's number plus 1, not the count. The second molecule is not
    // read.
    EXPECT_EQ(
        Convert(t, "# comment\r\n@<TRIPOS>MOLECULE\r\n  ring, v.2  \r\n 3 1 0 0 0\r\nSMALL\r\n" + kAtoms +
                       "@<TRIPOS>MOLECULE\r\nsecond\r\n@<TRIPOS>ATOM\r\n"
                       "      1 O1      1.0000    1.0000    1.0000 O.3   1 X  0.0\r\n"),
        kRecords + "0,0,0,\"ring, v.2\",10\r\n");
}

TEST(TriposReader, TheLineAfterTheMoleculeHeaderIsTheTitleWhateverItHolds) {
    {
        // An empty name line is dropped by the cleaning, so the counts line
        // follows the header and becomes the title.
        TestProgram t;
        EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\n\r\n 3 1 0 0 0\r\n" + kAtoms),
                  kRecords + "0,0,0,\"3 1 0 0 0\",10\r\n");
    }
    {
        // A header followed at once by the atom section: that line is the
        // title and it starts the section too.
        TestProgram t;
        EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\n" + kAtoms), kRecords + "0,0,0,\"@<TRIPOS>ATOM\",10\r\n");
    }
    {
        // A title line that reads like a molecule header is not taken as one:
        // the title stays, and the line after it is an ordinary line.
        TestProgram t;
        EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\n@<TRIPOS>MOLECULE\r\nname\r\n" + kAtoms),
                  kRecords + "0,0,0,\"@<TRIPOS>MOLECULE\",10\r\n");
    }
    {
        // No molecule header before the atoms: an empty title.
        TestProgram t;
        EXPECT_EQ(Convert(t, kAtoms), kRecords + "0,0,0,\"\",10\r\n");
    }
}

TEST(TriposReader, TheSectionEndsAtALineWithoutAPointOrAtTheEndOfTheFile) {
    {
        // A line of whole numbers ends the atoms even before the next header.
        TestProgram t;
        EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtoms.substr(0, kAtoms.find("@<TRIPOS>BOND")) +
                                 "     10 C3    1 2 3 C3\r\n"
                                 "     11 C4     1.0000    2.0000    3.0000 C.3\r\n"),
                  kRecords + "0,0,0,\"m\",10\r\n");
    }
    {
        // No bond section: the atoms run to the end of the file.
        TestProgram t;
        EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtoms.substr(0, kAtoms.find("@<TRIPOS>BOND"))),
                  kRecords + "0,0,0,\"m\",10\r\n");
    }
}

TEST(TriposReader, ASecondConversionIsAppendedAndAFailedOneLeavesTheOutputAlone) {
    TestProgram t;
    const std::string input = "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtoms;
    const std::string once = kRecords + "0,0,0,\"m\",10\r\n";
    EXPECT_EQ(Convert(t, input), once);
    EXPECT_EQ(Convert(t, input), once + once);
    // Without an atom section the scan reads past the end of the file; the
    // two conversions before stay as they were, and so does the input.
    t.Write("C:\\d\\t.mop", "@<TRIPOS>MOLECULE\r\nm\r\n");
    EXPECT_EQ(ErrorOf([&] { readers::Tripos::ConvertFile(t.program(), "C:\\d\\t.mop"); }), 62);
    EXPECT_EQ(t.Read("C:\\d\\t.sxs"), once + once);
    EXPECT_EQ(t.Read("C:\\d\\t.mop"), "@<TRIPOS>MOLECULE\r\nm\r\n");
}

TEST(TriposReader, ATooShortFirstConversionIsDeletedAndANameWithoutAPointFails) {
    TestProgram t;
    // Two atoms and the end record: three lines, deleted by the final check.
    EXPECT_EQ(Convert(t, "@<TRIPOS>MOLECULE\r\nm\r\n@<TRIPOS>ATOM\r\n1 C 1.0 2.0 3.0\r\n2 C 4.0 5.0 6.0\r\n"),
              "");
    EXPECT_FALSE(t.Exists("C:\\d\\t.sxs"));
    // A typed name without a point has no base name to cut.
    t.program().fs.ChDir("C:\\d");
    t.Write("C:\\d\\plain", "@<TRIPOS>ATOM\r\n");
    EXPECT_EQ(ErrorOf([&] { readers::Tripos::ConvertFile(t.program(), "plain"); }), 5);
}

}  // namespace
}  // namespace ravelo
