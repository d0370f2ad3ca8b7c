// The conversion driver and the converter windows, driven as a user or the
// modeller drives them.
#include <gtest/gtest.h>

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

TEST(FileConvStart, OneFileIsConvertedAndTheJobLogged) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\Water.XYZ", kWater);
    EXPECT_EQ(t.Run("fileconv C:\\data\\Water.XYZ"), 0);
    // The name is taken in lower case; the output lies beside the input.
    EXPECT_EQ(t.Read("C:\\data\\water.sxs"),
              "0,0,.1173,\"O\",1\r\n0,.7572,-.4692,\"H\",2\r\n0,-.7572,-.4692,\"H\",3\r\n0,0,0,\"water\",4\r\n");
    EXPECT_EQ(StatLog(t), "\"fileconv terminated\"\r\n");
}

TEST(FileConvStart, CountAfterTheNameRenamesButConvertsNothing) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\my file.xyz", kWater);
    EXPECT_EQ(t.Run("fileconv C:\\data\\my file.xyz 2"), 0);
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
    EXPECT_TRUE(t.Exists("C:\\data\\a.sxs"));
    EXPECT_TRUE(t.Exists("C:\\data\\b.sxs"));
    EXPECT_FALSE(t.Exists("C:\\data\\c.xxs"));
    // Per file: a second in the window and a second in the driver.
    EXPECT_EQ(t.clock().millis, 4000u);
}

TEST(FileConvStart, WildcardMatchingNothingStillLogsTheEnd) {
    TestProgram t;
    t.Install();
    EXPECT_EQ(t.Run("fileconv C:\\data\\*.xyz"), 0);
    EXPECT_EQ(StatLog(t), "\"fileconv terminated\"\r\n");
}

TEST(FileConvStart, QuotedNameLosesItsQuotes) {
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\w.xyz", kWater);
    EXPECT_EQ(t.Run("fileconv \"C:\\data\\w.xyz\""), 0);
    EXPECT_TRUE(t.Exists("C:\\data\\w.sxs"));
}

TEST(FormatTable, EachExtensionReachesItsReader) {
    TestProgram t;
    // The extension is the last three characters: ".mol2" is "ol2", which
    // nothing converts; ".mop" goes to the Tripos reader, never MOPAC's.
    const std::pair<std::string_view, std::string_view> routes[] = {
        {"alc", "Alchemy"}, {"cif", "CSD"}, {"cmf", "CSD"},  {"csd", "CSD"}, {"pdb", "PDB"},   {"ent", "PDB"},
        {"xyz", "XYZ"},     {"xcx", "XCX"}, {"xcc", "XCC"},  {"sch", "Schakal"}, {"m3d", "M3D"}, {"mol", "MDL"},
        {"sdf", "MDL"},     {"mop", "Tripos"}, {"ol2", ""},  {"inp", ""},    {"mm2", ""},      {"out", ""}};
    for (const auto& [extension, window] : routes) EXPECT_EQ(ConverterWindowFor(t.program(), extension), window) << extension;
    // What a bare name on the command line is tested against.
    EXPECT_EQ(formats::FileTypesText(), "alccifcmfcsdm3dmol2pdbentschxyzsdfmopmm2mm3mm4mmxinpxcxcc");
    EXPECT_TRUE(t.program().HasWindow("MOPAC"));
}

TEST(ConvertByType, Mol2NameIsRenamedAndNotProcessed) {
    // The last three characters are the extension: x.mol2 is x_.ol2.
    TestProgram t;
    t.Install();
    t.Write("C:\\data\\x.mol2", "@<TRIPOS>MOLECULE\r\n");
    EXPECT_EQ(t.Run("fileconv C:\\data\\x.mol2"), 0);
    EXPECT_FALSE(t.Exists("C:\\data\\x.mol2"));
    EXPECT_EQ(t.Read("C:\\data\\x_.ol2"), "@<TRIPOS>MOLECULE\r\n");
}

TEST(FileConvWindow, ListsDrivesFoldersAndFilesAndConvertsThePickedFile) {
    // Files in the folder: a.txt (index 0) and water.xyz (index 1). Without
    // pauses, so that no command runs inside the conversion's wait.
    TestProgram t("dump FileConv\n"
                  "pick FileConv.File1 1\n"
                  "dump FileConv\n"
                  "click FileConv.Command1\n"
                  "dump FileConv\n",
                  0);
    t.Install();
    t.Write("C:\\data\\water.xyz", kWater);
    t.Write("C:\\data\\a.txt", "12345678");
    t.Write("C:\\data\\sub\\x.txt", "12345678");
    t.program().fs.ChDir("C:\\data");
    EXPECT_EQ(t.Run("fileconv"), 0);
    const std::string out = t.Output();
    EXPECT_NE(out.find("FileConv.Drive1\t1\t-\tc:|z:\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.Dir1\t1\t-\t..|sub\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.File1\t1\t-\ta.txt|water.xyz\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.Label2\t1\t-\tIdentify the target file using the directory explorer below, "
                       "and then click the go button.\n"),
              std::string::npos);
    EXPECT_NE(out.find("FileConv.Command1\t1\t-\tClick Here to Process the Selected File\n"), std::string::npos);
    // After the conversion the list shows the new file and the button its prompt.
    EXPECT_NE(out.find("FileConv.File1\t1\t-\ta.txt|water.sxs|water.xyz\n"), std::string::npos) << out;
    EXPECT_NE(out.find("FileConv.Command1\t1\t-\tSelect a File Above to Process\n"), std::string::npos);
    EXPECT_TRUE(t.Exists("C:\\data\\water.sxs"));
    // The window closed with the script: nothing logs a command-line job.
    EXPECT_EQ(StatLog(t), "");
}

TEST(FileConvWindow, FoldersAreBrowsedFromTheLists) {
    TestProgram t("pick FileConv.Dir1 1\ndump FileConv\npick FileConv.Dir1 0\npick FileConv.Drive1 0\ndump FileConv\n");
    t.Install();
    t.Write("C:\\data\\sub\\inner.xyz", kWater);
    t.program().fs.ChDir("C:\\data");
    t.Run("fileconv");
    const std::string out = t.Output();
    EXPECT_NE(out.find("FileConv.File1\t1\t-\tinner.xyz\n"), std::string::npos) << out;
    // Drive c: at its root: the installation's folders.
    EXPECT_NE(out.find("FileConv.Dir1\t1\t-\tdata|dmor|programdata|ravelo\n"), std::string::npos) << out;
}

TEST(FileConvWindow, UnknownTypeIsSaidForFiveSeconds) {
    // The dump runs while the message stands.
    TestProgram t("pick FileConv.File1 0\nclick FileConv.Command1\ndump FileConv\n");
    t.Install();
    t.Write("C:\\data\\notes.txt", "12345678");
    t.program().fs.ChDir("C:\\data");
    t.Run("fileconv");
    EXPECT_NE(t.Output().find("FileConv.Label2\t1\t-\tSorry, this file type is not among those currently "
                              "processed.\n"),
              std::string::npos);
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
    EXPECT_NE(out.find("XYZ.Label1\t1\t-\tXYZ Structural Data Files => Kalmodyn's Data Files\n"), std::string::npos);
    EXPECT_NE(out.find("XYZ.Label3\t1\t-\tEnter the XYZ file's Name\n"), std::string::npos);
    EXPECT_NE(out.find("XYZ.Command3\t0\t-\tYES\n"), std::string::npos);
    // After the conversion: only YES and EXIT, and the question.
    const std::string after = out.substr(out.find("END\n") + 4);
    EXPECT_NE(after.find("XYZ.Command1\t0\t-\tConvert\nXYZ.Command2\t0\t-\tCancel\nXYZ.Command3\t1\t-\tYES\n"
                         "XYZ.Command4\t1\t-\tEXIT\n"),
              std::string::npos)
        << after;
    EXPECT_NE(after.find("XYZ.Label5\t1\t-\tConvert another XYZ file?\n"), std::string::npos);
    EXPECT_TRUE(t.Exists("C:\\data\\w.sxs"));
}

TEST(ConverterWindow, CancelClearsTheName) {
    TestProgram t("text MDL.Text1 C:\\nothing.mol\nclick MDL.Command2\ndump MDL\n");
    t.Install();
    t.Run("", "MDL");
    EXPECT_NE(t.Output().find("MDL.Text1\t1\t-\t\n"), std::string::npos);
}

}  // namespace
}  // namespace ravelo
