// The XCX reader: the copied header, the scale and the two ways the atom
// list ends; from the command line and from its window.
#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// A hexagonal cell whose second header line carries the scale 1.0 behind
// the marker "S"; lines of blanks around the header are passed over.
const std::string kQuartz =
    "   \r\n10,12,14,\"q.xcx\"\r\n   \r\n90,90,120,S1.0\r\n"
    "Si1 .4697 0 0\r\nO1 .4135 .2669 .1191\r\nO2 .2669 .4135 -.1191\r\nX9 1 2 3\r\nO3 .5 .5 .5\r\n";

TEST(XcxReader, AtScaleOneCoordinatesAreCopiedAndALineWithoutAPointEndsTheList) {
    const std::string xcc = test::FileConvOutput("q.xcx", kQuartz, "q.xcc");
    EXPECT_EQ(xcc,
              "10,12,14,\"q.xcx\"\r\n90,90,120,S1.0\r\n"
              ".4697,0,0,\"Si\"\r\n.4135,.2669,.1191,\"O\"\r\n.2669,.4135,-.1191,\"O\"\r\n");
    // The window converts a typed name to the same bytes.
    TestProgram w("text XCX.Text1 C:\\d\\q.xcx\nclick XCX.Command1\n", 0);
    w.Install();
    w.Write("C:\\d\\q.xcx", kQuartz);
    EXPECT_EQ(w.Run("", "XCX"), 0);
    EXPECT_EQ(w.Read("C:\\d\\q.xcc"), xcc);
    // The XCC reader takes the scale's field as the R factor text.
    const std::string xxs = test::FileConvOutput("q.xcc", xcc, "q.xxs");
    EXPECT_NE(xxs.find("\"O\",3\r\n0,0,0,\"#q.xcx\",4\r\nR_Factor = S1.0\r\n"), std::string::npos) << xxs;
}

TEST(XcxReader, OtherScalesMultiplyEveryCoordinateAndEndOnlyAtEnd) {
    // At scale 10 a line without a point is an atom; "END" ends the list.
    EXPECT_EQ(test::FileConvOutput("q.xcx",
                                   "10,10,10,\"t\"\r\n90,90,90,#10\r\nC1 .1 .2 .3\r\nN1 1 2 3\r\nO1 .4 .5 .6\r\n"
                                   "end of atoms\r\nC2 .7 .8 .9\r\n",
                                   "q.xcc"),
              "10,10,10,\"t\"\r\n90,90,90,#10\r\n1,2,3,\"C\"\r\n10,20,30,\"N\"\r\n4,5,6,\"O\"\r\n");
    // A second header line without a comma gives no scale: every coordinate is 0.
    EXPECT_EQ(test::FileConvOutput("q.xcx", "first\r\nsecond\r\nC1 .1 .2 .3\r\nO1 .4 .5 .6\r\n", "q.xcc"),
              "first\r\nsecond\r\n0,0,0,\"C\"\r\n0,0,0,\"O\"\r\n");
}

}  // namespace
}  // namespace ravelo
