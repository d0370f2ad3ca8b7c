// The MOPAC listing reader on the cases the golden listing leaves out: which
// coordinate table is read, the lines skipped after its heading, the title,
// the append, a listing cut inside its table, and the window a user opens by
// name.
#include "convert/mopac.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// A listing is converted as it stands: the window reads a typed name, which
// is not cleaned first.
std::string Convert(TestProgram& t, const std::string& bytes) {
    return test::Convert(t, readers::MOPAC::ConvertFile, "C:\\d\\run.out", bytes, "C:\\d\\run.sxs", false);
}

// The starting geometry as a listing prints it: heading, blank line, column
// heading, blank line, atoms.
const std::string kStart =
    " JOB\r\n          CARTESIAN COORDINATES \r\n\r\n    NO.       ATOM           X           Y           Z\r\n\r\n"
    "     1         C          0.0000      0.0000      0.0000\r\n"
    "     2         H          1.0900      0.0000      0.0000\r\n\r\n";

// A final table in the form the listings end with: the heading names the
// units, and one blank line comes before the atoms.
std::string FinalTable(const std::string& heading) {
    return "          " + heading +
           "\r\n\r\n"
           "   1    C        0.100000000     0.200000000     0.300000000\r\n"
           "   2    H        1.100000000     0.200000000     0.300000000\r\n"
           "   5    Cl      -1.111111111     2.222222222    -3.333333333\r\n"
           "   6    Fe       4.444444444    -5.555555555     6.666666666\r\n"
           "   8    H        7.777777777     8.888888888     9.999999999\r\n"
           "\r\n           Empirical Formula: C H2 Cl Fe  =     5 atoms\r\n";
}

// The three lines after the heading are skipped whatever they hold, so with
// a single blank line there the first two atoms go with it. Numbers are the
// listing's own, and the end record carries the last of them plus 1.
const std::string kFinalRecords =
    "-1.111111111,2.222222222,-3.333333333,\"Cl\",5\r\n"
    "4.444444444,-5.555555555,6.666666666,\"Fe\",6\r\n"
    "7.777777777,8.888888888,9.999999999,\"H\",8\r\n";

TEST(MopacReader, TheSecondTableIsReadWithTheListingsOwnNumbers) {
    const std::string once = kFinalRecords + "0,0,0,\"run\",9\r\n";
    {
        // A heading with more words counts; a third table is not read.
        TestProgram t;
        std::string third = "          CARTESIAN COORDINATES\r\n\r\n";
        for (int i = 1; i <= 5; ++i)
            third += "   " + std::to_string(i) + "    O        9.900000000     9.900000000     9.900000000\r\n";
        EXPECT_EQ(Convert(t, kStart + FinalTable("CARTESIAN COORDINATES (ANGSTROMS)") + third), once);
    }
    {
        // The file ends inside the table: what was read is kept, with its
        // end record.
        TestProgram t;
        const std::string table = FinalTable("CARTESIAN COORDINATES");
        EXPECT_EQ(Convert(t, kStart + table.substr(0, table.find("\r\n\r\n           Empirical") + 2)), once);
    }
    {
        // A second conversion is appended.
        TestProgram t;
        EXPECT_EQ(Convert(t, kStart + FinalTable("CARTESIAN COORDINATES")), once);
        EXPECT_EQ(Convert(t, kStart + FinalTable("CARTESIAN COORDINATES")), once + once);
    }
}

TEST(MopacReader, ANameWithoutAFolderGivesAnEmptyTitle) {
    TestProgram t;
    t.Write("C:\\d\\run.out", kStart + FinalTable("CARTESIAN COORDINATES"));
    t.program().fs.ChDir("C:\\d");
    readers::MOPAC::ConvertFile(t.program(), "run.out");
    EXPECT_EQ(t.Read("C:\\d\\run.sxs"), kFinalRecords + "0,0,0,\"\",9\r\n");
}

TEST(MopacWindow, AUserOpensItByNameAndConvertsATypedListingAsItStands) {
    // Line feeds only: a typed name is not cleaned, and the listing stays
    // exactly as it was.
    std::string listing = kStart + FinalTable("CARTESIAN COORDINATES");
    for (std::size_t at; (at = listing.find("\r\n")) != std::string::npos;) listing.replace(at, 2, "\n");
    TestProgram t("show MOPAC\ndump MOPAC\ntext MOPAC.Text1 C:\\data\\Run.Out\nclick MOPAC.Command1\ndump MOPAC\n");
    t.Install();
    t.Write("C:\\data\\Run.Out", listing);
    EXPECT_EQ(t.Run(""), 0);
    const std::string out = t.Output();
    EXPECT_NE(out.find("MOPAC.Label3\t1\t-\tEnter the MOPAC file's Name\n"), std::string::npos) << out;
    EXPECT_NE(out.find("MOPAC.Label5\t1\t-\tConvert another MOPAC file?\n"), std::string::npos) << out;
    // The title keeps the typed name's case.
    EXPECT_EQ(t.Read("C:\\data\\Run.sxs"), kFinalRecords + "0,0,0,\"Run\",9\r\n");
    EXPECT_EQ(t.Read("C:\\data\\Run.Out"), listing);
}

}  // namespace
}  // namespace ravelo
