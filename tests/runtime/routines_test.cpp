// The error table and the number and text routines, run from the table
// tests/data/runtime/routines.tsv.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "support/error_of.hpp"
#include "support/files.hpp"

using namespace ravelo;

namespace {

using Args = std::vector<std::string>;
double D(const std::string& s) { return std::strtod(s.c_str(), nullptr); }
long long L(const std::string& s) { return std::stoll(s); }

// Routines of one or two texts, giving a text.
template <auto F>
std::string Of1(const Args& a) { return std::string(F(a[0])); }
template <auto F>
std::string Of2(const Args& a) { return std::string(F(a[0], a[1])); }
std::string Yes(bool b) { return b ? "1" : "0"; }

const std::map<std::string, std::function<std::string(const Args&)>> kTextResults = {
    {"NumText", [](const Args& a) { return NumText(D(a[0])); }},
    {"NumTextBare", [](const Args& a) { return NumTextBare(D(a[0])); }},
    {"NumTextLong", [](const Args& a) { return NumText(L(a[0])); }},
    {"ErrorDescription", [](const Args& a) { return std::string(ErrorDescription(std::stoi(a[0]))); }},
    {"Raise",
     [](const Args& a) {
         try {
             Raise(std::stoi(a[0]));
         } catch (const RuntimeError& e) {
             return std::to_string(e.number) + " " + e.what();
         }
     }},
    {"EndProgram",
     [](const Args& a) {
         try {
             EndProgram(std::stoi(a[0]));
         } catch (const ProgramEnd& end) {
             return std::to_string(end.status);
         }
     }},
    {"Trim", Of1<Trim>}, {"TrimView", Of1<TrimView>}, {"LTrim", Of1<LTrim>}, {"RTrim", Of1<RTrim>},
    {"UCase", Of1<UCase>}, {"LCase", Of1<LCase>}, {"DropFirst", Of1<DropFirst>},
    {"TrimInPlace", [](Args a) { TrimInPlace(a[0]); return a[0]; }},
    {"TextBefore", Of2<TextBefore>}, {"TextFrom", Of2<TextFrom>}, {"TextAfter", Of2<TextAfter>},
    {"TextUpToIncluding", Of2<TextUpToIncluding>},
    {"Replace", [](const Args& a) { return Replace(a[0], a[1], a[2]); }},
    {"InStr",
     [](const Args& a) { return std::to_string(a.size() == 2 ? InStr(a[0], a[1]) : InStr(a[0], a[1], L(a[2]))); }},
    {"InStrRev", [](const Args& a) { return std::to_string(InStrRev(a[0], a[1])); }},
    {"Contains", [](const Args& a) { return Yes(Contains(a[0], a[1])); }},
    {"ContainsNoCase", [](const Args& a) { return Yes(ContainsNoCase(a[0], a[1])); }},
    {"StartsWithNoCase", [](const Args& a) { return Yes(StartsWithNoCase(a[0], a[1])); }},
    {"Left", [](const Args& a) { return Left(a[0], L(a[1])); }},
    {"Right", [](const Args& a) { return Right(a[0], L(a[1])); }},
    {"Mid", [](const Args& a) { return a.size() == 2 ? Mid(a[0], L(a[1])) : Mid(a[0], L(a[1]), L(a[2])); }},
    {"MidView", [](const Args& a) { return std::string(MidView(a[0], L(a[1]))); }},
    {"DropLast", [](const Args& a) { return DropLast(a[0], L(a[1])); }},
    {"Spaces", [](const Args& a) { return Spaces(L(a[0])); }},
};
const std::map<std::string, std::function<double(const Args&)>> kNumberResults = {
    {"Val", [](const Args& a) { return Val(a[0]); }},
    {"RoundHalfEven", [](const Args& a) { return RoundHalfEven(D(a[0])); }},
    {"ToInt32", [](const Args& a) { return ToInt32(D(a[0])); }},
    {"ToInt16", [](const Args& a) { return ToInt16(D(a[0])); }},
    {"CheckedResult", [](const Args& a) { return CheckedResult(D(a[0])); }},
    {"Divide", [](const Args& a) { return Divide(D(a[0]), D(a[1])); }},
    {"Power", [](const Args& a) { return Power(D(a[0]), D(a[1])); }},
    {"Log", [](const Args& a) { return Log(D(a[0])); }},
};

}  // namespace

TEST(Routines, GiveTheTabledResultsAndFaults) {
    const auto rows = test::TableRows(std::filesystem::path(RAVELO_TEST_DATA) / "runtime/routines.tsv");
    for (Args f : rows) {
        const std::string name = f[0], expected = f[1];
        f.erase(f.begin(), f.begin() + 2);
        // A number result is shown as the expected text when it equals its value.
        std::string got;
        const int error = test::ErrorOf([&] {
            if (kTextResults.contains(name)) {
                got = kTextResults.at(name)(f);
            } else {
                const double value = kNumberResults.at(name)(f);
                got = expected[0] != '!' && value == D(expected) ? expected : "(" + std::to_string(value) + ")";
            }
        });
        EXPECT_EQ(error ? "!" + std::to_string(error) : got, expected) << name;
    }
    EXPECT_EQ(rows.size(), 143u);
}
