// The M3D reader: the title from the second line, the atom lines up to the
// first bond-order word, the file's own atom numbers, and the last atom
// number that the window carries from one conversion to the next.
#include "convert/m3d.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

std::string Convert(TestProgram& t, std::int32_t& lastAtom, const std::string& bytes) {
    return test::Convert(
        t, [&](Program& p, const std::string& path) { readers::M3D::ConvertFile(p, path, lastAtom); },
        "C:\\d\\m.m3d", bytes, "C:\\d\\m.sxs");
}

// Atoms numbered 3, 5 and 9 (the numbers come first and are dropped before
// the symbol is looked for).
const std::string kHeader = "M3D 1.0\r\n  NAME benzene ring  \r\n";
const std::string kAtoms = "3 C 1.1111 2.2222 3.3333\r\n5 Cl -4.4444 5.5555 -6.6666\r\n9 N 7.7777 -8.8888 9.9999\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",3\r\n-4.4444,5.5555,-6.6666,\"Cl\",5\r\n7.7777,-8.8888,9.9999,\"N\",9\r\n";

TEST(M3dReader, AtomsRunToTheFirstLineThatNamesABondOrder) {
    struct Case {
        const char* name;
        std::string input, sxs;
    };
    const Case cases[] = {
        // The bond line holds a point, so only its order word ends the atoms.
        {"order word", kHeader + kAtoms + "3 5 1.5 AROMATIC-Double\r\n1 2 2.0 C 1.0 1.0 1.0\r\n",
         kRecords + "0,0,0,\"benzene ring\",10\r\n"},
        {"word in a comment", kHeader + kAtoms + "11 O 1.0 1.0 1.0 single-checked\r\n",
         kRecords + "0,0,0,\"benzene ring\",10\r\n"},
        // A line without a point ends them too; a one-word second line gives
        // no title.
        {"no point", "M3D\r\nNAME\r\n" + kAtoms + "3 5 1\r\n12 O 1.0 1.0 1.0\r\n", kRecords + "0,0,0,\"\",10\r\n"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        std::int32_t lastAtom = 0;
        EXPECT_EQ(Convert(t, lastAtom, c.input), c.sxs) << c.name;
        EXPECT_EQ(lastAtom, 9) << c.name;
    }
}

TEST(M3dReader, AConversionReplacesTheOutputAndAFileWithoutAtomsKeepsTheLastNumber) {
    TestProgram t;
    std::int32_t lastAtom = 0;
    EXPECT_EQ(Convert(t, lastAtom, kHeader + kAtoms), kRecords + "0,0,0,\"benzene ring\",10\r\n");
    EXPECT_EQ(Convert(t, lastAtom, kHeader + kAtoms), kRecords + "0,0,0,\"benzene ring\",10\r\n");
    // No atoms: the end record alone is too short and is deleted, and the
    // number stays for the window's next conversion.
    EXPECT_EQ(Convert(t, lastAtom, kHeader + "1 2 single\r\n"), "");
    EXPECT_FALSE(t.Exists("C:\\d\\m.sxs"));
    EXPECT_EQ(lastAtom, 9);
}

TEST(M3dReader, AnM3dFileGoesToTheM3dWindow) {
    TestProgram t;
    EXPECT_EQ(test::FileConv(t, "ring.m3d", "M3D\nNAME ring\n" + kAtoms + "3 5 double\n"), 0);
    EXPECT_EQ(t.Read("C:\\d\\ring.sxs"), kRecords + "0,0,0,\"ring\",10\r\n");
}

}  // namespace
}  // namespace ravelo
