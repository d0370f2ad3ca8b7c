// The XCC reader on what the golden crystal cases leave out: rounded records,
// the marked name and the R factor, its atom bound, and its window.
#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

std::string ConvertXcc(const std::string& xcc) { return test::FileConvOutput("s.xcc", xcc, "s.xxs"); }

TEST(XccReader, WritesRoundedRecordsTheMarkedNameAndTheRFactor) {
    // A cube of 10 maps 0.1, 0.2, 0.3 to 1, 2, 3; a monoclinic beta of 100
    // maps (1, 0, 0) to (sin 100, 0, cos 100), rounded to 6 places.
    EXPECT_EQ(ConvertXcc("10,10,10,\"cube.cif\"\r\n90,90,90,\"0.05\"\r\n.1,.2,.3,\"C\"\r\n.5,.5,.5,\"Na\"\r\n"
                         "0,0,.12345678,\"Cl\"\r\n"),
              "1,2,3,\"C\",1\r\n5,5,5,\"Na\",2\r\n0,0,1.234568,\"Cl\",3\r\n0,0,0,\"#cube.cif\",4\r\n"
              "R_Factor = 0.05\r\n");
    EXPECT_EQ(ConvertXcc("1,1,1,\"m\"\r\n90,100,90,\"+\"\r\n1,0,0,\"C\"\r\n0,1,0,\"O\"\r\n0,0,1,\"N\"\r\n"),
              ".984808,0,-.173648,\"C\",1\r\n0,1,0,\"O\",2\r\n0,0,1,\"N\",3\r\n0,0,0,\"#m\",4\r\n");
    // No atoms: one atom of zeros is written, and the short file deleted.
    TestProgram t;
    EXPECT_EQ(test::FileConv(t, "s.xcc", "10,10,10,\"e\"\r\n90,90,90,\"0.1\"\r\n"), 0);
    EXPECT_FALSE(t.Exists("C:\\d\\s.xxs"));
}

TEST(XccReader, TenThousandAtomsFitAndOneMoreIsOutOfRange) {
    std::string xcc = "10,10,10,\"big\"\r\n90,90,90,\"+\"\r\n";
    for (int i = 0; i < 10000; ++i) xcc += ".1,.2,.3,\"C\"\r\n";
    EXPECT_NE(ConvertXcc(xcc).find("1,2,3,\"C\",10000\r\n0,0,0,\"#big\",10001\r\n"), std::string::npos);

    TestProgram t;
    t.Write("C:\\d\\s.xxs", "an old output\r\n");
    EXPECT_EQ(test::FileConv(t, "s.xcc", xcc + ".1,.2,.3,\"C\"\r\n"), 3);
    EXPECT_NE(t.Output().find("Run-time error '9'"), std::string::npos);
    EXPECT_FALSE(t.Exists("C:\\d\\s.xxs"));
}

TEST(XccWindow, ConvertsATypedName) {
    TestProgram t("text XCC.Text1 C:\\d\\s.xcc\nclick XCC.Command1\ndump XCC\n", 0);
    t.Install();
    t.Write("C:\\d\\s.xcc", "10,10,10,\"w\"\r\n90,90,90,\"+\"\r\n.1,.2,.3,\"C\"\r\n.4,.5,.6,\"O\"\r\n.7,.8,.9,\"N\"\r\n");
    EXPECT_EQ(t.Run("", "XCC"), 0);
    EXPECT_EQ(t.Read("C:\\d\\s.xxs"), "1,2,3,\"C\",1\r\n4,5,6,\"O\",2\r\n7,8,9,\"N\",3\r\n0,0,0,\"#w\",4\r\n");
    EXPECT_NE(t.Output().find("XCC.Label5\t1\t-\tConvert another XCC file?\n"), std::string::npos) << t.Output();
}

}  // namespace
}  // namespace ravelo
