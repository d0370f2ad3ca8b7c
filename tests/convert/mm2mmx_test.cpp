// The force-field input conversion: how a value is told to be the start of
// an atom, the symbols of each dialect, the fixed numbers of the records, the
// repeated last atom, the atom-type table, and the run from the converter.
#include "convert/mm2mmx.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
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

// Force-field files are read as they stand.
std::string Convert(TestProgram& t, const std::string& bytes, const std::string& dialect,
                    const std::string& path = "C:\\d\\f.mm2") {
    return test::Convert(
        t, [&](Program& p, const std::string& name) { MM2MMX::ConvertFile(p, name, dialect); }, path, bytes,
        "C:\\d\\f.sxs", false);
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
// Types 1 and 5 are carbon and hydrogen; 70 lies beyond the known types and
// takes entry 59. The atom records carry 1, the end record 2.
const std::string kByTypeRecords = "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"H\",1\r\n12.5,1,1,\"Mg\",1\r\n";
// In mm3 and mm4 the text after z, trimmed to two characters, is the symbol.
const std::string kBySymbol = kControl + "1.2500 2.0000 3.0000 C\r\n-1.2500 1.0 1.0 H\r\n1.2500 5.0 5.0 O\r\n";
const std::string kBySymbolRecords = "1.25,2,3,\"C\",1\r\n-1.25,1,1,\"H\",1\r\n1.25,5,5,\"O\",1\r\n";

TEST(Mm2mmxConversion, EachDialectTakesItsSymbolsAndEveryRecordCarriesOne) {
    const std::string bySymbol = kControl +
                                 "  3  1.500  1.2500  2.0000  3.0000 C 1 (  1)\r\n"
                                 " -1.2500  0.25 -0.5000 Cl2\r\n"
                                 " 12.5000  1.0000  1.0000 Na\r\n";
    struct Case {
        const char* dialect;
        std::string path, input, sxs;
    };
    const Case cases[] = {
        {"m2", "C:\\d\\f.mm2", kControl + kByType, kByTypeRecords + "0,0,0,\"f\",2\r\n"},
        {"mx", "C:\\d\\f.mmx", kControl + kByType, kByTypeRecords + "0,0,0,\"f\",2\r\n"},
        {"np", "C:\\d\\f.inp", kControl + kByType, kByTypeRecords + "0,0,0,\"f\",2\r\n"},
        // A dialect that names neither table nor symbols sets no symbol.
        {"zz", "C:\\d\\f.mm2", kControl + kByType,
         "1.25,2,3,\"\",1\r\n-1.25,.25,-.5,\"\",1\r\n12.5,1,1,\"\",1\r\n0,0,0,\"f\",2\r\n"},
        {"m3", "C:\\d\\f.mm3", bySymbol,
         "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"Cl\",1\r\n12.5,1,1,\"Na\",1\r\n0,0,0,\"f\",2\r\n"},
        {"m4", "C:\\d\\f.mm4", bySymbol,
         "1.25,2,3,\"C\",1\r\n-1.25,.25,-.5,\"Cl\",1\r\n12.5,1,1,\"Na\",1\r\n0,0,0,\"f\",2\r\n"},
        // Values after the last atom write it twice.
        {"m2", "C:\\d\\f.mm2", kControl + kByType + "  1  2  3\r\n  0\r\n",
         kByTypeRecords + "12.5,1,1,\"Mg\",1\r\n0,0,0,\"f\",2\r\n"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        InstallTable(t, test::DemoAtomTable());
        EXPECT_EQ(Convert(t, c.input, c.dialect, c.path), c.sxs) << c.dialect << " " << c.input;
    }
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
        // An entry numbered beyond the table's count.
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
        EXPECT_EQ(Convert(t, kBySymbol, "m3"), kBySymbolRecords + "0,0,0,\"f\",2\r\n");
    }
}

TEST(Mm2mmxConversion, TheDemoTableListsSixtyTypesByNumber) {
    std::istringstream lines(test::DemoAtomTable());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "60\r");
    for (int type = 1; type <= 60; ++type) {
        ASSERT_TRUE(std::getline(lines, line)) << type;
        EXPECT_TRUE(std::regex_match(line, std::regex(std::to_string(type) + ",\"[A-Z][a-z]?\"\r"))) << line;
    }
    EXPECT_FALSE(std::getline(lines, line) && !line.empty());
}

TEST(Mm2mmxConversion, TheConverterRunsItForForceFieldFilesAndShowsDone) {
    TestProgram t("pick FileConv.File1 0\nclick FileConv.Command1\ndump FileConv\n", 0);
    t.Install();
    t.Write("C:\\ravelo\\mmatoms.dat", test::DemoAtomTable());
    t.Write("C:\\data\\My Mol.MMX", kControl + kByType);
    t.program().fs.ChDir("C:\\data");
    EXPECT_EQ(t.Run("fileconv"), 0);
    // The name was made safe on disk first; the title is the safe name.
    EXPECT_EQ(t.Read("C:\\data\\My_Mol.sxs"), kByTypeRecords + "0,0,0,\"My_Mol\",2\r\n");
    const std::string out = t.Output();
    EXPECT_NE(out.find("FileConv.Command1\t1\t-\tSelect a File Above to Process\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.File1\t1\t-\tMy_Mol.mmx|My_Mol.sxs\n"), std::string::npos) << out;

    // From the command line, and with a name in quotes.
    TestProgram c;
    c.Install();
    c.Write("C:\\ravelo\\mmatoms.dat", test::DemoAtomTable());
    c.Write("C:\\data\\q.mm3", kBySymbol);
    EXPECT_EQ(c.Run("fileconv \"C:\\data\\q.mm3\""), 0);
    EXPECT_EQ(c.Read("C:\\data\\q.sxs"), kBySymbolRecords + "0,0,0,\"q\",2\r\n");
}

}  // namespace
}  // namespace ravelo
