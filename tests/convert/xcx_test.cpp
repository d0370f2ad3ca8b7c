// The XCX reader: the copied header, the scale, the two ways the atom list
// ends, and short files; from the command line and from its window.
#include <gtest/gtest.h>

#include <string>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Converts C:\d\q.xcx from the command line, or typed into the XCX window;
// returns the XCC text.
std::string ConvertXcx(const std::string& xcx, bool typed = false, int* status = nullptr) {
    TestProgram t(typed ? "text XCX.Text1 C:\\d\\q.xcx\nclick XCX.Command1\n" : "", 0);
    t.Install();
    t.Write("C:\\d\\q.xcx", xcx);
    const int result = typed ? t.Run("", "XCX") : t.Run("fileconv C:\\d\\q.xcx");
    if (status) *status = result;
    EXPECT_TRUE(t.Exists("C:\\d\\q.xcx"));
    return t.Read("C:\\d\\q.xcc");
}

// A hexagonal cell whose second header line carries the scale 1.0 behind
// the marker "S"; lines of blanks around the header are passed over.
const std::string kQuartz =
    "   \r\n10,12,14,\"q.xcx\"\r\n   \r\n90,90,120,S1.0\r\n"
    "Si1 .4697 0 0\r\nO1 .4135 .2669 .1191\r\nO2 .2669 .4135 -.1191\r\nX9 1 2 3\r\nO3 .5 .5 .5\r\n";

TEST(XcxReader, AtScaleOneCoordinatesAreCopiedAndALineWithoutAPointEndsTheList) {
    const std::string xcc = ConvertXcx(kQuartz);
    EXPECT_EQ(xcc,
              "10,12,14,\"q.xcx\"\r\n90,90,120,S1.0\r\n"
              ".4697,0,0,\"Si\"\r\n.4135,.2669,.1191,\"O\"\r\n.2669,.4135,-.1191,\"O\"\r\n");
    // The window converts a typed name to the same bytes.
    EXPECT_EQ(ConvertXcx(kQuartz, true), xcc);

    // The XCC reader takes the scale's field as the R factor text.
    TestProgram t;
    t.Install();
    t.Write("C:\\d\\q.xcc", xcc);
    EXPECT_EQ(t.Run("fileconv C:\\d\\q.xcc"), 0);
    const std::string xxs = t.Read("C:\\d\\q.xxs");
    EXPECT_NE(xxs.find("\"O\",3\r\n0,0,0,\"#q.xcx\",4\r\nR_Factor = S1.0\r\n"), std::string::npos) << xxs;
}

TEST(XcxReader, OtherScalesMultiplyEveryCoordinateAndEndOnlyAtEnd) {
    // At scale 10 a line without a point is an atom; "END" ends the list.
    EXPECT_EQ(ConvertXcx("10,10,10,\"t\"\r\n90,90,90,#10\r\nC1 .1 .2 .3\r\nN1 1 2 3\r\nO1 .4 .5 .6\r\n"
                         "end of atoms\r\nC2 .7 .8 .9\r\n"),
              "10,10,10,\"t\"\r\n90,90,90,#10\r\n1,2,3,\"C\"\r\n10,20,30,\"N\"\r\n4,5,6,\"O\"\r\n");
    // A second header line without a comma gives no scale: every coordinate is 0.
    EXPECT_EQ(ConvertXcx("first\r\nsecond\r\nC1 .1 .2 .3\r\nO1 .4 .5 .6\r\n"),
              "first\r\nsecond\r\n0,0,0,\"C\"\r\n0,0,0,\"O\"\r\n");
}

TEST(XcxReader, AFileOfOneLineConvertsToNothingAndKeepsTheInput) {
    int status = -1;
    EXPECT_EQ(ConvertXcx("10,10,10,\"one\"\r\n", false, &status), "");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ConvertXcx("", false, &status), "");
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace ravelo
