// The crystal readers (CIF, CMF and database listings) on what neither the
// golden files nor the edge-case table show: the CMF counter, the choice of
// reader by extension, and the CSD window.
#include "convert/csd.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// A cubic cell of 10 and three atoms.
const std::string kCif =
    "_cell_length_a 10.0\r\n_cell_length_b 10.0\r\n_cell_length_c 10.0\r\n"
    "_cell_angle_alpha 90\r\n_cell_angle_beta 90\r\n_cell_angle_gamma 90\r\n"
    "loop_\r\n_atom_site_label\r\n_atom_site_fract_x\r\n_atom_site_fract_y\r\n_atom_site_fract_z\r\n"
    "C1 0.1000 0.2000 0.3000\r\nO1 0.4000 0.5000 0.6000\r\nN1 0.7000 0.8000 0.9000\r\n";

TEST(CsdReader, TheCmfCounterCountsTheLineThatEndsTheListAndTheExtensionChoosesTheReader) {
    TestProgram t;
    t.Write("C:\\d\\in.cmf",
            "data_CSD_CIF_ABCDEF\r\n_database_code_CSD 'CSD ABCDEF'\r\n_cell_length_a 7.5\r\n_cell_length_b 8.5\r\n"
            "_cell_length_c 9.5\r\n_cell_angle_alpha 90\r\n_cell_angle_beta 101.5\r\n_cell_angle_gamma ?\r\n"
            "loop_\r\n_ccdc_atom_site_base\r\n1 C1 C 0.12345 0.23456 0.34567\r\n2 O1 O 0.45678 0.56789 0.67890\r\n"
            "3 CL1 Cl 0.78901 0.89012 0.90123\r\n#END\r\n4 N1 N 0.5 0.5 0.5\r\n");
    InputFile in = t.program().fs.OpenInput("C:\\d\\in.cmf");
    EXPECT_EQ(readers::CSD::CMFFORMAT(t.program(), in, "C:\\d\\in.cmf", nullptr), 4);
    // The extension after the first point chooses the reader.
    Program& p = t.program();
    t.Write("C:\\e\\a.b.cif", kCif);
    readers::CSD::ConvertFile(p, "C:\\e\\a.b.cif", nullptr);  // extension "b.cif": nothing
    EXPECT_EQ(p.fs.Dir("C:\\e\\*"), std::vector<std::string>{"a.b.cif"});
    EXPECT_EQ(p.conversion.extension, ".b.cif");
    EXPECT_EQ(test::ErrorOf([&] { readers::CSD::ConvertFile(p, "C:\\d\\nopoint", nullptr); }), 5);
    EXPECT_EQ(test::ErrorOf([&] { readers::CSD::ConvertFile(p, "C:\\d\\missing.cif", nullptr); }), 53);
}

TEST(CsdWindow, ATypedNameConvertsAsTheCommandLineDoes) {
    // Line feeds only: a typed name is not cleaned first, and reads the same.
    std::string lf = "_chemical_name_common Aspirin\r\n" + kCif;
    for (std::size_t at; (at = lf.find("\r\n")) != std::string::npos;) lf.erase(at, 1);
    TestProgram window("dump CSD\ntext CSD.Text1 C:\\d\\in.cif\nclick CSD.Command1\ndump CSD\n", 0);
    window.Install();
    window.Write("C:\\d\\in.cif", lf);
    EXPECT_EQ(window.Run("", "CSD"), 0);
    TestProgram line;
    test::FileConv(line, "in.cif", lf);
    EXPECT_EQ(window.Read("C:\\d\\Aspirin.xcc"), line.Read("C:\\d\\Aspirin.xcc"));
    EXPECT_EQ(window.Read("C:\\d\\Aspirin.cif"), lf);
    const std::string out = window.Output();
    for (const char* label : {"Label1\t1\t-\tCambridge Crystallographic Database Files => Kalmodyn's Data Files\n",
                              "Label3\t1\t-\tEnter the Name of the CSD file\n", "Label5\t1\t-\tConvert another CSD file?\n"})
        EXPECT_NE(out.find(std::string("CSD.") + label), std::string::npos) << label << out;
}

}  // namespace
}  // namespace ravelo
