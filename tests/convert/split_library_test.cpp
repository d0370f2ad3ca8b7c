// The division of a library file into one file per entry.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/filcvrt.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Runs the division on C:\d\<name> holding `bytes`; the log folder is C:\tmp.
struct Split {
    explicit Split(const std::string& name, const std::string& bytes, const std::string& marker,
                   const std::string& ext) {
        p.TempDir = "C:\\tmp";
        t.Write("C:\\d\\" + name, bytes);
        FilCvrt::SplitLibraryFile(p, count, "C:\\d\\" + name, marker, ext,
                                  [this](const std::string& text) { progress.push_back(text); });
    }
    std::vector<std::string> Files() { return p.fs.Dir("C:\\d\\*"); }
    std::string LibLog() { return t.Read("C:\\tmp\\Ravelo\\RaveloFilConvLib.Txt"); }

    TestProgram t;
    Program& p = t.program();
    std::int32_t count = -1;
    std::vector<std::string> progress;
};

TEST(SplitLibraryPdb, EachHeaderBeginsAPieceThatEndsWithEnd) {
    const std::string library =
        "HEADER    ONE\r\n"
        "ATOM      1  N   GLY A   1       1.000   2.000   3.000\r\n"
        "END\r\n"
        "HEADER    TWO\r\n"
        "REMARK   1 HEADER IN A REMARK IS NO ENTRY\r\n"
        "   ATOM      1  O   HOH A   1       1.500   2.500   3.500   \r\n"
        "END\r\n"
        "HEADER    THREE\r\n"
        "ATOM      1  C1  LIG A   1      -1.000  -2.000  -3.000\r\n";
    Split s("lib.pdb", library, "header", ".pdb");

    EXPECT_EQ(s.count, 3);
    EXPECT_EQ(s.p.LibraryCount, 3);
    EXPECT_EQ(s.LibLog(), "3\r\n");
    EXPECT_EQ(s.progress, std::vector<std::string>{"Separating Library into 3 Files."});
    EXPECT_EQ(s.p.ConvertResult, "Yea");
    EXPECT_EQ(s.Files(), (std::vector<std::string>{"lib.pdb", "lib_1.pdb", "lib_2.pdb", "lib_3.pdb"}));
    EXPECT_EQ(s.t.Read("C:\\d\\lib.pdb"), library);

    EXPECT_EQ(s.t.Read("C:\\d\\lib_1.pdb"),
              "HEADER    ONE\r\nATOM      1  N   GLY A   1       1.000   2.000   3.000\r\nEND\r\n");
    // Lines are written trimmed.
    EXPECT_EQ(s.t.Read("C:\\d\\lib_2.pdb"),
              "HEADER    TWO\r\nREMARK   1 HEADER IN A REMARK IS NO ENTRY\r\n"
              "ATOM      1  O   HOH A   1       1.500   2.500   3.500\r\nEND\r\n");
    // The last entry ends with the file and gets its END.
    EXPECT_EQ(s.t.Read("C:\\d\\lib_3.pdb"),
              "HEADER    THREE\r\nATOM      1  C1  LIG A   1      -1.000  -2.000  -3.000\r\nEND\r\n");
    // One second after each piece.
    EXPECT_EQ(s.t.clock().millis, 3000u);
}

TEST(SplitLibraryPdb, AnyLineHoldingEndEndsThePiece) {
    // ENDMDL closes the first piece; the second piece is the next model, and
    // the count runs out before HEADER B is reached.
    Split s("m.pdb",
            "HEADER    A\r\nMODEL        1\r\nATOM 1.0\r\nENDMDL\r\nMODEL        2\r\nATOM 2.0\r\nENDMDL\r\n"
            "HEADER    B\r\nATOM 3.0\r\nEND\r\n",
            "HEADER", ".pdb");
    EXPECT_EQ(s.count, 2);
    EXPECT_EQ(s.Files(), (std::vector<std::string>{"m.pdb", "m_1.pdb", "m_2.pdb"}));
    EXPECT_EQ(s.t.Read("C:\\d\\m_1.pdb"), "HEADER    A\r\nMODEL        1\r\nATOM 1.0\r\nENDMDL\r\n");
    EXPECT_EQ(s.t.Read("C:\\d\\m_2.pdb"), "MODEL        2\r\nATOM 2.0\r\nENDMDL\r\n");

    // A header that itself holds END is a piece of its own.
    Split e("e.pdb", "HEADER    ENDONUCLEASE\r\nATOM 1.0\r\nEND\r\nHEADER    X\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(e.count, 2);
    EXPECT_EQ(e.t.Read("C:\\d\\e_1.pdb"), "HEADER    ENDONUCLEASE\r\n");
    EXPECT_EQ(e.t.Read("C:\\d\\e_2.pdb"), "ATOM 1.0\r\nEND\r\n");
}

TEST(SplitLibraryPdb, TheDivisionStopsWhenTheLibraryRunsOut) {
    // Three headers but two ENDs: the first piece takes two headers, and no
    // third piece is made.
    Split s("r.pdb", "HEADER A\r\nHEADER B\r\nATOM 1.0\r\nEND\r\nHEADER C\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(s.count, 3);
    EXPECT_EQ(s.Files(), (std::vector<std::string>{"r.pdb", "r_1.pdb", "r_2.pdb"}));
    EXPECT_EQ(s.t.Read("C:\\d\\r_2.pdb"), "HEADER C\r\nEND\r\n");
    EXPECT_EQ(s.t.clock().millis, 2000u);
}

TEST(SplitLibraryPdb, OneEntryIsNotDivided) {
    // Only a line that begins with HEADER (after trimming, in any case) counts.
    Split s("one.pdb", "  header    ONE\r\nREMARK HEADER\r\nATOM 1.0\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(s.count, 1);
    EXPECT_EQ(s.p.LibraryCount, 1);
    EXPECT_EQ(s.LibLog(), "1\r\n");
    EXPECT_TRUE(s.progress.empty());
    EXPECT_EQ(s.p.ConvertResult, "");
    EXPECT_EQ(s.Files(), std::vector<std::string>{"one.pdb"});

    // No header at all still counts as one entry.
    Split none("none.pdb", "ATOM 1.0\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(none.count, 1);
    EXPECT_EQ(none.LibLog(), "1\r\n");
}

TEST(SplitLibraryCif, ThreeBlocksBecomeThreePiecesEndingInHashEnd) {
    Split s("lib.cif",
            "data_first\r\n_cell_length_a 5.0\r\n_diffrn_measured_data_count 12\r\nloop_\r\n_atom_site_label\r\n"
            "C1 0.1 0.2 0.3\r\n"
            "data_second\r\n_cell_length_a 6.0\r\n_atom_site_label\r\nO1 0.5 0.5 0.5\r\n#END\r\n"
            "data_third\r\n_cell_length_a 7.0\r\nN1 0.2 0.2 0.2\r\n",
            "cell_length_a", ".cif");
    EXPECT_EQ(s.count, 3);
    EXPECT_EQ(s.LibLog(), "3\r\n");
    EXPECT_EQ(s.progress, std::vector<std::string>{"Separating Library into 3 Files."});
    // The second data block header ends the first piece and begins the next;
    // "_data_" inside a name is no header.
    EXPECT_EQ(s.t.Read("C:\\d\\lib_1.cif"),
              "data_first\r\n_cell_length_a 5.0\r\n_diffrn_measured_data_count 12\r\nloop_\r\n_atom_site_label\r\n"
              "C1 0.1 0.2 0.3\r\n#END\r\n");
    // A piece that ends on its own #END gets no second one.
    EXPECT_EQ(s.t.Read("C:\\d\\lib_2.cif"),
              "data_second\r\n_cell_length_a 6.0\r\n_atom_site_label\r\nO1 0.5 0.5 0.5\r\n#END\r\n");
    EXPECT_EQ(s.t.Read("C:\\d\\lib_3.cif"), "data_third\r\n_cell_length_a 7.0\r\nN1 0.2 0.2 0.2\r\n#END\r\n");
}

TEST(SplitLibraryCif, HashRowsAndDepositionNumbersCutOnlyAfterAtomSites) {
    Split s("d.cif",
            "data_a\r\n############\r\n_cell_length_a 5.0\r\n_atom_site_label\r\nC1 0.1\r\n"
            "############\r\ndata_b\r\n_cell_length_a 6.0\r\n_atom_site_label\r\n"
            "_database_code_depnum_ccdc_archive 'CCDC 0'\r\n"
            "_database_code_depnum_ccdc_archive 'CCDC 123456'\r\n"
            "data_c\r\n_cell_length_a 7.0\r\n",
            "cell_length_a", ".cif");
    EXPECT_EQ(s.count, 3);
    // The row before the atom sites stays; the one after them begins piece 2.
    EXPECT_EQ(s.t.Read("C:\\d\\d_1.cif"),
              "data_a\r\n############\r\n_cell_length_a 5.0\r\n_atom_site_label\r\nC1 0.1\r\n#END\r\n");
    // The placeholder number 'CCDC 0' does not end a piece; a real one ends
    // it after its line.
    EXPECT_EQ(s.t.Read("C:\\d\\d_2.cif"),
              "############\r\ndata_b\r\n_cell_length_a 6.0\r\n_atom_site_label\r\n"
              "_database_code_depnum_ccdc_archive 'CCDC 0'\r\n"
              "_database_code_depnum_ccdc_archive 'CCDC 123456'\r\n#END\r\n");
    EXPECT_EQ(s.t.Read("C:\\d\\d_3.cif"), "data_c\r\n_cell_length_a 7.0\r\n#END\r\n");
}

TEST(SplitLibraryCif, AFileWithoutTheMarkerCountsNoEntry) {
    Split s("x.cif", "data_x\r\n_atom_site_label\r\n", "cell_length_a", ".cif");
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.p.LibraryCount, 0);
    EXPECT_EQ(s.LibLog(), "0\r\n");
    EXPECT_EQ(s.Files(), std::vector<std::string>{"x.cif"});
}

TEST(SplitLibraryOther, OtherTypesPutTheWholeRestIntoTheFirstPiece) {
    TestProgram t;
    Program& p = t.program();
    p.TempDir = "C:\\tmp";
    t.Write("C:\\d\\m.sdf", "M  A\r\nx\r\nM  B\r\ny\r\n");
    std::int32_t count = 0;
    FilCvrt::SplitLibraryFile(p, count, "C:\\d\\m.sdf", "M  ", ".sdf", nullptr);   // no progress label
    EXPECT_EQ(count, 2);
    EXPECT_EQ(t.Read("C:\\d\\m_1.sdf"), "M  A\r\nx\r\nM  B\r\ny\r\n");
    EXPECT_FALSE(t.Exists("C:\\d\\m_2.sdf"));

    // The pieces are named from the last "." of the full name; without one
    // the name cannot be cut.
    t.Write("C:\\d\\noext", "HEADER A\r\nEND\r\nHEADER B\r\n");
    EXPECT_EQ(test::ErrorOf([&] { FilCvrt::SplitLibraryFile(p, count, "C:\\d\\noext", "HEADER", ".pdb", nullptr); }),
              5);
}

}  // namespace
}  // namespace ravelo
