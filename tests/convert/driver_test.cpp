// The conversion driver and the converter windows, driven as a user or the
// modeller drives them.
#include <gtest/gtest.h>

#include <initializer_list>

#include "convert/formats.hpp"
#include "convert/windows/fileconv.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// A water molecule: three atoms, so its SXS file is kept.
constexpr const char* kWater =
    "3\r\nwater\r\nO 0.000000 0.000000 0.117300\r\nH 0.000000 0.757200 -0.469200\r\n"
    "H 0.000000 -0.757200 -0.469200\r\n";

std::string StatLog(TestProgram& t) { return test::ReadHostFile(t.Temp() / "Ravelo" / "RaveloFilConvStat.Txt"); }

// Every line is among the script host's dumps.
void ExpectShown(const std::string& out, std::initializer_list<std::string> lines) {
    for (const std::string& line : lines) EXPECT_NE(out.find(line + "\n"), std::string::npos) << line << "\n" << out;
}

TEST(FileConvStart, AQuotedNameWithACountIsRenamedButNotConverted) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\my file.xyz", kWater);
    EXPECT_EQ(t.Run("fileconv \"C:\\data\\my file.xyz\" 2"), 0);
    EXPECT_FALSE(t.Exists("C:\\data\\my file.xyz"));
    EXPECT_EQ(t.Read("C:\\data\\my_file.xyz"), kWater);
    EXPECT_FALSE(t.Exists("C:\\data\\my_file.sxs"));
    EXPECT_EQ(t.program().LibraryCount, 2);
    EXPECT_EQ(StatLog(t), "\"fileconv terminated\"\r\n");
}

TEST(FileConvStart, WildcardConvertsEveryMatchWithASecondBetween) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\b.xyz", kWater);
    t.Write("C:\\data\\a.xyz", kWater);
    t.Write("C:\\data\\c.pdb", "not taken\r\n");
    EXPECT_EQ(t.Run("fileconv C:\\data\\*.xyz"), 0);
    EXPECT_EQ(t.program().fs.Dir("C:\\data\\*"), (std::vector<std::string>{"a.sxs", "a.xyz", "b.sxs", "b.xyz", "c.pdb"}));
    // Per file: a second in the window and a second in the driver.
    EXPECT_EQ(t.clock().millis, 4000u);
    // Matching nothing still logs the end.
    TestProgram none;
    none.Install();
    EXPECT_EQ(none.Run("fileconv C:\\data\\*.xyz"), 0);
    EXPECT_EQ(StatLog(none), "\"fileconv terminated\"\r\n");
}

TEST(FormatTable, EachExtensionReachesItsReader) {
    TestProgram t;
    // The extension is the last three characters (".mol2" is "ol2"); ".mop" goes to Tripos.
    const std::pair<std::string_view, std::string_view> routes[] = {
        {"alc", "Alchemy"}, {"cif", "CSD"}, {"cmf", "CSD"},  {"csd", "CSD"}, {"pdb", "PDB"},   {"ent", "PDB"},
        {"xyz", "XYZ"},     {"xcx", "XCX"}, {"xcc", "XCC"},  {"sch", "Schakal"}, {"m3d", "M3D"}, {"mol", "MDL"},
        {"sdf", "MDL"},     {"mop", "Tripos"}, {"ol2", ""},  {"inp", ""},    {"mm2", ""},      {"out", ""}};
    for (const auto& [extension, window] : routes) EXPECT_EQ(ConverterWindowFor(t.program(), extension), window) << extension;
    // What a bare name on the command line is tested against.
    EXPECT_EQ(formats::FileTypesText(), "alccifcmfcsdm3dmol2pdbentschxyzsdfmopmm2mm3mm4mmxinpxcxcc");
    EXPECT_TRUE(t.program().HasWindow("MOPAC"));
}

TEST(FileConvWindow, ListsDrivesFoldersAndFilesConvertsThePickedFileAndBrowses) {
    // Files: a.txt (index 0) and water.xyz (index 1). Without pauses, so
    // that no command runs inside the conversion's wait.
    TestProgram t("dump FileConv\npick FileConv.File1 1\ndump FileConv\nclick FileConv.Command1\ndump FileConv\n"
                  "pick FileConv.Dir1 1\ndump FileConv\npick FileConv.Dir1 0\npick FileConv.Drive1 0\ndump FileConv\n",
                  0);
    t.Install();
    t.Write("C:\\data\\water.xyz", kWater);
    t.Write("C:\\data\\a.txt", "12345678");
    t.Write("C:\\data\\sub\\inner.xyz", "12345678");
    t.program().fs.ChDir("C:\\data");
    EXPECT_EQ(t.Run("fileconv"), 0);
    ExpectShown(t.Output(), {"FileConv.Drive1\t1\t-\tc:|z:", "FileConv.Dir1\t1\t-\t..|sub",
                             "FileConv.File1\t1\t-\ta.txt|water.xyz",
                             "FileConv.Label2\t1\t-\tIdentify the target file using the directory explorer below, "
                             "and then click the go button.",
                             "FileConv.Command1\t1\t-\tClick Here to Process the Selected File",
                             // After the conversion: the new file, and the button's prompt.
                             "FileConv.File1\t1\t-\ta.txt|water.sxs|water.xyz",
                             "FileConv.Command1\t1\t-\tSelect a File Above to Process",
                             // In sub, then drive c: at its root (the installation's folders).
                             "FileConv.File1\t1\t-\tinner.xyz", "FileConv.Dir1\t1\t-\tdata|dmor|programdata|ravelo"});
    EXPECT_TRUE(t.Exists("C:\\data\\water.sxs"));
    // The window closed with the script: nothing logs a command-line job.
    EXPECT_EQ(StatLog(t), "");
}

TEST(FileConvWindow, UnknownTypeIsSaidForFiveSeconds) {
    // The dump runs while the message stands.
    TestProgram t("pick FileConv.File1 0\nclick FileConv.Command1\ndump FileConv\n");
    t.Install();
    t.Write("C:\\data\\notes.txt", "12345678");
    t.program().fs.ChDir("C:\\data");
    t.Run("fileconv");
    ExpectShown(t.Output(), {"FileConv.Label2\t1\t-\tSorry, this file type is not among those currently processed."});
    EXPECT_GE(t.clock().millis, 5000u);
    // Then the prompt is back.
    EXPECT_EQ(t.program().Window("FileConv")["Label2"].Caption(), kIdentifyFilePrompt);
}

TEST(ConverterWindow, WithoutANameItAsksAndConvertsATypedName) {
    TestProgram t("dump XYZ\ntext XYZ.Text1 C:\\data\\w.xyz\nclick XYZ.Command1\ndump XYZ\n");
    t.Install();
    t.Write("C:\\data\\w.xyz", kWater);
    EXPECT_EQ(t.Run("", "XYZ"), 0);
    const std::string out = t.Output();
    ExpectShown(out, {"XYZ.Label1\t1\t-\tXYZ Structural Data Files => Kalmodyn's Data Files",
                      "XYZ.Label3\t1\t-\tEnter the XYZ file's Name", "XYZ.Command3\t0\t-\tYES"});
    // After the conversion: only YES and EXIT, and the question.
    ExpectShown(out.substr(out.find("END\n") + 4),
                {"XYZ.Command1\t0\t-\tConvert\nXYZ.Command2\t0\t-\tCancel\nXYZ.Command3\t1\t-\tYES\nXYZ.Command4\t1\t-\tEXIT",
                 "XYZ.Label5\t1\t-\tConvert another XYZ file?"});
    EXPECT_TRUE(t.Exists("C:\\data\\w.sxs"));
}

TEST(ConverterWindow, CancelClearsTheName) {
    TestProgram t("text MDL.Text1 C:\\nothing.mol\nclick MDL.Command2\ndump MDL\n");
    t.Install();
    t.Run("", "MDL");
    ExpectShown(t.Output(), {"MDL.Text1\t1\t-\t"});
}

}  // namespace
}  // namespace ravelo
