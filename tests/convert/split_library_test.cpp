// The division of a library file into one file per entry, called directly (the rules
// of the pieces are rows of tests/data/edge: cif_library, cif_split_*, pdb_split_*).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/filcvrt.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;
using Names = std::vector<std::string>;

// Divides C:\d\<name> holding `bytes`; the converter logs go to C:\tmp.
struct Split {
    Split(const std::string& name, const std::string& bytes, const std::string& marker, const std::string& ext) {
        p.TempDir = "C:\\tmp";
        t.Write("C:\\d\\" + name, bytes);
        FilCvrt::SplitLibraryFile(p, count, "C:\\d\\" + name, marker, ext,
                                  [this](const std::string& text) { progress.push_back(text); });
    }
    Names Files() { return p.fs.Dir("C:\\d\\*"); }
    std::string Piece(const std::string& name) { return t.Read("C:\\d\\" + name); }
    std::string LibLog() { return t.Read("C:\\tmp\\Ravelo\\RaveloFilConvLib.Txt"); }

    TestProgram t;
    Program& p = t.program();
    std::int32_t count = -1;
    Names progress;
};

TEST(SplitLibrary, EachEntryIsAPieceWithTheCountTheProgressAndAWait) {
    const std::string library =
        "HEADER    ONE\r\nATOM      1  N   GLY A   1       1.000   2.000   3.000\r\nEND\r\n"
        "HEADER    TWO\r\nREMARK   1 HEADER IN A REMARK\r\n   ATOM      1  O   HOH    1.500   \r\nEND\r\n"
        "HEADER    THREE\r\nATOM      1  C1  LIG A   1      -1.000  -2.000  -3.000\r\n";
    Split s("lib.pdb", library, "header", ".pdb");
    EXPECT_EQ(s.count, 3);   // only lines that begin with HEADER
    EXPECT_EQ(s.p.LibraryCount, 3);
    EXPECT_EQ(s.LibLog(), "3\r\n");
    EXPECT_EQ(s.progress, Names{"Separating Library into 3 Files."});
    EXPECT_EQ(s.Files(), (Names{"lib.pdb", "lib_1.pdb", "lib_2.pdb", "lib_3.pdb"}));
    EXPECT_EQ(s.Piece("lib.pdb"), library);
    EXPECT_EQ(s.Piece("lib_1.pdb"), "HEADER    ONE\r\nATOM      1  N   GLY A   1       1.000   2.000   3.000\r\nEND\r\n");
    // Lines are written trimmed; the last piece ends with the file and gets END.
    EXPECT_EQ(s.Piece("lib_2.pdb"), "HEADER    TWO\r\nREMARK   1 HEADER IN A REMARK\r\nATOM      1  O   HOH    1.500\r\nEND\r\n");
    EXPECT_EQ(s.Piece("lib_3.pdb"), "HEADER    THREE\r\nATOM      1  C1  LIG A   1      -1.000  -2.000  -3.000\r\nEND\r\n");
    EXPECT_EQ(s.t.clock().millis, 3000u);   // one second after each piece
    // Three headers, two ENDs: no third piece, and no third wait.
    Split r("r.pdb", "HEADER A\r\nHEADER B\r\nEND\r\nHEADER C\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(r.Files(), (Names{"r.pdb", "r_1.pdb", "r_2.pdb"}));
    EXPECT_EQ(r.t.clock().millis, 2000u);
    // Other types end no entry: the first piece takes everything; a name needs a point.
    Split m("m.sdf", "M  A\r\nx\r\nM  B\r\n", "M  ", ".sdf");
    EXPECT_EQ(m.Files(), (Names{"m.sdf", "m_1.sdf"}));
    EXPECT_EQ(m.Piece("m_1.sdf"), "M  A\r\nx\r\nM  B\r\n");

    std::int32_t count = 0;
    m.t.Write("C:\\d\\noext", "HEADER A\r\nHEADER B\r\n");
    EXPECT_EQ(test::ErrorOf([&] { FilCvrt::SplitLibraryFile(m.p, count, "C:\\d\\noext", "HEADER", ".pdb", nullptr); }),
              5);
}

}  // namespace
}  // namespace ravelo
