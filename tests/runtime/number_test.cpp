// Number text and the leading-number parser against the C library, over many
// random values (the tabled cases are in routines_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "runtime/number.hpp"

using namespace ravelo;

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
