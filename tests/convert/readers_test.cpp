// What the edge-case table cannot show of the plain readers: repeated
// conversions in one program, typed names without a folder or a point,
// outputs beyond the input's folder, bounds, progress, typed-name windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "convert/alchemy.hpp"
#include "convert/m3d.hpp"
#include "convert/mdl.hpp"
#include "convert/mopac.hpp"
#include "convert/pdb.hpp"
#include "convert/schakal.hpp"
#include "convert/tripos.hpp"
#include "convert/xyz.hpp"
#include "core/shared.hpp"  // for GetTempDir
#include "support/convert.hpp"
#include "support/error_of.hpp"

namespace ravelo {
namespace {

using test::Convert;
using test::ErrorOf;
using test::TestProgram;

// A MOPAC listing with line feeds only: the starting table, then the one
// that is read.
const std::string kListing =
        " JOB\n          CARTESIAN COORDINATES \n\n    NO.       ATOM           X           Y           Z\n\n"
        "     1         C          0.0000      0.0000      0.0000\n\n"
        "          CARTESIAN COORDINATES\n\n\n\n   5    Cl      -1.111111111     2.222222222    -3.333333333\n"
        "   6    Fe       4.444444444    -5.555555555     6.666666666\n   8    H        7.777777777     8.888888888     9.999999999\n\n";

TEST(Readers, ASecondConversionIsAppended) {
    const std::string alc =
        "3 ATOMS\r\n    2 C3      1.1111   2.2222   3.3333     0.0000\r\n"
        "    3 CAR    -4.4444   5.5555  -6.6666    -0.1000\r\n    7 NPL3    7.7777  -8.8888   9.9999     0.1000\r\n"
        "    1     2     3  SINGLE 1.5\r\n";
    const std::string mol2 =
        "@<TRIPOS>MOLECULE\r\nm\r\n@<TRIPOS>ATOM\r\n"
        "      4 CL1     1.1111    2.2222    3.3333 Cl        1 LIG  0.0000\r\n"
        "      7 C1     -4.4444    5.5555   -6.6666 N.ar      1 LIG -0.1000\r\n"
        "      9 N2      7.7777   -8.8888    9.9999 O.3       1 LIG  0.1000\r\n@<TRIPOS>BOND\r\n";
    struct Case {
        test::Reader reader;
        std::string path, input, output, once;
    };
    const Case cases[] = {
        {readers::Alchemy::ConvertFile, "C:\\d\\a.alc", alc, "C:\\d\\a.sxs",
         "1.1111,2.2222,3.3333,\"C\",2\r\n-4.4444,5.5555,-6.6666,\"Ca\",3\r\n7.7777,-8.8888,9.9999,\"N\",7\r\n"
         "0,0,0,\"a\",8\r\n"},
        {readers::Tripos::ConvertFile, "C:\\d\\t.mop", mol2, "C:\\d\\t.sxs",
         "1.1111,2.2222,3.3333,\"Cl\",4\r\n-4.4444,5.5555,-6.6666,\"C\",7\r\n7.7777,-8.8888,9.9999,\"N\",9\r\n"
         "0,0,0,\"m\",10\r\n"},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(Convert(t, c.reader, c.path, c.input, c.output), c.once) << c.path;
        EXPECT_EQ(Convert(t, c.reader, c.path, c.input, c.output), c.once + c.once) << c.path;
    }
    // A failed Tripos conversion (no atom section: the scan reads past the
    // end) leaves the output alone.
    TestProgram t;
    Convert(t, readers::Tripos::ConvertFile, "C:\\d\\t.mop", mol2, "C:\\d\\t.sxs");
    EXPECT_EQ(ErrorOf([&] { Convert(t, readers::Tripos::ConvertFile, "C:\\d\\t.mop", "@<TRIPOS>MOLECULE\r\nm\r\n", ""); }),
              62);
    EXPECT_EQ(t.Read("C:\\d\\t.sxs"), cases[1].once);
}

TEST(Readers, M3dReplacesItsOutputAndAFileWithoutAtomsKeepsTheLastNumber) {
    TestProgram t;
    std::int32_t lastAtom = 0;
    const auto reader = [&](Program& p, const std::string& path) { readers::M3D::ConvertFile(p, path, lastAtom); };
    const std::string header = "M3D 1.0\r\n  NAME benzene ring  \r\n";
    const std::string sxs = "1.1111,2.2222,3.3333,\"C\",3\r\n-4.4444,5.5555,-6.6666,\"Cl\",5\r\n"
                            "7.7777,-8.8888,9.9999,\"N\",9\r\n0,0,0,\"benzene ring\",10\r\n";
    const std::string atoms = "3 C 1.1111 2.2222 3.3333\r\n5 Cl -4.4444 5.5555 -6.6666\r\n9 N 7.7777 -8.8888 9.9999\r\n";
    EXPECT_EQ(Convert(t, reader, "C:\\d\\m.m3d", header + atoms, "C:\\d\\m.sxs"), sxs);
    EXPECT_EQ(Convert(t, reader, "C:\\d\\m.m3d", header + atoms, "C:\\d\\m.sxs"), sxs);
    // No atoms: the end record alone is too short and is deleted, and the
    // number stays for the window's next conversion.
    EXPECT_EQ(Convert(t, reader, "C:\\d\\m.m3d", header + "1 2 single\r\n", "C:\\d\\m.sxs"), "");
    EXPECT_FALSE(t.Exists("C:\\d\\m.sxs"));
    EXPECT_EQ(lastAtom, 9);
}

TEST(Readers, TheOutputPathEndsAtTheFirstDotOfTheWholePath) {
    const std::string records =
        "1.1111,2.2222,3.3333,\"C\",1\r\n-4.4444,5.5555,-6.6666,\"Cl\",2\r\n7.7777,-8.8888,9.9999,\"N\",3\r\n";
    const std::string mol =
        "t\r\n  3  2\r\n    1.1111    2.2222    3.3333 C   0  0  0  0  0  0\r\n"
        "   -4.4444    5.5555   -6.6666 Cl  0  0  0  0  0  0\r\n    7.7777   -8.8888    9.9999 N   0  0  0  0  0  0\r\n";
    {
        // A folder with a dot: the output lies in the drive's root, and the
        // title is still the file's own name.
        TestProgram t;
        EXPECT_EQ(Convert(t, readers::XYZ::ConvertFile, "C:\\data.v2\\w.xyz",
                          "3\r\nthree\r\nC 1.1111 2.2222 3.3333\r\nCl -4.4444 5.5555 -6.6666\r\nN 7.7777 -8.8888 9.9999\r\n",
                          "C:\\data.sxs"),
                  records + "0,0,0,\"w\",4\r\n");
        EXPECT_FALSE(t.Exists("C:\\data.v2\\w.sxs"));
        EXPECT_EQ(Convert(t, readers::MDL::ConvertFile, "C:\\data.v2\\m.mol", mol, "C:\\data.sxs"),
                  records + "0,0,0,\"t\",4\r\n");
    }
    // A typed name without any dot: the output is ".sxs" in the current
    // folder (Schakal's is "SXS"); a Tripos file has no base name to cut; a
    // listing typed without a folder has an empty title.
    TestProgram t;
    t.Write("C:\\d\\plain", mol);
    t.program().fs.ChDir("C:\\d");
    readers::MDL::ConvertFile(t.program(), "plain");
    EXPECT_EQ(t.Read("C:\\d\\.sxs"), records + "0,0,0,\"t\",4\r\n");
    readers::Schakal::Tables tables;
    t.Write("C:\\d\\plain", "ATOM O 1.0 2.0 3.0 x\r\n");
    readers::Schakal::ConvertFile(t.program(), "plain", tables);
    EXPECT_EQ(t.Read("C:\\d\\SXS"), "1,2,3,\"O \",1\r\n");
    t.Write("C:\\d\\plain", "@<TRIPOS>ATOM\r\n");
    EXPECT_EQ(ErrorOf([&] { readers::Tripos::ConvertFile(t.program(), "plain"); }), 5);
    t.Write("C:\\d\\run.out", kListing);
    readers::MOPAC::ConvertFile(t.program(), "run.out");
    EXPECT_EQ(t.Read("C:\\d\\run.sxs"), "-1.111111111,2.222222222,-3.333333333,\"Cl\",5\r\n4.444444444,-5.555555555,6.666666666,\"Fe\",6\r\n"
                                          "7.777777777,8.888888888,9.999999999,\"H\",8\r\n0,0,0,\"\",9\r\n");
}

TEST(Readers, SchakalWritesUpperCaseSxsNeitherClosedNorCheckedUpTo3000Atoms) {
    TestProgram t;
    readers::Schakal::Tables tables;
    const auto reader = [&](Program& p, const std::string& path) { readers::Schakal::ConvertFile(p, path, tables); };
    // One atom is kept: no end record and no check of the length. An
    // earlier output of the same name is replaced.
    t.Write("C:\\d\\s.sxs", "an earlier output\r\n");
    EXPECT_EQ(Convert(t, reader, "C:\\d\\s.sch", "ATOM H 0.5 0.5 0.5 x\r\n", "C:\\d\\s.SXS", false), ".5,.5,.5,\"H \",1\r\n");
    EXPECT_EQ(t.program().fs.Dir("C:\\d\\*"), (std::vector<std::string>{"s.SXS", "s.sch"}));
    // A file without atoms leaves an empty output; the counter starts again.
    EXPECT_EQ(Convert(t, reader, "C:\\d\\s.sch", "TITLE none\r\n", "C:\\d\\s.SXS", false), "");
    EXPECT_TRUE(t.Exists("C:\\d\\s.SXS"));
    EXPECT_EQ(tables.atomCounter, 0);
    // The atom after the 3000th is a subscript error; the records before stay.
    std::string input;
    for (int i = 0; i < 3001; ++i) input += "ATOM H 1.0 2.0 3.0 x\r\n";
    EXPECT_EQ(ErrorOf([&] { Convert(t, reader, "C:\\d\\s.sch", input, "", false); }), 9);
    const std::string written = t.Read("C:\\d\\s.SXS");
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 3000);
    EXPECT_TRUE(written.ends_with("1,2,3,\"H \",3000\r\n"));
    EXPECT_EQ(t.Read("C:\\d\\s.sch"), input);
}

TEST(Readers, XccTakesTenThousandAtomsAndOneMoreIsOutOfRange) {
    std::string xcc = "10,10,10,\"big\"\r\n90,90,90,\"+\"\r\n";
    for (int i = 0; i < 10000; ++i) xcc += ".1,.2,.3,\"C\"\r\n";
    EXPECT_NE(test::FileConvOutput("s.xcc", xcc, "s.xxs").find("1,2,3,\"C\",10000\r\n0,0,0,\"#big\",10001\r\n"),
              std::string::npos);
    TestProgram t;
    t.Write("C:\\d\\s.xxs", "an old output\r\n");
    EXPECT_EQ(test::FileConv(t, "s.xcc", xcc + ".1,.2,.3,\"C\"\r\n"), 3);
    EXPECT_NE(t.Output().find("Run-time error '9'"), std::string::npos);
    EXPECT_FALSE(t.Exists("C:\\d\\s.xxs"));
}

TEST(Readers, APdbEntryCodeThatDiffersOnlyInCaseKeepsTheInputAndShowsTheCode) {
    TestProgram t;
    GetTempDir(t.program());
    std::vector<std::string> progress;
    const auto reader = [&](Program& p, const std::string& name) {
        readers::PDB::ConvertFile(p, name, [&](const std::string& text) { progress.push_back(text); });
    };
    const std::string atoms =
        "ATOM      1  N   GLY A  17       1.111   2.222   3.333  1.00 20.00\r\n"
        "ATOM      2  CA  GLY A  17       4.444   5.555   6.666  1.00 20.00\r\n"
        "ATOM      3  C   GLY A  17       7.777   8.888   9.999  1.00 20.00\r\n";
    const std::string xxs = Convert(t, reader, "C:\\d\\abc.pdb", "REMARK CSD ENTRY ABC\r\n" + atoms, "C:\\d\\ABC.xxs");
    EXPECT_TRUE(xxs.ends_with("4.444,5.555,6.666,\"C\",2\r\n7.777,8.888,9.999,\"C\",3\r\n0,0,0,\"ABC.pdb\",4\r\n")) << xxs;
    EXPECT_TRUE(t.Exists("C:\\d\\abc.pdb"));
    EXPECT_EQ(test::ReadHostFile(t.Temp() / "Ravelo" / "RaveloFilConvN.Txt"), "");
    EXPECT_EQ(progress, std::vector<std::string>{"ABC"});
}

// Converter windows given a typed name: the name is read as it stands (not
// cleaned), the output is the command line's, and the window asks for
// another.
TEST(Readers, WindowsConvertATypedNameAsTheCommandLineDoes) {
    const std::string edge = std::string(RAVELO_TEST_DATA) + "/edge/";
    // Inputs from the edge-case table; a listing's title keeps the typed case.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"XCC", "xcc_round1.xcc", "xcc_round1.xxs"}, {"XCX", "xcx_scale1.xcx", "xcx_scale1.xcc"},
        {"MOPAC", "Run.Out", "Run.sxs"}};
    for (const auto& [window, name, output] : cases) {
        const std::string path = "C:\\d\\" + name;
        TestProgram t("text " + window + ".Text1 " + path + "\nclick " + window + ".Command1\ndump " + window + "\n", 0);
        t.Install();
        const std::string input = window == "MOPAC" ? kListing : test::ReadHostFile(edge + name);
        t.Write(path, input);
        EXPECT_EQ(t.Run("", window), 0) << window;
        EXPECT_EQ(t.Read("C:\\d\\" + output),
                  window == "MOPAC" ? "-1.111111111,2.222222222,-3.333333333,\"Cl\",5\r\n4.444444444,-5.555555555,"
                                      "6.666666666,\"Fe\",6\r\n7.777777777,8.888888888,9.999999999,\"H\",8\r\n"
                                      "0,0,0,\"Run\",9\r\n"
                                    : test::ReadHostFile(edge + "expected/" + name + "/" + output))
            << window;
        EXPECT_EQ(t.Read(path), input) << window;
        EXPECT_NE(t.Output().find(window + ".Label5\t1\t-\tConvert another " + window + " file?\n"), std::string::npos);
    }
}

}  // namespace
}  // namespace ravelo
