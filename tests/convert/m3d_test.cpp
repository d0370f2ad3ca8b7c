// The M3D reader: the title from the second line, the atom lines up to the
// first bond-order word, the file's own atom numbers, the last atom number
// that the window carries from one conversion to the next, and short files.
#include "convert/m3d.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "convert/filcvrt.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// Writes the input, cleans it as the converter window does, converts it with
// the window's last atom number and returns the SXS file ("" when none).
std::string Convert(TestProgram& t, std::int32_t& lastAtom, const std::string& bytes,
                    const std::string& path = "C:\\d\\m.m3d") {
    t.Write(path, bytes);
    FilCvrt::PrepareInputFile(t.program(), path);
    readers::M3D::ConvertFile(t.program(), path, lastAtom);
    return t.Read("C:\\d\\m.sxs");
}

// Atoms numbered 3, 5 and 9 (the numbers come first and are dropped before
// the symbol is looked for), then the bond lines.
const std::string kHeader = "M3D 1.0\r\n  NAME benzene ring  \r\n";
const std::string kAtoms =
    "3 C 1.1111 2.2222 3.3333\r\n"
    "5 Cl -4.4444 5.5555 -6.6666\r\n"
    "9 N 7.7777 -8.8888 9.9999\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",3\r\n"
    "-4.4444,5.5555,-6.6666,\"Cl\",5\r\n"
    "7.7777,-8.8888,9.9999,\"N\",9\r\n";

TEST(M3dReader, AtomsRunToTheFirstLineThatNamesABondOrder) {
    std::int32_t lastAtom = 0;
    {
        // The bond line holds a point, so only its order word ends the atoms.
        TestProgram t;
        EXPECT_EQ(
            Convert(t, lastAtom, kHeader + kAtoms + "3 5 1.5 AROMATIC-Double\r\n1 2 2.0 C 1.0 1.0 1.0\r\n"),
            kRecords + "0,0,0,\"benzene ring\",10\r\n");
        EXPECT_EQ(lastAtom, 9);
    }
    {
        // An atom line with such a word in a comment ends the atoms there.
        TestProgram t;
        EXPECT_EQ(Convert(t, lastAtom, kHeader + kAtoms + "11 O 1.0 1.0 1.0 single-checked\r\n"),
                  kRecords + "0,0,0,\"benzene ring\",10\r\n");
    }
    {
        // A line without a point ends them too; a second line of one word
        // gives no title.
        TestProgram t;
        EXPECT_EQ(Convert(t, lastAtom, "M3D\r\nNAME\r\n" + kAtoms + "3 5 1\r\n12 O 1.0 1.0 1.0\r\n"),
                  kRecords + "0,0,0,\"\",10\r\n");
    }
}

TEST(M3dReader, AConversionReplacesTheOutputAndAFileWithoutAtomsKeepsTheLastNumber) {
    TestProgram t;
    std::int32_t lastAtom = 0;
    EXPECT_EQ(Convert(t, lastAtom, kHeader + kAtoms), kRecords + "0,0,0,\"benzene ring\",10\r\n");
    EXPECT_EQ(Convert(t, lastAtom, kHeader + kAtoms), kRecords + "0,0,0,\"benzene ring\",10\r\n");
    // No atoms: the end record alone (9 + 1) is too short and is deleted,
    // and the number stays for the window's next conversion.
    EXPECT_EQ(Convert(t, lastAtom, kHeader + "1 2 single\r\n"), "");
    EXPECT_FALSE(t.Exists("C:\\d\\m.sxs"));
    EXPECT_EQ(lastAtom, 9);
}

TEST(M3dReader, AFileOfFewerThanTwoLinesEndsInAReadingError) {
    TestProgram t;
    std::int32_t lastAtom = 0;
    t.Write("C:\\d\\m.m3d", "M3D only\r\n");
    EXPECT_EQ(ErrorOf([&] { readers::M3D::ConvertFile(t.program(), "C:\\d\\m.m3d", lastAtom); }), 62);
    EXPECT_EQ(t.Read("C:\\d\\m.m3d"), "M3D only\r\n");
}

TEST(M3dReader, AnM3dFileGoesToTheM3dWindow) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\ring.m3d", "M3D\nNAME ring\n" + kAtoms + "3 5 double\n");
    EXPECT_EQ(t.Run("fileconv C:\\data\\ring.m3d"), 0);
    EXPECT_EQ(t.Read("C:\\data\\ring.sxs"), kRecords + "0,0,0,\"ring\",10\r\n");
}

}  // namespace
}  // namespace ravelo
