// The force-field conversion beyond the edge-case table's mm2/mmx/mm3/mm4 rows:
// the dialects no extension reaches, the atom-type table, the FileConv window.
#include "convert/mm2mmx.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// A program whose installation drive holds `table` as its atom-type table.
void InstallTable(TestProgram& t, const std::string& table) {
    t.program().InstallDrive = "C:";
    t.Write("C:\\ravelo\\mmatoms.dat", table);
}

std::string Convert(TestProgram& t, const std::string& bytes, const std::string& dialect) {
    return test::Convert(
        t, [&](Program& p, const std::string& name) { MM2MMX::ConvertFile(p, name, dialect); }, "C:\\d\\f.mm2", bytes,
        "C:\\d\\f.sxs", false);
}

// Title and control lines, then atoms (x, y, z, type, one more value) among other values:
// 3, 1.500 and 0.25 are passed over; type 70 lies beyond the known types.
const std::string kControl = "title line\r\n  1  0  0\r\n  3  2\r\n";
const std::string kByType = kControl +
                            "  3  1.500  0.25  1.2500  2.0000  3.0000   1   0\r\n"
                            " -1.2500  0.25 -0.5000   5   7\r\n"
                            " 12.5000  1.0000  1.0000  70   0\r\n";

TEST(Mm2mmxConversion, TheDialectAndTheAtomTypeTableDecideWhatIsRead) {
    TestProgram t;
    t.Install();
    t.program().InstallDrive = "C:";
    // No table: nothing is converted, not even with an empty name.
    EXPECT_EQ(ErrorOf([&] { MM2MMX::ConvertFile(t.program(), "", "m2"); }), 53);
    // .inp files take symbols by type; a dialect that names neither table nor symbols sets none.
    InstallTable(t, test::DemoAtomTable());
    EXPECT_EQ(Convert(t, kByType, "np"), "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n12.5,1,1,\"Mg\",1\r\n0,0,0,\"f\",2\r\n");
    EXPECT_EQ(Convert(t, kByType, "zz"), "1.25,2,3,\"\",1\r\n-1.25,.25,-.5,\"\",1\r\n12.5,1,1,\"\",1\r\n0,0,0,\"f\",2\r\n");
    // Fewer than 59 entries: no entry for the unknown types; the atoms before it are written.
    InstallTable(t, "5\r\n1,\"C\"\r\n2,\"C\"\r\n3,\"C\"\r\n4,\"C\"\r\n5,\"H\"\r\n");
    EXPECT_EQ(ErrorOf([&] { Convert(t, kByType, "m2"); }), 9);
    EXPECT_EQ(t.Read("C:\\d\\f.sxs"), "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n");
    // An entry numbered beyond the table's count.
    InstallTable(t, "2\r\n1,\"C\"\r\n3,\"H\"\r\n");
    EXPECT_EQ(ErrorOf([&] { MM2MMX::ConvertFile(t.program(), "", "m2"); }), 9);
    // An unfilled entry (type 3; type 1 is given twice) is an empty symbol.
    InstallTable(t, "3\r\n1,\"C\"\r\n1,\"N\"\r\n2,\"H\"\r\n");
    EXPECT_EQ(Convert(t, kControl + "1.2500 2.0 3.0 1 0\r\n1.2500 2.0 3.0 2 0\r\n1.2500 2.0 3.0 3 0\r\n", "m2"),
              "1.25,2,3,\"N\",1\r\n1.25,2,3,\"H\",1\r\n1.25,2,3,\"\",1\r\n0,0,0,\"f\",2\r\n");
    // A count below 1 is an empty table, which the m3 dialect never looks at.
    InstallTable(t, "0\r\n");
    EXPECT_EQ(Convert(t, kControl + "1.2500 2.0000 3.0000 C\r\n-1.2500 1.0 1.0 H\r\n1.2500 5.0 5.0 O\r\n", "m3"),
              "1.25,2,3,\"C\",1\r\n-1.25,1,1,\"H\",1\r\n1.25,5,5,\"O\",1\r\n0,0,0,\"f\",2\r\n");
}

TEST(Mm2mmxConversion, TheFileConvWindowShowsTheNewFileAndItsPromptAgain) {
    TestProgram t("pick FileConv.File1 0\nclick FileConv.Command1\ndump FileConv\n", 0);
    t.Install();
    t.Write("C:\\ravelo\\mmatoms.dat", test::DemoAtomTable());
    t.Write("C:\\data\\My Mol.MMX", kByType);
    t.program().fs.ChDir("C:\\data");
    EXPECT_EQ(t.Run("fileconv"), 0);
    const std::string out = t.Output();
    EXPECT_NE(out.find("FileConv.Command1\t1\t-\tSelect a File Above to Process\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.File1\t1\t-\tMy_Mol.mmx|My_Mol.sxs\n"), std::string::npos) << out;
}

}  // namespace
}  // namespace ravelo
