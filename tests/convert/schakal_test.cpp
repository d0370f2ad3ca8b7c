// The Schakal reader: fields rather than lines, the symbol straight from the
// label, the z value that needs a word after it, the upper-case "SXS" output
// without an end record, and the table of 3000 atoms.
#include "convert/schakal.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Schakal files are read as they stand.
std::string Convert(TestProgram& t, readers::Schakal::Tables& tables, const std::string& bytes) {
    return test::Convert(
        t, [&](Program& p, const std::string& path) { readers::Schakal::ConvertFile(p, path, tables); },
        "C:\\d\\s.sch", bytes, "C:\\d\\s.SXS", false);
}

TEST(SchakalReader, EveryFieldThatBeginsWithAtomIsOneAtom) {
    TestProgram t;
    readers::Schakal::Tables tables;
    EXPECT_EQ(Convert(t, tables,
                      "TITLE test\r\nCELL 10 10 10 90 90 90\r\n"
                      "ATOM C1 1.5 2.5 3.5\r\n"  // z is read only when a word follows it
                      "atom CL -1.5 -2.5 -3.5 0.8\r\n"
                      // Commas divide a line into fields; each is tested.
                      "ATOM C0 1 2 3 x, ATOM N 4 5 6 x, CELL 1 2 3\r\n"
                      "ATOMS 12 13\r\n"),  // ATOMS counts too: its label is then the "S"
              "1.5,2.5,0,\"C\",1\r\n-1.5,-2.5,-3.5,\"CL\",2\r\n1,2,3,\"C0\",3\r\n4,5,6,\"N \",4\r\n12,0,0,\"S \",5\r\n");
    EXPECT_EQ(tables.atomCounter, 5);
}

TEST(SchakalReader, TheOutputEndsInUpperCaseSxsAndIsNeitherClosedNorChecked) {
    TestProgram t;
    readers::Schakal::Tables tables;
    // One atom is kept: there is no end record and no check of the length.
    // An earlier output of the same name is replaced.
    t.Write("C:\\d\\s.sxs", "an earlier output\r\n");
    EXPECT_EQ(Convert(t, tables, "ATOM H 0.5 0.5 0.5 x\r\n"), ".5,.5,.5,\"H \",1\r\n");
    EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"), (std::vector<std::string>{"s.SXS", "s.sch"}));

    // A file without atoms leaves an empty output; the counter starts again.
    EXPECT_EQ(Convert(t, tables, "TITLE none\r\n"), "");
    EXPECT_TRUE(std::filesystem::exists(t.Host("C:\\d\\s.SXS")));
    EXPECT_EQ(tables.atomCounter, 0);

    // A typed name without a point writes the bare name SXS in the current
    // folder.
    t.program().fs.ChDir("C:\\d");
    t.Write("C:\\d\\plain", "ATOM O 1.0 2.0 3.0 x\r\n");
    readers::Schakal::ConvertFile(t.program(), "plain", tables);
    EXPECT_EQ(t.Read("C:\\d\\SXS"), "1,2,3,\"O \",1\r\n");
}

TEST(SchakalReader, TheAtomAfterTheThreeThousandthIsASubscriptError) {
    TestProgram t;
    readers::Schakal::Tables tables;
    std::string input;
    for (int i = 0; i < 3001; ++i) input += "ATOM H 1.0 2.0 3.0 x\r\n";
    EXPECT_EQ(test::ErrorOf([&] { Convert(t, tables, input); }), 9);
    // The records written before stay.
    const std::string written = t.Read("C:\\d\\s.SXS");
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 3000);
    EXPECT_TRUE(written.ends_with("1,2,3,\"H \",3000\r\n"));
    EXPECT_EQ(t.Read("C:\\d\\s.sch"), input);
}

TEST(SchakalReader, ASchFileGoesToTheSchakalWindow) {
    TestProgram t;
    EXPECT_EQ(test::FileConv(t, "cell.sch", "TITLE x\nATOM FE1 0.25 0.5 0.75 1\nATOM O 1.0 1.0 1.0 2\n"), 0);
    EXPECT_EQ(t.Read("C:\\d\\cell.SXS"), ".25,.5,.75,\"FE\",1\r\n1,1,1,\"O \",2\r\n");
}

}  // namespace
}  // namespace ravelo
