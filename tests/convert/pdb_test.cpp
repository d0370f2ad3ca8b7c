// The PDB reader on the cases the golden files leave out: atom numbers, the
// resolution line, entry codes and renames, and short coordinate lines.
#include "convert/pdb.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "core/shared.hpp"  // for GetTempDir
#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// One ATOM or HETATM record in the fixed columns of the format.
std::string Atom(const char* record, int number, const char* name, double x, double y, double z) {
    char line[100];
    std::snprintf(line, sizeof line, "%-6s%5d %-4s GLY A  17    %8.3f%8.3f%8.3f  1.00 20.00\r\n", record,
                  number, name, x, y, z);
    return line;
}

// Converts as the window does (TEMP set for the N log); `progress` collects
// the texts for the progress label. Returns the lines of C:\d\<xxs>.
std::vector<std::string> Convert(TestProgram& t, const std::string& path, const std::string& bytes,
                                 const std::string& xxs, std::vector<std::string>* progress = nullptr) {
    GetTempDir(t.program());
    const auto reader = [progress](Program& p, const std::string& name) {
        readers::PDB::ConvertFile(p, name, [progress](const std::string& text) {
            if (progress) progress->push_back(text);
        });
    };
    std::istringstream in(test::Convert(t, reader, path, bytes, "C:\\d\\" + xxs));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find('\r')));
    return lines;
}

std::string NLog(const TestProgram& t) { return test::ReadHostFile(t.Temp() / "Ravelo" / "RaveloFilConvN.Txt"); }

const std::string kThreeAtoms = Atom("ATOM", 1, " N", 1.111, 2.222, 3.333) + Atom("ATOM", 2, " CA", 4.444, 5.555, 6.666) +
                                Atom("ATOM", 3, " C", 7.777, 8.888, 9.999);

TEST(PdbReader, AtomNumbersAreTheFilesOwnAndTheLastOneCloses) {
    TestProgram t;
    // Record names are upper case; a line without a decimal point is no atom.
    // The closing number follows the last atom written (12), not the largest
    // number (3050) nor the number of atoms.
    EXPECT_EQ(Convert(t, "C:\\d\\p.pdb",
                      "HEADER    T\r\n" + Atom("ATOM", 7, " N", 1.111, 2.222, 3.333) +
                          Atom("atom", 8, " O", 9.0, 9.0, 9.0) + Atom("Hetatm", 9, " O", 9.0, 9.0, 9.0) +
                          "ATOMS IN THIS FILE 4\r\n" + Atom("HETATM", 3050, "ZN", 4.444, 5.555, 6.666) +
                          Atom("ATOM", 12, " CA", 7.777, 8.888, 9.999),
                      "p.xxs"),
              (std::vector<std::string>{"1.111,2.222,3.333,\"N\",7", "4.444,5.555,6.666,\"Zn\",3050",
                                        "7.777,8.888,9.999,\"C\",12", "0,0,0,\"p.pdb\",13"}));
}

TEST(PdbReader, TheFirstResolutionLineGivesTheTextFromTwoBeforeItsFirstDot) {
    struct Case {
        std::string lines, expected;
    };
    const Case cases[] = {
        // The number holds the line's first ".": the number is taken; the
        // later line of another section does not count.
        {"REMARK   3   RESOLUTION RANGE HIGH (ANGSTROMS) : 1.90\r\n"
         "REMARK 200  RESOLUTION RANGE HIGH      (A) : 2.000\r\n",
         "1.90"},
        // The data name holds the first "." ("_reflns."): the text starts
        // two characters before it.
        {"_reflns.d_resolution_high   1.85\r\n", "ns.d_resolution_high   1.85"},
        // No "." at all: the whole line, and it stays the first one found.
        {"REMARK   2 D_RES_HIGH NULL\r\nREMARK   3 RESOLUTION RANGE HIGH : 2.50\r\n", "REMARK   2 D_RES_HIGH NULL"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        const auto lines = Convert(t, "C:\\d\\r.pdb", c.lines + kThreeAtoms, "r.xxs");
        ASSERT_EQ(lines.size(), 5u) << c.lines;
        EXPECT_EQ(lines[3], "0,0,0,\"r.pdb\",4");
        EXPECT_EQ(lines[4], "Resolution_High = " + c.expected);
    }
    // The resolution line counts towards a valid file: two atoms, the
    // closing record and the resolution are kept; without it, deleted.
    const std::string twoAtoms = Atom("ATOM", 1, " N", 1.111, 2.222, 3.333) + Atom("ATOM", 2, " C", 4.444, 5.555, 6.666);
    TestProgram t;
    EXPECT_EQ(Convert(t, "C:\\d\\r.pdb", "REMARK   3   RESOLUTION RANGE HIGH (ANGSTROMS) : 1.90\r\n" + twoAtoms, "r.xxs")
                  .size(),
              4u);
    TestProgram u;
    EXPECT_TRUE(Convert(u, "C:\\d\\r.pdb", twoAtoms, "r.xxs").empty());
    EXPECT_FALSE(u.Exists("C:\\d\\r.xxs"));
}

TEST(PdbReader, ACsdEntryCodeNamesTheStructureAndRenamesTheInput) {
    {
        TestProgram t;
        std::vector<std::string> progress;
        // The later entry line wins; its code "AB.CD 01" is made safe for a
        // file name as AB_CD_01.
        const std::string input = "REMARK CSD ENTRY OLDONE\r\nREMARK CSD ENTRY  AB.CD 01 \r\n" + kThreeAtoms;
        EXPECT_EQ(Convert(t, "C:\\d\\x1.pdb", input, "AB_CD_01.xxs", &progress).back(), "0,0,0,\"AB_CD_01.pdb\",4");
        EXPECT_EQ(t.Read("C:\\d\\AB_CD_01.pdb"), input);
        EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"), (std::vector<std::string>{"AB_CD_01.pdb", "AB_CD_01.xxs"}));
        EXPECT_EQ(NLog(t), "\"C:\\d\\AB_CD_01.pdb\"\r\n");
        EXPECT_EQ(progress, std::vector<std::string>{"AB_CD_01"});
    }
    {
        // "ABC" differs from the base name "abc" as text, so the structure is
        // called ABC; the input's name is the same when case is ignored, so it
        // stays, and nothing is logged.
        TestProgram t;
        std::vector<std::string> progress;
        EXPECT_EQ(Convert(t, "C:\\d\\abc.pdb", "REMARK CSD ENTRY ABC\r\n" + kThreeAtoms, "ABC.xxs", &progress).back(),
                  "0,0,0,\"ABC.pdb\",4");
        EXPECT_TRUE(t.Exists("C:\\d\\abc.pdb"));
        EXPECT_EQ(NLog(t), "");
        EXPECT_EQ(progress, std::vector<std::string>{"ABC"});
    }
}

TEST(PdbReader, AShortCoordinateLineTakesItsLastNumberFromTheNextLine) {
    TestProgram t;
    // Atom 1 lacks its Z: the first decimal number of atom 2's line stands
    // in, and atom 2's line is used up.
    const auto lines = Convert(t, "C:\\d\\s.pdb",
                               "ATOM      1  N   GLY A  17      11.104   6.134\r\n" +
                                   Atom("ATOM", 2, " CA", 12.5, 6.071, -5.147) +
                                   Atom("ATOM", 3, " C", 7.777, 8.888, 9.999) + Atom("ATOM", 4, " O", 1.25, 2.5, 3.75),
                               "s.xxs");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].rfind("11.104,6.134,12.5,", 0), 0u) << lines[0];
    EXPECT_EQ(lines[0].substr(lines[0].rfind(',')), ",1") << lines[0];
    EXPECT_EQ(lines[1], "7.777,8.888,9.999,\"C\",3");
    EXPECT_EQ(lines[2], "1.25,2.5,3.75,\"O\",4");
    EXPECT_EQ(lines[3], "0,0,0,\"s.pdb\",5");
}

}  // namespace
}  // namespace ravelo
