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

TEST(SplitLibraryPdb, EachHeaderBeginsAPieceThatEndsWithEnd) {
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
}

TEST(SplitLibraryPdb, AnyLineHoldingEndEndsThePieceAndTheFileMayRunOut) {
    // ENDMDL closes piece 1; piece 2 is the second model; the count is used
    // up before HEADER B.
    Split m("m.pdb", "HEADER    A\r\nMODEL 1\r\nATOM 1.0\r\nENDMDL\r\nMODEL 2\r\nENDMDL\r\nHEADER    B\r\nEND\r\n",
            "HEADER", ".pdb");
    EXPECT_EQ(m.Files(), (Names{"m.pdb", "m_1.pdb", "m_2.pdb"}));
    EXPECT_EQ(m.Piece("m_1.pdb"), "HEADER    A\r\nMODEL 1\r\nATOM 1.0\r\nENDMDL\r\n");
    EXPECT_EQ(m.Piece("m_2.pdb"), "MODEL 2\r\nENDMDL\r\n");

    // A header holding END is a piece by itself.
    Split e("e.pdb", "HEADER    ENDONUCLEASE\r\nATOM 1.0\r\nEND\r\nHEADER    X\r\n", "HEADER", ".pdb");
    EXPECT_EQ(e.Piece("e_1.pdb"), "HEADER    ENDONUCLEASE\r\n");
    EXPECT_EQ(e.Piece("e_2.pdb"), "ATOM 1.0\r\nEND\r\n");

    // Three headers, two ENDs: no third piece, and no third wait.
    Split r("r.pdb", "HEADER A\r\nHEADER B\r\nEND\r\nHEADER C\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(r.count, 3);
    EXPECT_EQ(r.Files(), (Names{"r.pdb", "r_1.pdb", "r_2.pdb"}));
    EXPECT_EQ(r.t.clock().millis, 2000u);
}

TEST(SplitLibraryPdb, OneEntryIsNotDivided) {
    // A header in any case after trimming counts; one in a remark does not.
    Split s("one.pdb", "  header    ONE\r\nREMARK HEADER\r\nATOM 1.0\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(s.count, 1);
    EXPECT_EQ(s.LibLog(), "1\r\n");
    EXPECT_TRUE(s.progress.empty());
    EXPECT_EQ(s.Files(), Names{"one.pdb"});
    // No header at all is one entry too.
    Split none("none.pdb", "ATOM 1.0\r\nEND\r\n", "HEADER", ".pdb");
    EXPECT_EQ(none.p.LibraryCount, 1);
}

TEST(SplitLibraryCif, ThreeBlocksBecomeThreePiecesEndingInHashEnd) {
    Split s("lib.cif",
            "data_global\r\ndata_first\r\n_cell_length_a 5.0\r\n_diffrn_measured_data_count 12\r\n_atom_site_label\r\nC1 0.1\r\n"
            "data_second\r\n_cell_length_a 6.0\r\nO1 0.5\r\n#END\r\n"
            "data_third\r\n_cell_length_a 7.0\r\nN1 0.2\r\n",
            "cell_length_a", ".cif");
    EXPECT_EQ(s.count, 3);
    EXPECT_EQ(s.progress, Names{"Separating Library into 3 Files."});
    // A second header before the marker stays in the piece; one after it
    // ends the piece before itself ("_data_" inside a name is no header).
    // Piece 2 ends on its own #END and gets no second.
    EXPECT_EQ(s.Piece("lib_1.cif"),
              "data_global\r\ndata_first\r\n_cell_length_a 5.0\r\n_diffrn_measured_data_count 12\r\n_atom_site_label\r\nC1 0.1\r\n#END\r\n");
    EXPECT_EQ(s.Piece("lib_2.cif"), "data_second\r\n_cell_length_a 6.0\r\nO1 0.5\r\n#END\r\n");
    EXPECT_EQ(s.Piece("lib_3.cif"), "data_third\r\n_cell_length_a 7.0\r\nN1 0.2\r\n#END\r\n");
}

TEST(SplitLibraryCif, HashRowsAndDepositionNumbersCutOnlyAfterAtomSites) {
    Split s("d.cif",
            "data_a\r\n######\r\n_cell_length_a 5.0\r\n_atom_site_label\r\n######\r\n"
            "data_b\r\n_cell_length_a 6.0\r\n_atom_site_label\r\n"
            "_database_code_depnum_ccdc_archive 'CCDC 0'\r\n_database_code_depnum_ccdc_archive 'CCDC 123456'\r\n"
            "data_c\r\n_cell_length_a 7.0\r\n",
            "cell_length_a", ".cif");
    // The row after the atom sites begins piece 2; 'CCDC 0' is a placeholder
    // that ends nothing, a real number ends piece 2 after its line.
    EXPECT_EQ(s.Piece("d_1.cif"), "data_a\r\n######\r\n_cell_length_a 5.0\r\n_atom_site_label\r\n#END\r\n");
    EXPECT_EQ(s.Piece("d_2.cif"),
              "######\r\ndata_b\r\n_cell_length_a 6.0\r\n_atom_site_label\r\n"
              "_database_code_depnum_ccdc_archive 'CCDC 0'\r\n_database_code_depnum_ccdc_archive 'CCDC 123456'\r\n#END\r\n");
    EXPECT_EQ(s.Piece("d_3.cif"), "data_c\r\n_cell_length_a 7.0\r\n#END\r\n");
}

TEST(SplitLibraryOther, NoMarkerOtherTypesAndNamesWithoutAPoint) {
    Split x("x.cif", "data_x\r\n", "cell_length_a", ".cif");
    EXPECT_EQ(x.count, 0);   // only ".pdb" counts at least one
    EXPECT_EQ(x.LibLog(), "0\r\n");

    // Other types end no entry: the first piece takes everything.
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
