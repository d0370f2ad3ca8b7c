// The XYZ reader on the cases the golden files leave out: the count line,
// short comment lines, line ends and the output's path.
#include "convert/xyz.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/convert.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

std::string Convert(TestProgram& t, const std::string& bytes, const std::string& path = "C:\\d\\w.xyz",
                    const std::string& output = "C:\\d\\w.sxs") {
    return test::Convert(t, readers::XYZ::ConvertFile, path, bytes, output);
}

const std::string kAtoms = "C 1.1111 2.2222 3.3333\r\nC 4.4444 5.5555 6.6666\r\nCl 7.7777 8.8888 9.9999\r\n";
const std::string kRecords =
    "1.1111,2.2222,3.3333,\"C\",1\r\n4.4444,5.5555,6.6666,\"C\",2\r\n7.7777,8.8888,9.9999,\"Cl\",3\r\n0,0,0,\"w\",4\r\n";

TEST(XyzReader, TheCountLineAndShortLines) {
    struct Case {
        const char* name;
        std::string input, sxs;
    };
    const Case cases[] = {
        // "short." and the 20-character C line hold a "." and are passed
        // over; the 21-character O line is the first atom. "H 0 0 0" has no
        // "." as written, but the cleaning widens each lone 0 to 0.0000
        // first, which makes it a long atom line of its own.
        {"short lines", "3\r\nshort.\r\nC .2345 .3456 1.4567\r\nO .2345 .3456 11.4567\r\nH 0 0 0\r\nN 1.1111 2.2222 3.3333\r\n",
         ".2345,.3456,11.4567,\"O\",1\r\n0,0,0,\"H\",2\r\n1.1111,2.2222,3.3333,\"N\",3\r\n0,0,0,\"w\",4\r\n"},
        // Five promised, three there: serials 1 to 3, the end record 3 + 1.
        {"count beyond the atoms", "5\r\nonly three.\r\n" + kAtoms, kRecords},
        // The count line is known by its length only. "x" reads 0, printed
        // back as "0": one character each, so it is a count of 0.
        {"count x", "x\r\n" + kAtoms, ""},
        // "3.0" prints back as "3": not a count line, so every non-empty
        // line is tried; "3.0" itself is a short line with a ".".
        {"count 3.0", "3.0\r\n" + kAtoms, kRecords},
    };
    for (const Case& c : cases) {
        TestProgram t;
        EXPECT_EQ(Convert(t, c.input), c.sxs) << c.name;
        EXPECT_EQ(t.Exists("C:\\d\\w.sxs"), !c.sxs.empty()) << c.name;
    }
}

TEST(XyzReader, TheOutputPathEndsAtTheFirstDotOfTheWholePath) {
    TestProgram t;
    // The title is still the file's own name.
    EXPECT_EQ(Convert(t, "3\r\nthree\r\n" + kAtoms, "C:\\data.v2\\w.xyz", "C:\\data.sxs"), kRecords);
    EXPECT_FALSE(t.Exists("C:\\data.v2\\w.sxs"));
}

TEST(XyzReader, EveryKindOfLineEndGivesTheSameFile) {
    const std::string lines[] = {"3", "water", "O 0.000000 0.000000 0.117300", "H 0.000000 0.757200 -0.469200",
                                 "H 0.000000 -0.757200 -0.469200"};
    for (const std::string end : {"\r\n", "\n", "\r", ""}) {
        std::string input;
        for (const std::string& line : lines) input += line + (end.empty() ? "\r\n" : end);
        if (end.empty()) input.resize(input.size() - 2);  // no end after the last line
        TestProgram t;
        EXPECT_EQ(Convert(t, input), "0,0,.1173,\"O\",1\r\n0,.7572,-.4692,\"H\",2\r\n0,-.7572,-.4692,\"H\",3\r\n0,0,0,\"w\",4\r\n")
            << "line end of " << end.size() << " characters";
    }
}

}  // namespace
}  // namespace ravelo
