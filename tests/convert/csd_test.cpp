// The crystal readers (CIF, CMF and database listings) on what the golden
// files leave out: the name rules in their order, the cell and atom passes,
// renames, libraries and the CSD window.
#include "convert/csd.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// A cubic cell of 10 and three atoms; the name lines go before it.
const std::string kCell =
    "_cell_length_a 10.0\r\n_cell_length_b 10.0\r\n_cell_length_c 10.0\r\n"
    "_cell_angle_alpha 90\r\n_cell_angle_beta 90\r\n_cell_angle_gamma 90\r\n";
const std::string kAtoms =
    "loop_\r\n_atom_site_label\r\n_atom_site_fract_x\r\n_atom_site_fract_y\r\n_atom_site_fract_z\r\n"
    "C1 0.1000 0.2000 0.3000\r\nO1 0.4000 0.5000 0.6000\r\nN1 0.7000 0.8000 0.9000\r\n";
const std::string kRecords = ".1,.2,.3,\"C\"\r\n.4,.5,.6,\"O\"\r\n.7,.8,.9,\"N\"\r\n";

using test::FileConv;

std::string NLog(const TestProgram& t) {
    return test::ReadHostFile(t.Temp() / "Ravelo" / "RaveloFilConvN.Txt");
}

TEST(CifReader, TheNameRulesApplyInTheirOrder) {
    struct Case {
        std::string lines, name;
    };
    const std::vector<Case> cases = {
        // A deposition number of 8 characters or more comes first.
        {"_database_code_depnum_ccdc_archive 'CCDC 1234567'\r\n_database_code_CSD ABCDEF\r\n",
         "CCDC_1234567"},
        // "CCDC" with a short number is a placeholder: skipped, and an
        // earlier number stays.
        {"_database_code_depnum_ccdc_archive 'CCDC 12'\r\n_database_code_CSD ABCDEF\r\n", "ABCDEF"},
        {"_database_code_depnum_ccdc_archive 'CCDC 7654321'\r\n_database_code_depnum_ccdc_archive 'CCDC "
         "12'\r\n",
         "CCDC_7654321"},
        // Then the CSD code, the block code, a plain code (after the word in
        // quotes), a short upper-case block name.
        {"data_CSD_CIF_QAXMEH\r\n_database_code_CSD ABCDEF\r\n", "ABCDEF"},
        {"_database_code 'CSD KUMXEW'\r\ndata_CSD_CIF_QAXMEH\r\n", "QAXMEH"},
        {"DATA_ABCDEFGH\r\n_journal_database_code 'CSD KUMXEW'\r\n", "KUMXEW"},
        {"DATA_ABCDEFGH\r\nDATA_SECONDONE\r\n_chemical_name_common Aspirin\r\n", "ABCDEFGH"},
        // Block names in lower case or of 16 characters are no names; a
        // numeric code gives way to a file name that is not a number.
        {"data_abcdefgh\r\nDATA_LONGERNAME12\r\n_chemical_name_systematic 'Sodium chloride'\r\n",
         "Sodium_chloride"},
        {"_database_code_CSD 12345\r\n", "in"},
        // Of two chemical names the shorter, the common one when equal; a
        // value of 3 characters or a "?" does not count.
        {"_chemical_name_systematic 2-acetoxybenzoic acid\r\n_chemical_name_common Aspirin\r\n", "Aspirin"},
        {"_chemical_name_common Toluene\r\n_chemical_name_systematic Benzene\r\n", "Toluene"},
        {"_chemical_name_systematic 'Sodium chloride'\r\n_chemical_name_common NaC\r\n", "Sodium_chloride"},
        {"_chemical_name_common ?\r\n", "in"},
        // A value on the lines after its item: the second line is the name.
        {"_chemical_name_common\r\n;\r\n Aspirin form II\r\n;\r\n", "Aspirin_form_II"},
        // "Chemical" anywhere falls back to the file name; a final point goes.
        {"_chemical_name_common 'Chemical X'\r\n", "in"},
        {"_chemical_name_common Salt form A.\r\n", "Salt_form_A"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(FileConv(t, "in.cif", c.lines + kCell + kAtoms), 0) << c.lines;
        const std::string xcc = t.Read("C:\\d\\" + c.name + ".xcc");
        EXPECT_EQ(xcc, "10,10,10,\"" + c.name + ".cif\"\r\n90,90,90,\"+\"\r\n" + kRecords) << c.lines;
        // The input now carries the structure's name, and the N log says so.
        EXPECT_TRUE(t.Exists("C:\\d\\" + c.name + ".cif")) << c.lines;
        EXPECT_EQ(t.Exists("C:\\d\\in.cif"), c.name == "in") << c.lines;
        EXPECT_EQ(NLog(t), c.name == "in" ? "" : "\"c:\\d\\" + c.name + ".cif\"\r\n") << c.lines;
    }
}

TEST(CifReader, CellRFactorAndAtomPassesReadWhatTheyFind) {
    TestProgram t;
    const std::string cif =
        "_refine_ls_wR_factor_gt 0.0917\r\n_refine_ls_R_factor_gt 0.0353\r\n_refine_ls_R_factor_obs "
        "0.0400\r\n"
        // Angles found at the line start, read from the first blank; a "?"
        // angle is a right angle. Lengths read from column 15, the
        // uncertainty dropped; the note is no angle.
        "_cell_angle_alpha 90\r\n# _cell_angle_beta 45\r\n_cell_angle_beta 101.5(2)\r\n_cell_angle_gamma "
        "?\r\n"
        "_cell_length_a 7.25(3)\r\n_cell_length_b 8.5\r\n_cell_length_c12.75\r\n"
        "loop_\r\n_atom_site_label\r\n_atom_site_occupancy\r\n_atom_site_fract_x\r\n_atom_site_fract_y\r\n"
        "_atom_site_fract_z\r\n"
        // The numbers are taken in line order, the occupancy first; a line
        // without a point is passed over; "loop_" ends the list.
        "Cl1 1.0 0.42324(8) 0.86294(10) 0.38315(5)\r\n"
        "Q1 Q 1 2 3 4 5 6 7\r\n"
        "O1 0.5 -0.1949(4) 1.2898(2) 0.07664(16)\r\n"
        "N1 1.0 0.1339(2) 0.8332(2) 0.41005(13)\r\n"
        "LOOP_\r\nC9 1.0 0.1 0.2 0.3 0.4 0.5\r\n";
    EXPECT_EQ(FileConv(t, "cell.cif", cif), 0);
    EXPECT_EQ(t.Read("C:\\d\\cell.xcc"),
              "7.25,8.5,12.75,\"cell.cif\"\r\n90,101.5,90,\"0.0353\"\r\n"
              "1,.42324,.86294,\"Cl\"\r\n.5,-.1949,1.2898,\"O\"\r\n1,.1339,.8332,\"N\"\r\n");
}

TEST(CifLibrary, ThreeBlocksBecomeThreePiecesAndALibFile) {
    TestProgram t;
    std::string library;
    for (const char* block : {"data_first\r\n", "data_second\r\n", "data_third\r\n"})
        library += block + kCell + kAtoms;
    EXPECT_EQ(FileConv(t, "lib.cif", library), 0);
    EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"),
              (std::vector<std::string>{"lib_1.cif", "lib_1.xcc", "lib_2.cif", "lib_2.xcc", "lib_3.cif",
                                        "lib_3.xcc", "lib_cif.lib"}));
    EXPECT_EQ(t.Read("C:\\d\\lib_cif.lib"), library);
    for (const char* piece : {"1", "2", "3"}) {
        const std::string text = t.Read("C:\\d\\lib_" + std::string(piece) + ".cif");
        EXPECT_EQ(text.substr(text.size() - 6), "#END\r\n") << piece;
        EXPECT_EQ(t.Read("C:\\d\\lib_" + std::string(piece) + ".xcc"),
                  "10,10,10,\"lib_" + std::string(piece) + ".cif\"\r\n90,90,90,\"+\"\r\n" + kRecords);
    }
    EXPECT_EQ(test::ReadHostFile(t.Temp() / "Ravelo" / "RaveloFilConvLib.Txt"), "3\r\n");
}

// A CMF file: the code in quotes, lengths and then angles after the first
// blank, the atom list after its loop header.
const std::string kCmf =
    "data_CSD_CIF_ABCDEF\r\n_database_code_CSD 'CSD ABCDEF'\r\n_refine_ls_R_factor_all 0.052\r\n"
    "_cell_angle_alpha 90\r\n_cell_length_a 7.5\r\n_cell_length_b 8.5\r\n_cell_length_c 9.5\r\n"
    "_cell_angle_alpha 90\r\n_cell_angle_beta 101.5\r\n_cell_angle_gamma "
    "?\r\nloop_\r\n_ccdc_atom_site_base\r\n"
    "1 C1 C 0.12345 0.23456 0.34567\r\n2 O1 O 0.45678 0.56789 0.67890\r\n3 CL1 Cl 0.78901 0.89012 0.90123\r\n"
    "#END\r\n4 N1 N 0.5 0.5 0.5\r\n";

TEST(CmfReader, WritesTheListWithItsOwnRulesAndKeepsTheInputName) {
    TestProgram t;
    EXPECT_EQ(FileConv(t, "in.cmf", kCmf), 0);
    // The closing quote stays in the name; the "?" angle reads 0 here; an
    // angle before the lengths is not taken; the running number and the
    // atom's name are dropped, so the third item is the label.
    EXPECT_EQ(t.Read("C:\\d\\ABCDEF'.xcc"),
              "7.5,8.5,9.5,\"ABCDEF'.cmf\"\r\n90,101.5,0,\"0.052\"\r\n"
              ".12345,.23456,.34567,\"C\"\r\n.45678,.56789,.6789,\"O\"\r\n.78901,.89012,.90123,\"Cl\"\r\n");
    EXPECT_EQ(t.Read("C:\\d\\in.cmf"), kCmf);
    EXPECT_EQ(NLog(t), "");

    // The counter counts the line that ends the list too.
    TestProgram direct;
    Program& p = direct.program();
    direct.Write("C:\\d\\in.cmf", kCmf);
    InputFile in = p.fs.OpenInput("C:\\d\\in.cmf");
    EXPECT_EQ(readers::CSD::CMFFORMAT(p, in, "C:\\d\\in.cmf", nullptr), 4);

    // A CIF/MIF block before the atom list leaves the XCC file empty.
    TestProgram mif;
    std::string text = kCmf;
    text.replace(text.find("_ccdc_atom_site_base"), 20, "data_CSD_CIF/MIF");
    EXPECT_EQ(FileConv(mif, "in.cmf", text), 0);
    EXPECT_TRUE(mif.Exists("C:\\d\\ABCDEF'.xcc"));
    EXPECT_EQ(mif.Read("C:\\d\\ABCDEF'.xcc"), "");
}

TEST(CsdListingReader, TakesTheReferenceCodeCellAndAtomLines) {
    const std::string listing =
        "REFERENCE CODE: ABCDEF01XYZ\r\nR-FACTOR 0.045\r\ncell dimensions: 1 2 3 4 5 6\r\n"
        "CELL DIMENSIONS: 10.5 11.5 12.5 90 95.5 90\r\n"
        "ATOMIC COORD. C1    0.11111 0.22222 0.33333\r\nBOND C1 O1 1.2\r\n"
        "ATOMIC COORD. O1    0.44444 0.55555 0.66666\r\nATOMIC COORD. N1    0.77777 0.88888 0.99999\r\n"
        "ATOMIC COORD. END\r\nATOMIC COORD. C2    0.5 0.5 0.5\r\n";
    TestProgram t;
    EXPECT_EQ(FileConv(t, "in.csd", listing), 0);
    // Eight characters of the code; the cell heading matched in upper case only.
    EXPECT_EQ(t.Read("C:\\d\\ABCDEF01.xcc"),
              "10.5,11.5,12.5,\"ABCDEF01.csd\"\r\n90,95.5,90,\"0.045\"\r\n"
              ".11111,.22222,.33333,\"C\"\r\n.44444,.55555,.66666,\"O\"\r\n.77777,.88888,.99999,\"N\"\r\n");
    EXPECT_EQ(t.Read("C:\\d\\ABCDEF01.csd"), listing);
    EXPECT_FALSE(t.Exists("C:\\d\\in.csd"));
    EXPECT_EQ(NLog(t), "\"c:\\d\\ABCDEF01.csd\"\r\n");
}

TEST(CsdReader, TheExtensionAfterTheFirstPointChoosesTheReader) {
    TestProgram t;
    Program& p = t.program();
    t.Write("C:\\d\\a.b.cif", kCell + kAtoms);
    readers::CSD::ConvertFile(p, "C:\\d\\a.b.cif", nullptr);  // extension "b.cif": nothing
    EXPECT_EQ(p.fs.Dir("C:\\d\\*"), std::vector<std::string>{"a.b.cif"});
    EXPECT_EQ(p.conversion.extension, ".b.cif");
    EXPECT_EQ(test::ErrorOf([&] { readers::CSD::ConvertFile(p, "C:\\d\\nopoint", nullptr); }), 5);
    EXPECT_EQ(test::ErrorOf([&] { readers::CSD::ConvertFile(p, "C:\\d\\missing.cif", nullptr); }), 53);
}

TEST(CsdWindow, ATypedNameConvertsAsTheCommandLineDoes) {
    // Line feeds only: a typed name is not cleaned first, and reads the same.
    std::string lf = "_chemical_name_common Aspirin\r\n" + kCell + kAtoms;
    for (std::size_t at; (at = lf.find("\r\n")) != std::string::npos;) lf.erase(at, 1);
    // Without pauses, so that no command runs inside the conversion's wait.
    TestProgram window("dump CSD\ntext CSD.Text1 C:\\d\\in.cif\nclick CSD.Command1\ndump CSD\n", 0);
    window.Install();
    window.Write("C:\\d\\in.cif", lf);
    EXPECT_EQ(window.Run("", "CSD"), 0);
    TestProgram line;
    FileConv(line, "in.cif", lf);
    EXPECT_EQ(window.Read("C:\\d\\Aspirin.xcc"), line.Read("C:\\d\\Aspirin.xcc"));
    EXPECT_EQ(window.Read("C:\\d\\Aspirin.cif"), lf);
    const std::string out = window.Output();
    EXPECT_NE(
        out.find("CSD.Label1\t1\t-\tCambridge Crystallographic Database Files => Kalmodyn's Data Files\n"),
        std::string::npos)
        << out;
    EXPECT_NE(out.find("CSD.Label3\t1\t-\tEnter the Name of the CSD file\n"), std::string::npos);
    EXPECT_NE(out.find("CSD.Label5\t1\t-\tConvert another CSD file?\n"), std::string::npos) << out;
}

}  // namespace
}  // namespace ravelo
