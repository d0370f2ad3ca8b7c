// The force-field input conversion: how a value is told to be the start of
// an atom, the symbols of each dialect, the fixed numbers of the records, the
// repeated last atom, the atom-type table, and the run from the converter.
#include "convert/mm2mmx.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// The demo installation's atom-type table.
std::string DemoTable() {
    return test::ReadHostFile(std::string(RAVELO_TEST_DATA) + "/../../demo/drive_c/ravelo/mmatoms.dat");
}

// A program whose installation drive holds `table` as its atom-type table.
void InstallTable(TestProgram& t, const std::string& table) {
    t.program().InstallDrive = "C:";
    t.Write("C:\\ravelo\\mmatoms.dat", table);
}

std::string Convert(TestProgram& t, const std::string& bytes, const std::string& dialect,
                    const std::string& path = "C:\\d\\f.mm2") {
    t.Write(path, bytes);
    MM2MMX::ConvertFile(t.program(), path, dialect);
    return t.Read("C:\\d\\f.sxs");
}

// Three title and control lines, then atoms among other values. Only a
// value whose standard text holds a point and has five characters or more
// starts an atom: 3, 1.500 (" 1.5") and 0.25 (" .25") are passed over, while
// 1.25, -1.25 and 12.5 start atoms. Each atom is x, y, z, the type number
// and one more value.
const std::string kControl = "title line\r\n  1  0  0\r\n  3  2\r\n";
const std::string kByType =
    "  3  1.500  0.25  1.2500  2.0000  3.0000   1   0\r\n"
    " -1.2500  0.25 -0.5000   5   7\r\n"
    " 12.5000  1.0000  1.0000  70   0\r\n";

TEST(Mm2mmxConversion, TypeNumbersGiveTheSymbolsAndEveryRecordCarriesOne) {
    TestProgram t;
    InstallTable(t, DemoTable());
    // Types 1 and 5 are carbon and hydrogen; 70 lies beyond the known types
    // and takes entry 59. The atom records carry 1, the end record 2.
    const std::string expected =
        "1.25,2,3,\"C\",1\r\n"
        "-1.25,.25,-.5,\"H\",1\r\n"
        "12.5,1,1,\"Mg\",1\r\n"
        "0,0,0,\"f\",2\r\n";
    EXPECT_EQ(Convert(t, kControl + kByType, "m2"), expected);
    EXPECT_EQ(Convert(t, kControl + kByType, "mx"), expected);
    EXPECT_EQ(Convert(t, kControl + kByType, "np", "C:\\d\\f.inp"), expected);
    // In a dialect that names neither table nor symbols, no symbol is set.
    EXPECT_EQ(Convert(t, kControl + kByType, "zz"),
              "1.25,2,3,\"\",1\r\n-1.25,.25,-.5,\"\",1\r\n12.5,1,1,\"\",1\r\n"
              "0,0,0,\"f\",2\r\n");
}

TEST(Mm2mmxConversion, Mm3AndMm4TakeTheSymbolFromTheAtomLine) {
    TestProgram t;
    InstallTable(t, DemoTable());
    // The text after z runs to the line end; its first two characters,
    // trimmed, are the symbol.
    const std::string expected =
        "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"Cl\",1\r\n12.5,1,1,\"Na\",1\r\n0,0,0,\"f\",2\r\n";
    const std::string input = kControl +
                              "  3  1.500  1.2500  2.0000  3.0000 C 1 (  1)\r\n"
                              " -1.2500  0.25 -0.5000 Cl2\r\n"
                              " 12.5000  1.0000  1.0000 Na\r\n";
    EXPECT_EQ(Convert(t, input, "m3", "C:\\d\\f.mm3"), expected);
    EXPECT_EQ(Convert(t, input, "m4", "C:\\d\\f.mm4"), expected);
}

TEST(Mm2mmxConversion, ValuesAfterTheLastAtomWriteItTwice) {
    TestProgram t;
    InstallTable(t, DemoTable());
    EXPECT_EQ(Convert(t, kControl + kByType + "  1  2  3\r\n  0\r\n", "m2"),
              "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n12.5,1,1,\"Mg\",1\r\n12.5,1,1,\"Mg\",1\r\n"
              "0,0,0,\"f\",2\r\n");
    // Nothing that starts an atom at all: one empty atom and the end record,
    // too short to keep.
    EXPECT_EQ(Convert(t, kControl + "  1  2  3\r\n", "m2"), "");
    EXPECT_FALSE(t.Exists("C:\\d\\f.sxs"));
}

TEST(Mm2mmxConversion, TheAtomTypeTableDecidesWhatCanBeRead) {
    {
        // No table: nothing is converted, not even with an empty name.
        TestProgram t;
        t.Install();
        t.program().InstallDrive = "C:";
        EXPECT_EQ(ErrorOf([&] { MM2MMX::ConvertFile(t.program(), "", "m2"); }), 53);
    }
    {
        // A table of fewer than 59 entries has no entry for the unknown
        // types; the atoms before it are written.
        TestProgram t;
        InstallTable(t, "5\r\n1,\"C\"\r\n2,\"C\"\r\n3,\"C\"\r\n4,\"C\"\r\n5,\"H\"\r\n");
        EXPECT_EQ(ErrorOf([&] { Convert(t, kControl + kByType, "m2"); }), 9);
        EXPECT_EQ(t.Read("C:\\d\\f.sxs"), "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n");
        EXPECT_EQ(t.Read("C:\\d\\f.mm2"), kControl + kByType);
    }
    {
        // An entry numbered beyond the table's count.
        TestProgram t;
        InstallTable(t, "2\r\n1,\"C\"\r\n3,\"H\"\r\n");
        EXPECT_EQ(ErrorOf([&] { MM2MMX::ConvertFile(t.program(), "", "m2"); }), 9);
    }
    {
        // An entry the table leaves unfilled is an empty symbol (here type 3,
        // as type 1 is given twice); a count below 1 is an empty table, which
        // the m3 dialect never looks at.
        TestProgram t;
        InstallTable(t, "3\r\n1,\"C\"\r\n1,\"N\"\r\n2,\"H\"\r\n");
        EXPECT_EQ(
            Convert(t, kControl + "1.2500 2.0 3.0 1 0\r\n1.2500 2.0 3.0 2 0\r\n1.2500 2.0 3.0 3 0\r\n", "m2"),
            "1.25,2,3,\"N\",1\r\n1.25,2,3,\"H\",1\r\n1.25,2,3,\"\",1\r\n0,0,0,\"f\",2\r\n");
        InstallTable(t, "0\r\n");
        EXPECT_EQ(Convert(t, kControl + "1.2500 2.0000 3.0000 C\r\n-1.2500 1.0 1.0 H\r\n1.2500 5.0 5.0 O\r\n",
                          "m3"),
                  "1.25,2,3,\"C\",1\r\n-1.25,1,1,\"H\",1\r\n1.25,5,5,\"O\",1\r\n0,0,0,\"f\",2\r\n");
    }
}

TEST(Mm2mmxConversion, TheDemoTableListsSixtyTypesByNumber) {
    // The count, then per type its number, a comma and the symbol in quotes.
    std::istringstream lines(DemoTable());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "60\r");
    for (int type = 1; type <= 60; ++type) {
        ASSERT_TRUE(std::getline(lines, line)) << type;
        const std::string prefix = std::to_string(type) + ",\"";
        ASSERT_EQ(line.substr(0, prefix.size()), prefix) << line;
        const std::string symbol = line.substr(prefix.size(), line.size() - prefix.size() - 2);
        EXPECT_EQ(line.substr(line.size() - 2), "\"\r") << line;
        EXPECT_TRUE(symbol.size() == 1 || symbol.size() == 2) << line;
        EXPECT_TRUE(symbol[0] >= 'A' && symbol[0] <= 'Z') << line;
        if (symbol.size() == 2) {
            EXPECT_TRUE(symbol[1] >= 'a' && symbol[1] <= 'z') << line;
        }
    }
    EXPECT_FALSE(std::getline(lines, line) && !line.empty());
}

TEST(Mm2mmxConversion, TheConverterRunsItForForceFieldFilesAndShowsDone) {
    // The dump runs after the conversion.
    TestProgram t("pick FileConv.File1 0\nclick FileConv.Command1\ndump FileConv\n", 0);
    t.Install();
    t.Write("C:\\ravelo\\mmatoms.dat", DemoTable());
    t.Write("C:\\data\\My Mol.MMX", kControl + kByType);
    t.program().fs.ChDir("C:\\data");
    EXPECT_EQ(t.Run("fileconv"), 0);
    // The name was made safe on disk first; the title is the safe name.
    EXPECT_EQ(t.Read("C:\\data\\My_Mol.sxs"),
              "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n12.5,1,1,\"Mg\",1\r\n0,0,0,\"My_Mol\",2\r\n");
    const std::string out = t.Output();
    EXPECT_NE(out.find("FileConv.Command1\t1\t-\tSelect a File Above to Process\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("FileConv.File1\t1\t-\tMy_Mol.mmx|My_Mol.sxs\n"), std::string::npos) << out;

    // From the command line, and with a name in quotes.
    TestProgram c;
    c.Install();
    c.Write("C:\\ravelo\\mmatoms.dat", DemoTable());
    c.Write("C:\\data\\q.mm3",
            kControl + "1.2500 2.0000 3.0000 C\r\n-1.2500 1.0 1.0 H\r\n1.2500 5.0 5.0 O\r\n");
    EXPECT_EQ(c.Run("fileconv \"C:\\data\\q.mm3\""), 0);
    EXPECT_EQ(c.Read("C:\\data\\q.sxs"),
              "1.25,2,3,\"C\",1\r\n-1.25,1,1,\"H\",1\r\n1.25,5,5,\"O\",1\r\n0,0,0,\"q\",2\r\n");
}

}  // namespace
}  // namespace ravelo
