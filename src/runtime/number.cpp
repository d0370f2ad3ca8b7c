// The standard number text and the leading-number parser. Both go through
// <charconv>: the Qt host sets the user's locale at start-up, and a
// locale-dependent snprintf or strtod would then write and read decimal
// commas.
#include "runtime/number.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include "runtime/error.hpp"

namespace ravelo {
namespace {

// Long enough for "-1.23456789012345E-308" and for any long long.
constexpr std::size_t kTextMax = 32;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The text of "%.15G" for the common value, fast: when the shortest text
// that reads back as `value` has at most 15 significant digits, it is also
// the value rounded to 15 digits (15-digit steps are wider than the gap
// between doubles), so only the layout of "%G" is left to do: plain digits
// for exponents from -4 to 14, else d.dddE+XX. Returns 0 when the shortest
// text needs more digits; the caller then asks for 15 digits.
std::size_t ShortestAsG15(double value, char* out) {
    // Subnormal values have fewer bits than 15 digits need; they take the
    // slow way.
    if (std::fabs(value) < std::numeric_limits<double>::min()) return 0;
    char sci[kTextMax];
    const auto result = std::to_chars(sci, sci + kTextMax, value, std::chars_format::scientific);
    const char* end = result.ptr;
    const char* e = end;
    while (e != sci && *(e - 1) != 'e') --e;
    if (e == sci) return 0;
    // sci: [-]d[.ddd]e(+|-)xx
    const char* mantissa = sci;
    std::size_t length = 0;
    if (*mantissa == '-') {
        out[length++] = '-';
        ++mantissa;
    }
    char digits[kTextMax];
    std::size_t count = 0;
    for (const char* c = mantissa; c != e - 1; ++c) {
        if (*c != '.') digits[count++] = *c;
    }
    if (count > 15) return 0;
    int exponent = 0;
    std::from_chars(*e == '+' ? e + 1 : e, end, exponent);
    if (exponent < -4 || exponent >= 15) {
        out[length++] = digits[0];
        if (count > 1) {
            out[length++] = '.';
            for (std::size_t i = 1; i < count; ++i) out[length++] = digits[i];
        }
        out[length++] = 'E';
        out[length++] = exponent < 0 ? '-' : '+';
        const int magnitude = exponent < 0 ? -exponent : exponent;
        if (magnitude < 10) out[length++] = '0';
        length = static_cast<std::size_t>(std::to_chars(out + length, out + kTextMax, magnitude).ptr - out);
        return length;
    }
    if (exponent < 0) {
        out[length++] = '0';
        out[length++] = '.';
        for (int i = -1; i > exponent; --i) out[length++] = '0';
        for (std::size_t i = 0; i < count; ++i) out[length++] = digits[i];
        return length;
    }
    const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    for (std::size_t i = 0; i < whole; ++i) out[length++] = i < count ? digits[i] : '0';
    if (count > whole) {
        out[length++] = '.';
        for (std::size_t i = whole; i < count; ++i) out[length++] = digits[i];
    }
    return length;
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The text of the most common values, coordinates and charges, without the
// general conversion: a value of at least 1E-4 and below 1E9 that is exactly
// the double nearest to m / 10^k for some k up to 6. The smallest such k
// gives the shortest text that reads back as the value (decimal steps of
// 1E-6 are wider than the gap between doubles below 1E9, so no other text
// with as few decimals reads back as it), and that text is the "%.15G" one.
// Written without the zero before the point. Returns 0 for other values.
std::size_t FewDecimals(double value, char* out) {
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-4 && magnitude < 1e9)) return 0;
    for (int k = 0; k <= 6; ++k) {
        const double scaled = std::round(magnitude * kPowersOfTen[k]);
        if (scaled / kPowersOfTen[k] != magnitude) continue;
        const auto digits = static_cast<std::uint64_t>(scaled);
        const auto unit = static_cast<std::uint64_t>(kPowersOfTen[k]);
        char* at = out;
        if (value < 0) *at++ = '-';
        if (digits >= unit) at = std::to_chars(at, out + kTextMax, digits / unit).ptr;
        if (k > 0) {
            *at++ = '.';
            std::uint64_t fraction = digits % unit;
            for (int i = k; i > 0; --i) {
                at[i - 1] = static_cast<char>('0' + fraction % 10);
                fraction /= 10;
            }
            at += k;
        }
        return static_cast<std::size_t>(at - out);
    }
    return 0;
}

// Writes the standard text of a non-zero `value` without a leading blank to
// `out` and returns its length. to_chars with 15 digits gives the text of
// "%.15G" in the "C" locale, in lower case.
std::size_t FormatBare(double value, char* out) {
    if (const std::size_t fast = FewDecimals(value, out); fast != 0) return fast;
    std::size_t length = ShortestAsG15(value, out);
    if (length == 0) {
        const auto result = std::to_chars(out, out + kTextMax, value, std::chars_format::general, 15);
        length = static_cast<std::size_t>(result.ptr - out);
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (out[i] >= 'a' && out[i] <= 'z') out[i] = static_cast<char>(out[i] - 'a' + 'A');
    }
    // "0.5" -> ".5", "-0.25" -> "-.25": the classic text has no zero before
    // a leading decimal point.
    const std::size_t zero = out[0] == '-' ? 1 : 0;
    if (length >= zero + 2 && out[zero] == '0' && out[zero + 1] == '.') {
        for (std::size_t i = zero; i + 1 < length; ++i) out[i] = out[i + 1];
        --length;
    }
    return length;
}

// The text with one blank in front unless it starts with a minus sign.
std::string WithSignBlank(const char* text, std::size_t length) {
    std::string out;
    out.reserve(length + 1);
    if (text[0] != '-') out.push_back(' ');
    out.append(text, length);
    return out;
}

// The exponent digits of a number text, stopped at a bound far beyond any
// double so that a thousand-digit exponent cannot overflow.
long long ExponentValue(std::string_view digits) {
    constexpr long long kBound = 1'000'000'000;
    long long value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
        if (value > kBound) return kBound;
    }
    return value;
}

}  // namespace

std::string NumText(double value) {
    if (value == 0) return " 0";  // -0 as well
    char text[kTextMax];
    return WithSignBlank(text, FormatBare(value, text));
}

std::string NumText(long long value) {
    char text[kTextMax];
    const auto result = std::to_chars(text, text + kTextMax, value);
    return WithSignBlank(text, static_cast<std::size_t>(result.ptr - text));
}

std::string NumTextBare(double value) {
    std::string out;
    AppendNumTextBare(out, value);
    return out;
}

void AppendNumTextBare(std::string& out, double value) {
    if (value == 0) {
        out.push_back('0');
        return;
    }
    char text[kTextMax];
    out.append(text, FormatBare(value, text));
}

double Val(std::string_view text) {
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n && text[i] == ' ') ++i;
    bool negative = false;
    if (i < n && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }

    // Mantissa: digits with at most one point. Remember where the first
    // non-zero digit stands relative to the point, to tell overflow from
    // underflow below.
    const std::size_t start = i;
    std::size_t digits = 0;
    long long integerDigits = -1;  // digits before the point, once it is seen
    long long firstSignificant = -1;
    std::uint64_t mantissa = 0;  // the digits as a whole number, while they fit
    for (; i < n; ++i) {
        if (IsDigit(text[i])) {
            if (firstSignificant < 0 && text[i] != '0') firstSignificant = static_cast<long long>(digits);
            if (digits < 19) mantissa = mantissa * 10 + static_cast<std::uint64_t>(text[i] - '0');
            ++digits;
        } else if (text[i] == '.' && integerDigits < 0) {
            integerDigits = static_cast<long long>(digits);
        } else {
            break;
        }
    }
    if (digits == 0) return 0;  // "", "-", ".", "abc": no number
    if (integerDigits < 0) integerDigits = static_cast<long long>(digits);

    // Exponent: only when its marker is followed by digits ("1E" and "1E+"
    // are 1, the letter ending the number).
    std::size_t end = i;
    std::size_t marker = std::string_view::npos;
    long long exponent = 0;
    if (i < n && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
        std::size_t j = i + 1;
        const bool negativeExponent = j < n && text[j] == '-';
        if (j < n && (text[j] == '+' || text[j] == '-')) ++j;
        const std::size_t exponentStart = j;
        while (j < n && IsDigit(text[j])) ++j;
        if (j > exponentStart) {
            marker = i;
            end = j;
            exponent = ExponentValue(text.substr(exponentStart, j - exponentStart));
            if (negativeExponent) exponent = -exponent;
        }
    }
    if (firstSignificant < 0) return negative ? -0.0 : 0.0;

    // Up to 15 digits without an exponent: the digits and the power of ten
    // are both exact doubles, so their quotient is the correctly rounded
    // value, as the general conversion would give.
    if (marker == std::string_view::npos && digits <= 15) {
        const std::size_t decimals = digits - static_cast<std::size_t>(integerDigits);
        const double value = static_cast<double>(mantissa) / kPowersOfTen[decimals];
        return negative ? -value : value;
    }

    // from_chars knows no "D" exponent; only then is the text copied.
    std::string copy;
    std::string_view number = text.substr(start, end - start);
    if (marker != std::string_view::npos && (text[marker] == 'D' || text[marker] == 'd')) {
        copy.assign(number);
        copy[marker - start] = 'e';
        number = copy;
    }
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value,
                                        std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        // The first significant digit stands at 10^(magnitude - 1): a large
        // magnitude overflowed, a small one is too close to 0 for a double.
        const long long magnitude = integerDigits - firstSignificant + exponent;
        if (magnitude > 0) Raise(kOverflow);
        value = 0;
    }
    return negative ? -value : value;
}

double RoundHalfEven(double value) {
    const double below = std::floor(value);
    const double fraction = value - below;  // exact for every finite double
    if (fraction < 0.5) return below;
    if (fraction > 0.5) return below + 1;
    return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

std::int32_t ToInt32(double value) {
    const double rounded = RoundHalfEven(value);
    // Written so that NaN fails the test too.
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max())) {
        Raise(kOverflow);
    }
    return static_cast<std::int32_t>(rounded);
}

std::int16_t ToInt16(double value) {
    const double rounded = RoundHalfEven(value);
    if (!(rounded >= std::numeric_limits<std::int16_t>::min() &&
          rounded <= std::numeric_limits<std::int16_t>::max())) {
        Raise(kOverflow);
    }
    return static_cast<std::int16_t>(rounded);
}

double CheckedResult(double value) {
    if (!std::isfinite(value)) Raise(kOverflow);
    return value;
}

double Divide(double dividend, double divisor) {
    if (divisor == 0) Raise(dividend == 0 || std::isnan(dividend) ? kOverflow : kDivisionByZero);
    return CheckedResult(dividend / divisor);
}

double Power(double base, double exponent) {
    if (base == 0 && exponent < 0) Raise(kDivisionByZero);
    if (base < 0 && std::trunc(exponent) != exponent) Raise(kInvalidCall);
    // Whole powers of ten come from the exact table (a quotient of exact
    // values is correctly rounded), so that rounding to places gives the same
    // digits on every host: C libraries differ in the last bit of pow(10, -2).
    constexpr double kLargestExact = static_cast<double>(std::size(kPowersOfTen) - 1);
    if (base == 10 && std::trunc(exponent) == exponent && std::fabs(exponent) <= kLargestExact) {
        const double power = kPowersOfTen[static_cast<std::size_t>(std::fabs(exponent))];
        return exponent < 0 ? 1 / power : power;
    }
    return CheckedResult(std::pow(base, exponent));
}

double Log(double value) {
    if (!(value > 0)) Raise(kInvalidCall);
    return CheckedResult(std::log(value));
}

}  // namespace ravelo
