// The converter's shared routines: cleaning an input in place, names, number
// text, coordinates, element symbols, titles, rounding, records and the check
// of a written file. The tables of cases are rows of tests/data/filcvrt.tsv.
#include "convert/filcvrt.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ErrorOf;
using test::TestProgram;

// The rows of tests/data/filcvrt.tsv for one routine, the escapes read.
std::vector<std::vector<std::string>> Rows(const std::string& routine) {
    std::vector<std::vector<std::string>> rows;
    for (auto& fields : test::TableRows(std::string(RAVELO_TEST_DATA) + "/filcvrt.tsv"))
        if (fields[0] == routine) rows.emplace_back(fields.begin() + 1, fields.end());
    return rows;
}

TEST(FilCvrtCleaning, LineEndScanAndRebuild) {
    const auto rows = Rows("lineends");
    ASSERT_EQ(rows.size(), 11u);
    for (const auto& row : rows) {
        TestProgram t;
        t.Write("C:\\d\\mol.xyz", row[0]);
        EXPECT_EQ(FilCvrt::PrepareInputFile(t.program(), "C:\\d\\mol.xyz"), row[1] == "1") << row[3];
        EXPECT_EQ(t.Read("C:\\d\\mol.xyz"), row[2]) << row[3];
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

    const auto rows = Rows("name");
    ASSERT_EQ(rows.size(), 8u);
    for (auto row : rows) {
        FilCvrt::CleanMoleculeName(row[0], row[1]);
        EXPECT_EQ(row[1], row[2]) << row[3];
    }
}

TEST(FilCvrtNumbers, CleanNumericLine) {
    const auto rows = Rows("numbers");
    ASSERT_EQ(rows.size(), 20u);
    for (const auto& row : rows) {
        std::string line = row[0];
        FilCvrt::CleanNumericLine(line);
        EXPECT_EQ(line, row[1]) << row[2];
    }
}

TEST(FilCvrtCoordinates, ReadCoordinates) {
    const auto rows = Rows("coordinates");
    ASSERT_EQ(rows.size(), 8u);
    using enum FilCvrt::SourceType;
    for (const auto& row : rows) {
        InputFile in(MemorySource(row[2]));
        std::string line = row[1];
        double x = -1, y = -1, z = -1;
        FilCvrt::ReadCoordinates(row[0] == "Xcx" ? Xcx : row[0] == "Labelled" ? Labelled : Plain, in, line, x, y, z);
        std::istringstream want(row[3]);
        double wx, wy, wz;
        want >> wx >> wy >> wz;
        EXPECT_EQ(std::vector<double>({x, y, z}), std::vector<double>({wx, wy, wz})) << row[5];
        EXPECT_EQ(line, row[4]) << row[5];
    }
}

TEST(FilCvrtSymbols, GetElementSymbol) {
    const auto rows = Rows("symbol");
    ASSERT_EQ(rows.size(), 24u);
    for (const auto& row : rows) {
        std::string label = row[1], symbol = "old";
        FilCvrt::GetElementSymbol(FilCvrt::SourceTypeOf(row[0]), label, symbol);
        EXPECT_EQ(symbol, row[2]) << row[0] << " " << row[1] << ": " << row[3];
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
    // 0.375 and 0.625 are exact in binary; 2147483647.5 (also scaled) is at the limit: unchanged.
    const std::tuple<double, std::int32_t, double> cases[] = {
        {2.5, 0, 2}, {3.5, 0, 4}, {-2.5, 0, -2}, {0.375, 2, 0.38}, {0.625, 2, 0.62}, {1234, -2, 1200},
        {2147483646.5, 0, 2147483646}, {2147483647.5, 0, 2147483647.5}, {214748364.75, 1, 214748364.75}};
    for (const auto& [value, places, want] : cases) EXPECT_EQ(rounded(value, places), want) << value << " " << places;
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
