// The converter's shared routines: the cleaning of an input in place, names,
// number text, coordinates, element symbols, titles, rounding, the records
// and the check of a written file.
#include "convert/filcvrt.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "startup/raveloutilx.hpp"   // for kElementSymbols
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

std::vector<std::string> FilesIn(Program& p, const std::string& folder) { return p.fs.Dir(folder + "\\*"); }

// ---------------------------------------------------------------------------
// Cleaning the input in place

struct CleanResult {
    std::string lineEndsOk;
    std::string text;
};

CleanResult CleanFile(const std::string& bytes) {
    TestProgram t;
    t.Write("C:\\d\\mol.xyz", bytes);
    FilCvrt::PrepareInputFile(t.program(), "C:\\d\\mol.xyz");
    // Only the cleaned input is left: the .tmp and .tnp work files are gone.
    EXPECT_EQ(FilesIn(t.program(), "C:\\d"), std::vector<std::string>{"mol.xyz"});
    return {t.program().LineEndsOk, t.Read("C:\\d\\mol.xyz")};
}

TEST(FilCvrtCleaning, CrLfLinesPassTheScanAndStayAsTheyAre) {
    const CleanResult c = CleanFile("3\r\nwater\r\nO 0.1 0.2 0.3\r\n");
    EXPECT_EQ(c.lineEndsOk, "Yea");
    EXPECT_EQ(c.text, "3\r\nwater\r\nO 0.1 0.2 0.3\r\n");
}

TEST(FilCvrtCleaning, BareLineFeedsFailTheScanAndAreRewritten) {
    const CleanResult c = CleanFile("A\nB\n");
    EXPECT_EQ(c.lineEndsOk, "Nay");
    EXPECT_EQ(c.text, "A\r\nB\r\n");
}

TEST(FilCvrtCleaning, AnEmptyLineFailsTheScanAndDisappears) {
    const CleanResult c = CleanFile("A\r\n\r\nB\r\n");
    EXPECT_EQ(c.lineEndsOk, "Nay");
    EXPECT_EQ(c.text, "A\r\nB\r\n");
}

TEST(FilCvrtCleaning, TheCharacterAfterACarriageReturnIsTakenUnseen) {
    // CR (1), "B" taken without a look, CR (2), LF (3): the count reaches 3.
    CleanResult c = CleanFile("A\rB\r\n");
    EXPECT_EQ(c.lineEndsOk, "Nay");
    EXPECT_EQ(c.text, "A\r\nB\r\n");
    // A tab right after a carriage return is taken unseen too, and the run
    // never reaches 3: the scan passes and the line reader splits at the CR.
    c = CleanFile("A\r\tB\r\n");
    EXPECT_EQ(c.lineEndsOk, "Yea");
    EXPECT_EQ(c.text, "A\r\n\tB\r\n");
}

TEST(FilCvrtCleaning, ACarriageReturnAtTheEndPassesButEndsUpAsCrLf) {
    CleanResult c = CleanFile("A\r\nB\r");
    EXPECT_EQ(c.lineEndsOk, "Yea");
    EXPECT_EQ(c.text, "A\r\nB\r\n");
    // CR LF then a CR at the end is an empty line begun: 3.
    c = CleanFile("A\r\nB\r\n\r");
    EXPECT_EQ(c.lineEndsOk, "Nay");
    EXPECT_EQ(c.text, "A\r\nB\r\n");
}

TEST(FilCvrtCleaning, RebuildTurnsTabsToBlanksDropsHighBytesAndCollapsesControls) {
    // A tab is one blank; \x01\x02 and the LF run give one break; \xe9 goes.
    CleanResult c = CleanFile("\tC\x01\x02x\xe9y\n");
    EXPECT_EQ(c.lineEndsOk, "Nay");
    EXPECT_EQ(c.text, " C\r\nxy\r\n");
    // The tab between two line feeds was written as a blank, so the second
    // line feed makes a new break, and the line of one blank is kept.
    c = CleanFile("A\n\t\nB");
    EXPECT_EQ(c.text, "A\r\n \r\nB\r\n");
}

TEST(FilCvrtCleaning, EqualsEndAndItalicTagsAreCleanedLineByLine) {
    // "==END" needs two rounds; "<<i>i>" leaves "<i>" (one removal pass);
    // "</<i>i>" loses "<i>" first and then is "</i>", removed: empty, dropped.
    const CleanResult c = CleanFile("x==END\r\n<i>C</i> 1.0\r\n<<i>i>\r\n</<i>i>\r\n<i></i>\r\nlast\r\n");
    EXPECT_EQ(c.lineEndsOk, "Yea");
    EXPECT_EQ(c.text, "xEND\r\nC 1.0\r\n<i>\r\nlast\r\n");
}

TEST(FilCvrtCleaning, AnEmptyFileStaysEmpty) {
    const CleanResult c = CleanFile("");
    EXPECT_EQ(c.lineEndsOk, "Yea");
    EXPECT_EQ(c.text, "");
}

TEST(FilCvrtCleaning, TheExtensionRunsFromTheFirstPointOfThePath) {
    TestProgram t;
    t.Write("C:\\data.old\\mol.xyz", "C 1.0\n");
    FilCvrt::PrepareInputFile(t.program(), "C:\\data.old\\mol.xyz");
    EXPECT_EQ(t.program().InputExt, ".old\\mol.xyz");
    EXPECT_EQ(t.Read("C:\\data.old\\mol.xyz"), "C 1.0\r\n");
    // The work files were C:\data.tmp and C:\data.tnp, both removed again.
    EXPECT_FALSE(t.Exists("C:\\data.tmp"));
    EXPECT_FALSE(t.Exists("C:\\data.tnp"));
}

TEST(FilCvrtCleaning, ACleanedCopyGoesToBasePlusExtension) {
    TestProgram t;
    t.Write("C:\\d\\in.dat", "A\r\n");
    FilCvrt::MakeCleanTempFile(t.program(), "C:\\d\\in.dat", "C:\\d\\out", ".xyz");
    EXPECT_EQ(FilesIn(t.program(), "C:\\d"), std::vector<std::string>{"out.xyz"});
    EXPECT_EQ(t.Read("C:\\d\\out.xyz"), "A\r\n");
}

// ---------------------------------------------------------------------------
// File names

TEST(FilCvrtNames, SplitFileNameGivesTheFolderAndTheNameLessFourCharacters) {
    TestProgram t;
    Program& p = t.program();
    std::string name = "old";
    FilCvrt::SplitFileName(p, "C:\\d\\aspirin.mol", name);
    EXPECT_EQ(p.SourceDir, "C:\\d\\");
    EXPECT_EQ(name, "aspirin");

    FilCvrt::SplitFileName(p, "C:\\e\\.xyz", name);
    EXPECT_EQ(p.SourceDir, "C:\\e\\");
    EXPECT_EQ(name, "");

    // Without "\" nothing changes.
    FilCvrt::SplitFileName(p, "aspirin.mol", name);
    EXPECT_EQ(p.SourceDir, "C:\\e\\");
    EXPECT_EQ(name, "");

    EXPECT_EQ(ErrorOf([&] { FilCvrt::SplitFileName(p, "C:\\d\\abc", name); }), 5);
}

TEST(FilCvrtNames, CleanMoleculeNameMakesATitleSafeForAFileName) {
    auto clean = [](const std::string& fallback, std::string name) {
        FilCvrt::CleanMoleculeName(fallback, name);
        return name;
    };
    EXPECT_EQ(clean("base", "  my mol.v2,x "), "my_mol_v2_x");
    // A number as name when the fallback is no number: the fallback, trimmed.
    EXPECT_EQ(clean(" base ", "123"), "base");
    EXPECT_EQ(clean("12", "456"), "456");
    // The number test comes after the points became "_": 0_5 reads 0, 1_5 reads 1.
    EXPECT_EQ(clean("base", "0.5"), "0_5");
    EXPECT_EQ(clean("base", "1.5"), "base");
    // Empty and longer than 40 characters: the fallback (trimmed at the end).
    EXPECT_EQ(clean(" base ", "   "), "base");
    EXPECT_EQ(clean("base", std::string(40, 'a')), std::string(40, 'a'));
    EXPECT_EQ(clean("base", std::string(41, 'a')), "base");
}

// ---------------------------------------------------------------------------
// Number text

std::string CleanedLine(std::string line) {
    FilCvrt::CleanNumericLine(line);
    return line;
}

TEST(FilCvrtNumbers, ALineHoldingUnkStaysAsItIs) { EXPECT_EQ(CleanedLine(" UNK 0 1.5(2) ? "), " UNK 0 1.5(2) ? "); }

TEST(FilCvrtNumbers, LoneZerosWidenToFourDecimals) {
    // " 0 " -> "  0.0000 " (the leading blank is kept, the last one reused).
    EXPECT_EQ(CleanedLine("A 0 B"), "A  0.0000 B");
    // Overlapping zeros share a blank; the last one is found with the two
    // blanks added at the end.
    EXPECT_EQ(CleanedLine("C 0 0 0"), "C  0.0000  0.0000  0.0000");
    // " .0 " -> "  0.0000 ".
    EXPECT_EQ(CleanedLine("A .0 B"), "A  0.0000 B");
    // " 0.0 " -> " 0.0000 " and its own last blank: two blanks.
    EXPECT_EQ(CleanedLine("A 0.0 B"), "A 0.0000  B");
    // A zero at the start of the line has no blank before it.
    EXPECT_EQ(CleanedLine("0 1"), "0 1");
}

TEST(FilCvrtNumbers, ShortFractionsArePaddedAfterTheNumber) {
    EXPECT_EQ(CleanedLine("-0.3"), "-0.30000");
    // ".25" and ".5" are short; "1.2345" (5 characters from the point) is not.
    EXPECT_EQ(CleanedLine("C -0.3 1.25 2.5 1.2345"), "C -0.30000  1.250000  2.50000  1.2345");
    // The point and three digits is the longest text padded.
    EXPECT_EQ(CleanedLine("1.123 1.1234"), "1.1230000  1.1234");
    // A point anywhere counts, also in a word.
    EXPECT_EQ(CleanedLine("dot. x"), "dot.0000  x");
}

TEST(FilCvrtNumbers, UncertaintiesInBracketsAreRemoved) {
    // ".2345(6)" is long, so no padding; the bracket becomes "000 ".
    EXPECT_EQ(CleanedLine("HG 1.2345(6) 2.5 3.75"), "HG 1.2345000  2.50000  3.750000");
    EXPECT_EQ(CleanedLine("1.2345(6) "), "1.2345000");
    // Without any "." before it the bracket becomes three blanks.
    EXPECT_EQ(CleanedLine("12(3)"), "12");
    EXPECT_EQ(CleanedLine("X 12(3) Y"), "X 12    Y");
    // A "." anywhere before the bracket decides, also one that came before an
    // earlier bracket: 7(1) has none, the two after it have one.
    EXPECT_EQ(CleanedLine("7(1) 2.5(3) 4(2)"), "7    2.5000  4000");
    // " (" closes up first; "(" without ")" stops the removal (".5(2" is short).
    EXPECT_EQ(CleanedLine("1.5 (2)"), "1.5000");
    EXPECT_EQ(CleanedLine("1.5(2"), "1.5(20000");
}

TEST(FilCvrtNumbers, TabsQuestionMarksAndLonePointsBecomeBlanks) {
    // Tabs are three blanks each, then " (" -> "(", then "?" -> " ".
    EXPECT_EQ(CleanedLine("C\t1.5 (2)\t?"), "C   1.5000");
    EXPECT_EQ(CleanedLine("a . b"), "a b");
    EXPECT_EQ(CleanedLine("?1?"), "1");
}

TEST(FilCvrtNumbers, LongLinesAreCleanedWhole) {
    // Many zeros and short fractions in one line: each one widened or padded.
    std::string line, expected = "X";
    for (int i = 0; i < 2000; ++i) {
        line += " 0 1.5";
        expected += "  0.0000 1.50000 ";
    }
    expected.pop_back();   // the last blank goes with the trimming
    EXPECT_EQ(CleanedLine("X" + line), expected);
}

// ---------------------------------------------------------------------------
// Coordinates

struct Read3 {
    double x = -1, y = -1, z = -1;
    std::string line;
};

Read3 ReadFrom(const std::string& ext, const std::string& line, const std::string& rest) {
    TestProgram t;
    t.program().InputExt = ext;
    InputFile in(MemorySource(rest));
    Read3 r;
    r.line = line;
    FilCvrt::ReadCoordinates(t.program(), in, r.line, r.x, r.y, r.z);
    return r;
}

TEST(FilCvrtCoordinates, NumbersWithoutAPointBeforeTheCoordinatesArePassedOver) {
    const Read3 r = ReadFrom(".xyz", "1 C 6 1.5 -2.25 3.0 9.5", "");
    EXPECT_EQ(r.x, 1.5);
    EXPECT_EQ(r.y, -2.25);
    EXPECT_EQ(r.z, 3.0);
    EXPECT_EQ(r.line, "1 C 6 1.5 -2.25 3.0 9.5");
}

TEST(FilCvrtCoordinates, AShortLineContinuesOnTheNextLinesWithAPoint) {
    const Read3 r = ReadFrom(".pdb", "C1 1.5", "  7 8  \r\n  2.5 3.5  \r\nC2 9.9 9.9 9.9\r\n");
    EXPECT_EQ(r.x, 1.5);
    EXPECT_EQ(r.y, 2.5);
    EXPECT_EQ(r.z, 3.5);
    EXPECT_EQ(r.line, "2.5 3.5");   // the last line read, trimmed
}

TEST(FilCvrtCoordinates, AWordWithAPointReadsAsZero) {
    // "dot." is the first item with a point; the next line gives Y and Z.
    const Read3 r = ReadFrom(".xyz", "a comment with a dot. and more", "CA 1.000 2.000 3.000\r\n");
    EXPECT_EQ(r.x, 0);
    EXPECT_EQ(r.y, 1);
    EXPECT_EQ(r.z, 2);
    EXPECT_EQ(r.line, "CA 1.000 2.000 3.000");
}

TEST(FilCvrtCoordinates, AtTheEndOfTheFileMissingCoordinatesReadZero) {
    Read3 r = ReadFrom(".xyz", "C 1.5", "  tail  \r\n");
    EXPECT_EQ(r.x, 1.5);
    EXPECT_EQ(r.y, 0);
    EXPECT_EQ(r.z, 0);
    EXPECT_EQ(r.line, "tail");
    // Nothing left to read: the line stays the caller's.
    r = ReadFrom(".xyz", "no numbers", "");
    EXPECT_EQ(r.x, 0);
    EXPECT_EQ(r.z, 0);
    EXPECT_EQ(r.line, "no numbers");
}

TEST(FilCvrtCoordinates, XcxLinesGiveTheThreeItemsAfterTheLabel) {
    Read3 r = ReadFrom(".XCX", "  Fe1   0.5  -1   2e1 7.5 ", "9.9 9.9 9.9\r\n");
    EXPECT_EQ(r.x, 0.5);
    EXPECT_EQ(r.y, -1);
    EXPECT_EQ(r.z, 20);
    EXPECT_EQ(r.line, "Fe1   0.5  -1   2e1 7.5");
    r = ReadFrom(".XCX", "O1 1", "");
    EXPECT_EQ(r.x, 1);
    EXPECT_EQ(r.y, 0);
    EXPECT_EQ(r.z, 0);
    // Only the upper-case type selects the mode: here the first items with
    // a point are wanted, and there is only one.
    r = ReadFrom(".xcx", "Fe1 0.5 -1 2", "");
    EXPECT_EQ(r.x, 0.5);
    EXPECT_EQ(r.y, 0);
}

// ---------------------------------------------------------------------------
// Element symbols

std::string Symbol(const std::string& ext, std::string label) {
    TestProgram t;
    t.program().InputExt = ext;
    t.program().ElementSymbols = std::string(kElementSymbols);
    std::string symbol = "old";
    FilCvrt::GetElementSymbol(t.program(), label, symbol);
    return symbol;
}

TEST(FilCvrtSymbols, ProteinAndCrystalPositionLettersAreDropped) {
    EXPECT_EQ(Symbol(".pdb", "CA"), "C");
    EXPECT_EQ(Symbol(".xyz", "CA"), "Ca");
    EXPECT_EQ(Symbol(".pdb", "CD2"), "C");
    EXPECT_EQ(Symbol(".mol", "CD2"), "Cd");
    EXPECT_EQ(Symbol(".ent", "HD1"), "H");
    EXPECT_EQ(Symbol(".cif", "OD1"), "O");
    EXPECT_EQ(Symbol(".CSD", "CA"), "C");
    // L, O, S, R, U keep the two letters; a lower-case second letter is no
    // position letter.
    EXPECT_EQ(Symbol(".cif", "CL1"), "Cl");
    EXPECT_EQ(Symbol(".pdb", "CU"), "Cu");
    EXPECT_EQ(Symbol(".pdb", "HO"), "Ho");
    EXPECT_EQ(Symbol(".pdb", "Ca"), "Ca");
    // The type is looked for as a piece of ".ENT.PDB.CSD.CIF": an empty type
    // and ".CS" are in it, ".pdbx" is not.
    EXPECT_EQ(Symbol("", "CA"), "C");
    EXPECT_EQ(Symbol(".cs", "CA"), "C");
    EXPECT_EQ(Symbol(".pdbx", "CA"), "Ca");
}

TEST(FilCvrtSymbols, TwoLettersOnlyWhenTheyNameAnElement) {
    EXPECT_EQ(Symbol(".pdb", "NA"), "Na");
    EXPECT_EQ(Symbol(".xyz", "CX"), "C");
    EXPECT_EQ(Symbol(".pdb", "HG"), "Hg");
    EXPECT_EQ(Symbol(".xyz", "br"), "Br");
    EXPECT_EQ(Symbol(".xyz", "C 1.0"), "C");
    EXPECT_EQ(Symbol(".xyz", "N1"), "N");
}

TEST(FilCvrtSymbols, LeadingNonLettersAreSkippedAndTheLabelTrimmed) {
    EXPECT_EQ(Symbol(".xyz", "12ca"), "Ca");
    EXPECT_EQ(Symbol(".xyz", "123"), "");
    EXPECT_EQ(Symbol(".xyz", ""), "");
    // Codes 91 to 96 count as letters: "_" is the first letter here.
    EXPECT_EQ(Symbol(".xyz", "3_C"), "_");

    TestProgram t;
    t.program().ElementSymbols = std::string(kElementSymbols);
    std::string label = "  Cl1  ", symbol;
    FilCvrt::GetElementSymbol(t.program(), label, symbol);
    EXPECT_EQ(label, "Cl1");
    EXPECT_EQ(symbol, "Cl");
}

// ---------------------------------------------------------------------------
// Rounding

double Rounded(double value, std::int32_t places) {
    FilCvrt::RoundToPlaces(value, places);
    return value;
}

TEST(FilCvrtRounding, HalvesGoToTheEvenNeighbour) {
    EXPECT_EQ(Rounded(2.5, 0), 2);
    EXPECT_EQ(Rounded(3.5, 0), 4);
    EXPECT_EQ(Rounded(-2.5, 0), -2);
    // 0.375 and 0.625 are exact in binary: 37.5 -> 38, 62.5 -> 62.
    EXPECT_EQ(Rounded(0.375, 2), 0.38);
    EXPECT_EQ(Rounded(0.625, 2), 0.62);
    EXPECT_EQ(Rounded(1234, -2), 1200);
}

TEST(FilCvrtRounding, ScaledValuesFromTheLongLimitOnAreLeftAlone) {
    EXPECT_EQ(Rounded(2147483646.5, 0), 2147483646);
    EXPECT_EQ(Rounded(2147483647.5, 0), 2147483647.5);
    EXPECT_EQ(Rounded(214748364.75, 1), 214748364.75);   // scaled: 2147483647.5
    // A product beyond the double range is an overflow.
    EXPECT_EQ(ErrorOf([] { Rounded(1e300, 10); }), 6);
}

// ---------------------------------------------------------------------------
// Records and the written file

TEST(FilCvrtOutput, AtomAndEndRecordsInWriteNotation) {
    TestProgram t;
    t.program().fs.MkDirs("C:\\d");
    {
        OutputFile out = t.program().fs.OpenOutput("C:\\d\\w.sxs");
        FilCvrt::WriteAtomRecord(out, 0, 0.7572, -0.4692, "H", 2);
        FilCvrt::WriteAtomRecord(out, -1.25, 10.5, 3, "Cl", 3);
        FilCvrt::WriteEndRecord(t.program(), out, "xyz_standard", 4);
    }
    EXPECT_EQ(t.Read("C:\\d\\w.sxs"), "0,.7572,-.4692,\"H\",2\r\n-1.25,10.5,3,\"Cl\",3\r\n0,0,0,\"xyz_standard\",4\r\n");
}

TEST(FilCvrtOutput, AFileOfFewerThanFourLinesIsDeleted) {
    TestProgram t;
    Program& p = t.program();
    t.Write("C:\\d\\two.sxs", "1,2,3,\"C\",1\r\n2,3,4,\"O\",2\r\n0,0,0,\"two\",3\r\n");
    FilCvrt::ValidateOutputFile(p, "C:\\d\\two.sxs");
    EXPECT_FALSE(t.Exists("C:\\d\\two.sxs"));
    EXPECT_EQ(p.ConvertResult, "Nay");

    // A closing line of any kind counts, and so does a last line without end.
    t.Write("C:\\d\\two.xxs", "1,2,3,\"C\",1\r\n2,3,4,\"O\",2\r\n0,0,0,\"two\",3\r\nResolution_High = 2.0");
    FilCvrt::ValidateOutputFile(p, "C:\\d\\two.xxs");
    EXPECT_TRUE(t.Exists("C:\\d\\two.xxs"));
    EXPECT_EQ(p.ConvertResult, "Yea");
}

TEST(FilCvrtOutput, MoveFileLeavesOnlyTheNewName) {
    TestProgram t;
    t.Write("C:\\d\\a.pdb", "HEADER\r\n");
    t.Write("C:\\d\\b.lib", "old content\r\n");
    FilCvrt::MoveFile(t.program(), "C:\\d\\a.pdb", "C:\\d\\b.lib");
    EXPECT_EQ(FilesIn(t.program(), "C:\\d"), std::vector<std::string>{"b.lib"});
    EXPECT_EQ(t.Read("C:\\d\\b.lib"), "HEADER\r\n");
}

}  // namespace
}  // namespace ravelo
