// Alchemy files that Open Babel's obabel writes from SMILES (the golden set
// holds real files of the other readers), converted by the whole program:
// every atom record equals the atom line it came from. Skipped where obabel
// is not on the PATH.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include "support/sxs_record.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

TEST(AlchemyObabelFiles, ConvertAtomForAtom) {
    if (std::system("command -v obabel >/dev/null 2>&1") != 0) GTEST_SKIP() << "obabel is not on the PATH";
    // Chlorine and bromine among C, H, N, O and S.
    for (const char* smiles : {"CC(=O)Oc1ccccc1C(=O)O", "ClCC(Br)C#N", "c1cscn1"}) {
        test::TestProgram t;
        t.Install();
        std::filesystem::create_directories(t.Host("C:\\d"));
        ASSERT_EQ(std::system(("cd '" + t.Host("C:\\d").string() + "' && obabel -:'" + smiles +
                               "' --gen3d -oalc -O m.alc >/dev/null 2>&1")
                                  .c_str()),
                  0);
        ASSERT_EQ(t.Run("fileconv C:\\d\\m.alc"), 0);
        // The first line counts the atoms; each atom line is "number type x y
        // z charge". The types begin with the element's letters in upper
        // case (C2, CL, BR, NPL3, CAR): the symbol is the first letter, or
        // both where they name an element (CAR, an aromatic carbon, as calcium).
        std::istringstream alc(t.Read("C:\\d\\m.alc")), sxs(t.Read("C:\\d\\m.sxs"));
        std::string line, record;
        std::getline(alc, line);
        const int count = std::stoi(line);
        int number = 0;
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(std::getline(alc, line) && std::getline(sxs, record)) << smiles;
            std::istringstream words(line);
            std::string type;
            test::SxsRecord want;
            words >> number >> type >> want.x >> want.y >> want.z;
            const std::string two = type.substr(0, 2);
            want.symbol = two == "CL" || two == "BR" || two == "CA"
                              ? std::string(1, type[0]) + char(std::tolower(type[1]))
                              : type.substr(0, 1);
            const test::SxsRecord got = test::ParseSxsRecord(record);
            EXPECT_EQ(got.x, want.x) << record;
            EXPECT_EQ(got.y, want.y) << record;
            EXPECT_EQ(got.z, want.z) << record;
            EXPECT_EQ(got.symbol, want.symbol) << line;
            EXPECT_EQ(got.number, number) << record;
        }
        ASSERT_TRUE(std::getline(sxs, record));
        EXPECT_EQ(record, "0,0,0,\"m\"," + std::to_string(number + 1) + "\r");
    }
}

}  // namespace
}  // namespace ravelo
