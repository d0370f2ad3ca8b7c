// The Tripos MOL2 reader on the cases the golden files leave out: which atom
// section and title are taken, the file's own atom numbers, where the atoms
// end, and the append on a second conversion.
#include "convert/tripos.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

std::string Convert(TestProgram& t, const std::string& bytes) {
    return test::Convert(t, readers::Tripos::ConvertFile, "C:\\d\\t.mop", bytes, "C:\\d\\t.sxs");
}

// Three atoms numbered 4, 7 and 9, named CL1, C1 and N2, whose Sybyl types
// would give other symbols (the types are not read).
const std::string kAtomLines =
    "@<TRIPOS>ATOM\r\n"
    "      4 CL1     1.1111    2.2222    3.3333 Cl        1 LIG  0.0000\r\n"
    "      7 C1     -4.4444    5.5555   -6.6666 N.ar      1 LIG -0.1000\r\n"
    "      9 N2      7.7777   -8.8888    9.9999 O.3       1 LIG  0.1000\r\n";
const std::string kAtoms = kAtomLines + "@<TRIPOS>BOND\r\n     1     4     7    1\r\n";
const std::string kRecords = "1.1111,2.2222,3.3333,\"Cl\",4\r\n-4.4444,5.5555,-6.6666,\"C\",7\r\n7.7777,-8.8888,9.9999,\"N\",9\r\n";

TEST(TriposReader, TheFirstAtomSectionAndTheLineAfterTheMoleculeHeader) {
    struct Case {
        const char* name;
        std::string input, title;
    };
    const Case cases[] = {
        // The name is taken as it stands apart from its outer blanks (no "_"
        // for the blank, the comma or the point); the end record carries the
        // last atom's number plus 1, not the count. The second molecule is
        // not read.
        {"first molecule",
         "# comment\r\n@<TRIPOS>MOLECULE\r\n  ring, v.2  \r\n 3 1 0 0 0\r\nSMALL\r\n" + kAtoms +
             "@<TRIPOS>MOLECULE\r\nsecond\r\n@<TRIPOS>ATOM\r\n      1 O1      1.0000    1.0000    1.0000 O.3   1 X  0.0\r\n",
         "ring, v.2"},
        // An empty name line is dropped by the cleaning, so the counts line
        // follows the header and becomes the title.
        {"empty name", "@<TRIPOS>MOLECULE\r\n\r\n 3 1 0 0 0\r\n" + kAtoms, "3 1 0 0 0"},
        // The atom section at once: that line is the title and starts the
        // section too.
        {"no name line", "@<TRIPOS>MOLECULE\r\n" + kAtoms, "@<TRIPOS>ATOM"},
        // A title that reads like a molecule header is not taken as one.
        {"header as title", "@<TRIPOS>MOLECULE\r\n@<TRIPOS>MOLECULE\r\nname\r\n" + kAtoms, "@<TRIPOS>MOLECULE"},
        {"no header", kAtoms, ""},
        // A line of whole numbers ends the atoms even before the next header.
        {"line without a point", "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtomLines +
             "     10 C3    1 2 3 C3\r\n     11 C4     1.0000    2.0000    3.0000 C.3\r\n", "m"},
        // No bond section: the atoms run to the end of the file.
        {"end of file", "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtomLines, "m"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(Convert(t, c.input), kRecords + "0,0,0,\"" + c.title + "\",10\r\n") << c.name;
    }
}

TEST(TriposReader, ASecondConversionIsAppendedAndAFailedOneLeavesTheOutputAlone) {
    TestProgram t;
    const std::string input = "@<TRIPOS>MOLECULE\r\nm\r\n" + kAtoms, once = kRecords + "0,0,0,\"m\",10\r\n";
    EXPECT_EQ(Convert(t, input), once);
    EXPECT_EQ(Convert(t, input), once + once);
    // Without an atom section the scan reads past the end of the file.
    EXPECT_EQ(ErrorOf([&] { Convert(t, "@<TRIPOS>MOLECULE\r\nm\r\n"); }), 62);
    EXPECT_EQ(t.Read("C:\\d\\t.sxs"), once + once);
    // A typed name without a point has no base name to cut.
    t.program().fs.ChDir("C:\\d");
    t.Write("C:\\d\\plain", "@<TRIPOS>ATOM\r\n");
    EXPECT_EQ(ErrorOf([&] { readers::Tripos::ConvertFile(t.program(), "plain"); }), 5);
}

}  // namespace
}  // namespace ravelo
