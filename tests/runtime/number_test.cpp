// Standard number text, the leading-number parser, rounding and the
// arithmetic faults. Every expected text is "%.15G" worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "support/error_of.hpp"

using namespace ravelo;

namespace {
using test::ErrorOf;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
}  // namespace

TEST(NumText, SignBlankFixedAndExponentFormsInFifteenDigits) {
    const std::pair<double, const char*> cases[] = {
        {25.0, " 25"}, {0.0, " 0"}, {-0.0, " 0"}, {0.5, " .5"}, {-0.25, "-.25"},
        {10.5, " 10.5"},  // only a zero at the very start goes
        // Fixed form down to 1E-4 and up to 15 digits before the point.
        {0.0001, " .0001"}, {1e-05, " 1E-05"}, {1e14, " 100000000000000"}, {1e15, " 1E+15"},
        {-1.5e-7, "-1.5E-07"}, {1e100, " 1E+100"}, {0.1 + 0.2, " .3"}, {1.0 / 3, " .333333333333333"},
        {2.0 / 3, " .666666666666667"}, {123456789012345678.0, " 1.23456789012346E+17"},
        {1.00000000000006, " 1.00000000000006"},
        {999999999999999.9, " 1E+15"},  // rounding carries into the exponent
    };
    for (const auto& [value, text] : cases) EXPECT_EQ(NumText(value), text) << text;
    EXPECT_EQ(NumTextBare(25.0) + NumTextBare(0.75), "25.75");
    EXPECT_EQ(NumText(7LL) + NumText(-7LL) + NumText(0LL), " 7-7 0");
}

TEST(NumText, ValuesOfFewDecimalsAsTheCLibraryWritesThem) {
    // Coordinates and charges take a shorter way than other values; its
    // texts must be those of "%.15G", around its limits too.
    std::mt19937_64 random(7);
    std::uniform_int_distribution<long long> whole(-2'000'000'000'000LL, 2'000'000'000'000LL);
    std::uniform_int_distribution<int> places(0, 8);
    std::vector<double> values = {1e-4, 9.9999e-5, 999999999.5, 1e9, 0.1 + 0.2, 123456.000001, 1e-6};
    for (int i = 0; i < 200000; ++i) values.push_back(static_cast<double>(whole(random)) / std::pow(10.0, places(random)));
    for (const double value : values) {
        if (value == 0) continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.15G", value);
        std::string text = expected;
        const std::size_t zero = text[0] == '-' ? 1 : 0;
        if (text.compare(zero, 2, "0.") == 0) text.erase(zero, 1);
        ASSERT_EQ(NumTextBare(value), text) << expected;
    }
}

TEST(Val, DecimalsAsTheCLibraryReadsThem) {
    std::mt19937_64 random(11);
    std::uniform_int_distribution<int> digit(0, 9), length(1, 18), point(0, 18);
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        const int n = length(random), at = point(random);
        for (int k = 0; k < n; ++k) {
            if (k == at) text.push_back('.');
            text.push_back(static_cast<char>('0' + digit(random)));
        }
        ASSERT_EQ(Val(text), std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_EQ(Val("-" + text), -std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(Val, LeadingNumberFormsWhereTheyStopAndTheirRange) {
    const std::pair<const char*, double> cases[] = {
        {"1e-5", 1e-05}, {"1D3", 1000}, {" -3.5e+2xyz", -350}, {"  +7", 7}, {"-.5", -0.5}, {"12 34", 12},
        {"3,5", 3},
        // A letter without digits ends the number before it.
        {"1E", 1}, {"1E+", 1}, {"2e5x", 200000}, {"4Dx", 4}, {".5.5", 0.5}, {"abc", 0}, {"- 5", 0},
        {"", 0}, {".", 0}, {"\t5", 0} /* only blanks are skipped */, {"inf", 0}, {"1e-400", 0},
        {"0e99999", 0},
        {"0.000001e310", 1e304},  // the exponent alone is out of range, the value is not
        {"12345678901234567890", 12345678901234567890.0},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << text;
    for (const char* text : {"1e400", "-1D309", "1e99999999999999999999"})
        EXPECT_EQ(ErrorOf([&] { Val(text); }), 6) << text;
}

TEST(Rounding, HalvesGoToEvenAndOutOfRangeIsOverflow) {
    const std::pair<double, long long> cases[] = {
        {2.5, 2}, {3.5, 4}, {-2.5, -2}, {-3.5, -4}, {0.5, 0}, {2.5000001, 3},
    };
    for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfEven(value), rounded) << value;
    EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.5), -2147483648LL);  // the half goes to the even end, inside
    EXPECT_EQ(ToInt16(32766.5), 32766);
    EXPECT_EQ(ToInt16(-32768.5), -32768);
    for (const double value : {2147483647.5 /* rounds to 2^31 */, -2147483649.0, kNaN})
        EXPECT_EQ(ErrorOf([&] { ToInt32(value); }), 6) << value;
    for (const double value : {32767.5, -32769.0}) EXPECT_EQ(ErrorOf([&] { ToInt16(value); }), 6) << value;
}

TEST(Arithmetic, ClassicFaults) {
    EXPECT_EQ(CheckedResult(1.5), 1.5);
    EXPECT_EQ(Divide(7, 2), 3.5);
    EXPECT_EQ(Power(-2, 3), -8);
    EXPECT_EQ(Power(0, 0), 1);
    EXPECT_EQ(Log(1), 0);
    const std::pair<std::function<void()>, int> faults[] = {
        {[] { CheckedResult(kInf); }, 6}, {[] { CheckedResult(kNaN); }, 6},  {[] { Divide(1, 0); }, 11},
        {[] { Divide(-1, -0.0); }, 11},   {[] { Divide(0, 0); }, 6},         {[] { Divide(1e308, 1e-308); }, 6},
        {[] { Power(0, -1); }, 11},       {[] { Power(-8, 1.0 / 3); }, 5},   {[] { Power(10, 400); }, 6},
        {[] { Log(0); }, 5},
    };
    int k = 0;
    for (const auto& [fault, number] : faults) EXPECT_EQ(ErrorOf(fault), number) << "case " << k++;
}
