// Numbers as text and text as numbers, in the program's one standard form.
// No locale, no iostreams: every number the program writes or reads goes
// through here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ravelo {

// Standard number text: " 0" for 0 and -0; otherwise "%.15G" with the zero
// before a leading decimal point removed (".5", "-.25"), and one blank in
// front of a non-negative value (" 25", " 1E-05", " 1E+15").
std::string NumText(double value);
std::string NumText(long long value);
// The same without the blank before non-negative values (write records).
std::string NumTextBare(double value);
// The same text appended to `out` (no string of its own: the record writer's path).
void AppendNumTextBare(std::string& out, double value);

// The leading-number parser: skips leading blanks; optional sign; digits with
// at most one "."; optional exponent "E" or "D" (any case) with optional sign
// and digits. Stops at anything else; no number gives 0. A result beyond the
// double range raises 6.
double Val(std::string_view text);

// Whole numbers from doubles: nearest, halves to even.
double RoundHalfEven(double value);
// Conversion to the whole-number types; out of range raises 6.
std::int32_t ToInt32(double value);   // "Long"
std::int16_t ToInt16(double value);   // "Integer"

// Arithmetic with the classic faults (x/0 is 11, 0/0 is 6, an infinite result
// is 6). Results that overflow raise 6.
double CheckedResult(double value);
// The classic faults of the operators themselves: x/0 raises 11 and 0/0
// raises 6; 0 to a negative power raises 11 and a negative number to a
// non-whole power raises 5; the logarithm of 0 or less raises 5. Every
// result then goes through CheckedResult.
double Divide(double dividend, double divisor);
double Power(double base, double exponent);
double Log(double value);

}  // namespace ravelo
