// The converter's shared routines: cleaning an input in place, names, number
// text, coordinates, element symbols, titles, rounding, records and the check
// of a written file. Expected values are worked out by hand from the rules.
#include "convert/filcvrt.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

TEST(FilCvrtCleaning, LineEndScanAndRebuild) {
    struct Case {
        const char* in;
        bool ok;   // the line ends passed the scan
        const char* out;
    };
    const Case cases[] = {
        {"3\r\nwater\r\nO 0.1\r\n", true, "3\r\nwater\r\nO 0.1\r\n"},
        {"A\nB\n", false, "A\r\nB\r\n"},          // bare line feeds
        {"A\r\n\r\nB\r\n", false, "A\r\nB\r\n"},  // an empty line
        // CR (1), "B" taken unseen, CR LF (3): fails.
        {"A\rB\r\n", false, "A\r\nB\r\n"},
        // The tab after a CR is taken unseen: passes, and the tab stays.
        {"A\r\tB\r\n", true, "A\r\n\tB\r\n"},
        {"A\r\nB\r", true, "A\r\nB\r\n"},        // CR at the end passes
        {"A\r\nB\r\n\r", false, "A\r\nB\r\n"},    // CR LF CR: 3
        // Tab -> blank, \xe9 dropped, a run of control bytes -> one break.
        {"\tC\x01\x02x\xe9y\n", false, " C\r\nxy\r\n"},
        // The tab written as a blank ends the run: a line of one blank stays.
        {"A\n\t\nB", false, "A\r\n \r\nB\r\n"},
        // "==END" takes two rounds; "<<i>i>" keeps "<i>"; "</<i>i>" and
        // "<i></i>" end up empty and go.
        {"x==END\r\n<i>C</i> 1.0\r\n<<i>i>\r\n</<i>i>\r\n<i></i>\r\n", true, "xEND\r\nC 1.0\r\n<i>\r\n"},
        {"", true, ""},
    };
    for (const Case& c : cases) {
        TestProgram t;
        t.Write("C:\\d\\mol.xyz", c.in);
        EXPECT_EQ(FilCvrt::PrepareInputFile(t.program(), "C:\\d\\mol.xyz"), c.ok) << c.in;
        EXPECT_EQ(t.Read("C:\\d\\mol.xyz"), c.out) << c.in;
        // The .tmp and .tnp work files are gone again.
        EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"), std::vector<std::string>{"mol.xyz"});
    }
}

TEST(FilCvrtCleaning, TheExtensionRunsFromTheFirstPointOfThePath) {
    TestProgram t;
    t.Write("C:\\data.old\\mol.xyz", "C 1.0\n");
    FilCvrt::PrepareInputFile(t.program(), "C:\\data.old\\mol.xyz");
    EXPECT_EQ(t.program().conversion.extension, ".old\\mol.xyz");
    EXPECT_EQ(t.Read("C:\\data.old\\mol.xyz"), "C 1.0\r\n");
    EXPECT_EQ(t.program().fs.Dir("C:\\*"), std::vector<std::string>{});   // no C:\data.tmp, .tnp

    // The cleaned text goes to base + extension; the input goes.
    t.Write("C:\\d\\in.dat", "A\r\n");
    FilCvrt::MakeCleanTempFile(t.program(), "C:\\d\\in.dat", "C:\\d\\out", ".xyz");
    EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"), std::vector<std::string>{"out.xyz"});
}

TEST(FilCvrtNames, SplitFileNameAndCleanMoleculeName) {
    TestProgram t;
    Program& p = t.program();
    std::string name;
    FilCvrt::SplitFileName(p, "C:\\d\\aspirin.mol", name);
    EXPECT_EQ(p.conversion.folder + "|" + name, "C:\\d\\|aspirin");
    FilCvrt::SplitFileName(p, "x.mol", name);   // no "\": both unchanged
    EXPECT_EQ(p.conversion.folder + "|" + name, "C:\\d\\|aspirin");
    EXPECT_EQ(ErrorOf([&] { FilCvrt::SplitFileName(p, "C:\\d\\abc", name); }), 5);

    auto clean = [](const std::string& fallback, std::string n) {
        FilCvrt::CleanMoleculeName(fallback, n);
        return n;
    };
    EXPECT_EQ(clean("base", "  my mol.v2,x "), "my_mol_v2_x");
    EXPECT_EQ(clean(" base ", "123"), "base");   // a number, the fallback none
    EXPECT_EQ(clean("12", "456"), "456");
    EXPECT_EQ(clean("base", "0.5"), "0_5");      // tested as "0_5": reads 0
    EXPECT_EQ(clean("base", "1.5"), "base");     // "1_5" reads 1
    EXPECT_EQ(clean(" base ", "   "), "base");
    EXPECT_EQ(clean("base", std::string(40, 'a')), std::string(40, 'a'));
    EXPECT_EQ(clean("base", std::string(41, 'a')), "base");
}

TEST(FilCvrtNumbers, CleanNumericLine) {
    const std::pair<const char*, const char*> cases[] = {
        {" UNK 0 1.5(2) ? ", " UNK 0 1.5(2) ? "},
        // " 0 " -> "  0.0000 ", " .0 " -> "  0.0000 ", " 0.0 " -> " 0.0000  ".
        {"A 0 B", "A  0.0000 B"},
        {"C 0 0 0", "C  0.0000  0.0000  0.0000"},   // neighbours share a blank
        {"A .0 B", "A  0.0000 B"},
        {"A 0.0 B", "A 0.0000  B"},
        {"0 1", "0 1"},
        // Padding goes after the number; ".1234" (5 characters) is not short.
        {"-0.3", "-0.30000"},
        {"C -0.3 1.25 1.123 1.1234", "C -0.30000  1.250000  1.1230000  1.1234"},
        {"dot. x", "dot.0000  x"},
        // Brackets: "000 " after a "." anywhere before, else three blanks.
        {"HG 1.2345(6) 2.5 3.75", "HG 1.2345000  2.50000  3.750000"},
        {"12(3)", "12"},
        {"X 12(3) Y", "X 12    Y"},
        {"7(1) 2.5(3) 4(2)", "7    2.5000  4000"},
        {"1.5(2", "1.5(20000"},   // ".5(2" is short; no ")" stops the removal
        // Tabs to three blanks, then " (" -> "(", " . " -> " ", "?" -> " ".
        {"C\t1.5 (2)\t?", "C   1.5000"},
        {"a . b", "a b"},
        // Whole atom lines: every rule's mark also late in a long line. A "U"
        // of GLU is not UNK.
        {"ATOM      1  CD  GLU A   1      11.104   6.134  -6.504",
         "ATOM      1  CD  GLU A   1      11.1040000    6.1340000   -6.5040000"},
        {"ATOM      2  CA  UNK A   1      11.104   6.134  -6.504",
         "ATOM      2  CA  UNK A   1      11.104   6.134  -6.504"},
        {"ATOM      3  O   HOH A   1      12.5         0  -6.50",
         "ATOM      3  O   HOH A   1      12.50000           0.0000  -6.500000"},
        {"ATOM      4  C   LIG A   1      1.5(2)  2.25?   3", "ATOM      4  C   LIG A   1      1.5000   2.250000     3"},
    };
    for (const auto& [in, out] : cases) {
        std::string line = in;
        FilCvrt::CleanNumericLine(line);
        EXPECT_EQ(line, out) << in;
    }
}

TEST(FilCvrtCoordinates, ReadCoordinates) {
    struct Case {
        FilCvrt::SourceType type;
        const char* line;
        const char* rest;   // the lines after it in the file
        std::vector<double> xyz;
        const char* lineAfter;
    };
    using enum FilCvrt::SourceType;
    const Case cases[] = {
        // Numbers without a point before the coordinates are passed over.
        {Plain, "1 C 6 1.5 -2.25 3.0 9.5", "", {1.5, -2.25, 3.0}, "1 C 6 1.5 -2.25 3.0 9.5"},
        // Short lines continue on the next ones; the line is the last one read.
        {Labelled, "C1 1.5", "  7 8  \r\n  2.5 3.5  \r\nC2 9.9 9.9 9.9\r\n", {1.5, 2.5, 3.5}, "2.5 3.5"},
        // "dot." is the first item with a point and reads 0.
        {Plain, "a comment with a dot. and more", "CA 1.000 2.000 3.000\r\n", {0, 1, 2}, "CA 1.000 2.000 3.000"},
        // At the end of the file a missing number reads 0.
        {Plain, "C 1.5", "  tail  \r\n", {1.5, 0, 0}, "tail"},
        {Plain, "no numbers", "", {0, 0, 0}, "no numbers"},
        // XCX lines: the three items after the label.
        {Xcx, "  Fe1   0.5  -1   2e1 7.5 ", "9.9 9.9 9.9\r\n", {0.5, -1, 20}, "Fe1   0.5  -1   2e1 7.5"},
        {Xcx, "O1 1", "", {1, 0, 0}, "O1 1"},
        {Plain, "Fe1 0.5 -1 2", "", {0.5, 0, 0}, "Fe1 0.5 -1 2"},
    };
    for (const Case& c : cases) {
        InputFile in(MemorySource(c.rest));
        std::string line = c.line;
        double x = -1, y = -1, z = -1;
        FilCvrt::ReadCoordinates(c.type, in, line, x, y, z);
        EXPECT_EQ(std::vector<double>({x, y, z}), c.xyz) << c.line;
        EXPECT_EQ(line, c.lineAfter) << c.line;
    }
}

TEST(FilCvrtSymbols, GetElementSymbol) {
    struct Case {
        const char* ext;
        const char* label;
        const char* symbol;
    };
    const Case cases[] = {
        // Position letters A to D after C, H, O in protein and crystal files.
        {".pdb", "CA", "C"}, {".xyz", "CA", "Ca"}, {".pdb", "CD2", "C"}, {".mol", "CD2", "Cd"},
        {".ent", "HD1", "H"}, {".cif", "OD1", "O"}, {".CSD", "CA", "C"}, {".pdb", "Ca", "Ca"},
        {".cif", "CL1", "Cl"}, {".pdb", "CU", "Cu"}, {".pdb", "HO", "Ho"},
        // The type is matched as a piece of ".ENT.PDB.CSD.CIF".
        {"", "CA", "C"}, {".cs", "CA", "C"}, {".pdbx", "CA", "Ca"},
        // Two letters only when they name an element.
        {".pdb", "NA", "Na"}, {".xyz", "CX", "C"}, {".pdb", "HG", "Hg"}, {".xyz", "br", "Br"},
        {".xyz", "C 1.0", "C"}, {".xyz", "N1", "N"},
        // Leading non-letters are skipped; codes 91 to 96 count as letters.
        {".xyz", "12ca", "Ca"}, {".xyz", "123", ""}, {".xyz", "", ""}, {".xyz", "3_C", "_"},
    };
    for (const Case& c : cases) {
        std::string label = c.label, symbol = "old";
        FilCvrt::GetElementSymbol(FilCvrt::SourceTypeOf(c.ext), label, symbol);
        EXPECT_EQ(symbol, c.symbol) << c.ext << " " << c.label;
    }
    std::string label = "  Cl1  ", symbol;
    FilCvrt::GetElementSymbol(FilCvrt::SourceType::Plain, label, symbol);
    EXPECT_EQ(label, "Cl1");   // trimmed in place
}

TEST(FilCvrtRounding, HalvesToEvenBelowTheLongLimit) {
    auto rounded = [](double value, std::int32_t places) {
        FilCvrt::RoundToPlaces(value, places);
        return value;
    };
    EXPECT_EQ(rounded(2.5, 0), 2);
    EXPECT_EQ(rounded(3.5, 0), 4);
    EXPECT_EQ(rounded(-2.5, 0), -2);
    EXPECT_EQ(rounded(0.375, 2), 0.38);   // 37.5 -> 38 (exact in binary)
    EXPECT_EQ(rounded(0.625, 2), 0.62);   // 62.5 -> 62
    EXPECT_EQ(rounded(1234, -2), 1200);
    EXPECT_EQ(rounded(2147483646.5, 0), 2147483646);
    EXPECT_EQ(rounded(2147483647.5, 0), 2147483647.5);   // at the limit: unchanged
    EXPECT_EQ(rounded(214748364.75, 1), 214748364.75);   // scaled 2147483647.5
    EXPECT_EQ(ErrorOf([&] { rounded(1e300, 10); }), 6);
}

TEST(FilCvrtOutput, RecordsValidationAndMove) {
    TestProgram t;
    Program& p = t.program();
    p.fs.MkDirs("C:\\d");
    {
        OutputFile out = p.fs.OpenOutput("C:\\d\\w.sxs");
        FilCvrt::WriteAtomRecord(out, 0, 0.7572, -0.4692, "H", 2);
        FilCvrt::WriteEndRecord(out, "xyz_standard", 4);
    }
    EXPECT_EQ(t.Read("C:\\d\\w.sxs"), "0,.7572,-.4692,\"H\",2\r\n0,0,0,\"xyz_standard\",4\r\n");

    // Three lines: deleted. A closing plain line counts, ended or not.
    t.Write("C:\\d\\two.sxs", "1,2,3,\"C\",1\r\n2,3,4,\"O\",2\r\n0,0,0,\"two\",3\r\n");
    EXPECT_FALSE(FilCvrt::ValidateOutputFile(p, "C:\\d\\two.sxs"));
    EXPECT_FALSE(t.Exists("C:\\d\\two.sxs"));
    t.Write("C:\\d\\two.xxs", "1,2,3,\"C\",1\r\n2,3,4,\"O\",2\r\n0,0,0,\"two\",3\r\nResolution_High = 2.0");
    EXPECT_TRUE(FilCvrt::ValidateOutputFile(p, "C:\\d\\two.xxs"));
    EXPECT_TRUE(t.Exists("C:\\d\\two.xxs"));

    FilCvrt::MoveFile(p, "C:\\d\\two.xxs", "C:\\d\\w.sxs");
    EXPECT_EQ(p.fs.Dir("C:\\d\\*"), std::vector<std::string>{"w.sxs"});
    EXPECT_EQ(t.Read("C:\\d\\w.sxs").substr(0, 11), "1,2,3,\"C\",1");
}

}  // namespace
}  // namespace ravelo
