// The text-rewriting evaluator: each pass performs the first operation of the
// innermost bracket and writes its result back into the equation.
#include "calc/calculx.hpp"

#include <cmath>
#include <cstdint>

#include "runtime/number.hpp"
#include "runtime/text.hpp"

namespace ravelo::CALCULX {
namespace {

constexpr std::string_view kOperators = "^*/+-";
// Three letters per function: sin, tan, cos, log, atn.
constexpr std::string_view kFunctions = "sintancoslogatn";
// Everything that can start the next operation after a right operand.
constexpr std::string_view kOperationChars = "^*/+-sintancoslogatn";
// The calculator's own pi, shorter than the machine's: its sines and arc
// tangents are off in the last digits (sin 30 is .50000000000003), and the
// answers the users know depend on that.
constexpr std::string_view kPiText = "3.14159265359";
constexpr double kPi = 3.14159265359;

bool IsOperator(char c) { return kOperators.find(c) != std::string_view::npos; }
bool IsOperationChar(char c) { return kOperationChars.find(c) != std::string_view::npos; }

// "D" and "E" (either case) introduce an exponent, so a sign after them
// belongs to a number.
bool IsExponentMarker(std::string_view c) {
    const std::string upper = UCase(c);
    return upper == "D" || upper == "E";
}

// The trace's pause: the window keeps processing its events while it waits.
// Scaled with the program's waits; a skipped pause processes no events.
void TracePause(Program& p, double seconds) {
    const double duration = seconds * 1000 * p.waitScale;
    if (duration <= 0) return;
    const std::uint32_t start = p.clock.Millis();
    while (p.clock.Millis() - start < duration) p.DoEvents();
}

// The right operand's end: the position in `rest` of the next operation,
// or 0. Unlike the operation search, the exponent test here looks at `rest`
// itself. Every character's test overwrites the noted value, so when the
// loop runs out it holds the last character's: 0 unless `rest` ends in an
// operation character whose predecessor marks an exponent.
std::size_t NextOperation(const std::string& rest) {
    std::size_t next = 0;
    for (std::size_t j = 1; j <= rest.size(); ++j) {
        next = (j >= 2 && IsOperationChar(rest[j - 1])) ? j : 0;
        if (next != 0 && !IsExponentMarker(Mid(rest, static_cast<long long>(j) - 1, 1))) break;
    }
    return next;
}

// The value of one operation. An unknown name (a fragment such as "nta"
// that the function search lets through) leaves `result` as it was.
void Compute(const std::string& operation, double leftValue, double rightValue, double degreeFactor,
             double& result) {
    if (operation == "^") {
        result = Power(leftValue, rightValue);
    } else if (operation == "*") {
        result = CheckedResult(leftValue * rightValue);
    } else if (operation == "/") {
        result = Divide(leftValue, rightValue);
    } else if (operation == "+") {
        result = CheckedResult(leftValue + rightValue);
    } else if (operation == "-") {
        result = CheckedResult(leftValue - rightValue);
    } else if (operation == "sin") {
        result = CheckedResult(std::sin(CheckedResult(rightValue * degreeFactor)));
    } else if (operation == "tan") {
        // tan 90 would come out large and negative with this pi; nudged
        // below 90 it is large and positive, as a user expects. Only 90.
        if (rightValue == 90) rightValue -= 1E-11;
        result = CheckedResult(std::tan(CheckedResult(rightValue * degreeFactor)));
    } else if (operation == "cos") {
        result = CheckedResult(std::cos(CheckedResult(rightValue * degreeFactor)));
    } else if (operation == "atn") {
        result = Divide(std::atan(rightValue), degreeFactor);  // in degrees
    } else if (operation == "log") {
        result = Divide(Log(rightValue), Log(10));  // common logarithm
    }
}

}  // namespace

void ReplaceFirst(std::string& text, std::string_view pattern, std::string_view replacement) {
    const std::size_t at = InStr(text, pattern);
    if (at == 0) return;
    text = Left(text, static_cast<long long>(at) - 1) + std::string(replacement) +
           Mid(text, static_cast<long long>(at + pattern.size()));
}

void ReduceStep(const std::string& segment, std::string& equation, double& result, int& flag) {
    const double DegreeFactor = kPi / 180;

    // The first operation of the segment, left to right. The character
    // before a sign is taken from the whole equation, not from the segment:
    // the two agree only once no bracket is left, so inside a bracket a "d"
    // or "e" elsewhere in the equation can hide an operator. Users' answers
    // depend on this, so it stays. An operator in the first place is the
    // sign of a number, never the operation.
    std::string operation;
    std::size_t position = 0;
    for (std::size_t i = 1; i <= segment.size(); ++i) {
        const auto at = static_cast<long long>(i);
        if (i >= 2 && IsOperator(segment[i - 1]) && !IsExponentMarker(Mid(equation, at - 1, 1))) {
            operation = std::string(1, segment[i - 1]);
            position = i;
            break;
        }
        // A substring test on the packed names: a fragment such as "nta"
        // (or one or two letters at the very end) counts as a function too.
        const std::string three = Mid(segment, at, 3);
        if (Contains(kFunctions, three)) {
            operation = three;
            position = i;
            break;
        }
    }

    std::string left;
    std::string right;
    bool bracket = false;  // the pattern takes the bracket around it
    if (operation.empty()) {
        result = Val(segment);
        if (!Contains(segment, ")")) {
            flag = 0;
            return;
        }
        // A bracket around a bare number, such as (30), is removed.
        flag = 1;
        bracket = true;
        left = TextBefore(segment, ")");
    } else {
        flag = static_cast<int>(position);
        double leftValue = 0;
        std::string rest;
        const auto at = static_cast<long long>(position);
        if (operation.size() == 1 && IsOperator(operation[0])) {
            left = Left(segment, at - 1);
            leftValue = Val(left);
            rest = Mid(segment, at + 1);
        } else {
            rest = Mid(segment, at + 3);
        }

        const std::size_t close = InStr(rest, ")");
        const std::size_t next = NextOperation(rest);
        if (next == 0) {
            bracket = close >= 1;
            right = bracket ? Left(rest, static_cast<long long>(close) - 1) : rest;
        } else if (close == 0 || next < close) {
            right = Left(rest, static_cast<long long>(next) - 1);
        } else {
            bracket = true;
            right = Left(rest, static_cast<long long>(close) - 1);
        }
        Compute(operation, leftValue, Val(right), DegreeFactor, result);
    }

    // The first occurrence anywhere in the equation is replaced, which need
    // not be the one the segment came from. A pattern that is not there
    // (an unmatched ")") leaves the equation as it is, and the same pass
    // comes round again.
    std::string pattern = left + operation + right;
    if (bracket) pattern = "(" + pattern + ")";
    ReplaceFirst(equation, pattern, Trim(NumText(result)));
}

void EvaluateExpression(Program& p, Shared& shared, Display& display, int mode, std::string& text,
                        History& history, std::optional<long> stepBound) {
    if (mode == 1) {
        if (!(Val(text) != 0 && text.size() >= 3)) return;
        shared.CurrentEquation = LCase(text);
        history[0] = shared.CurrentEquation;
    }

    if (shared.CurrentEquation.size() < 3) {
        shared.LastAnswer = Val(shared.CurrentEquation);
    } else {
        while (Contains(shared.CurrentEquation, "pi")) ReplaceFirst(shared.CurrentEquation, "pi", kPiText);
        double result = 0;  // what an uncomputable fragment keeps: 0 in each evaluation
        int flag = 0;
        long passes = 0;
        do {
            if (stepBound && ++passes > *stepBound) throw StepBoundExceeded();
            // The innermost bracket: the text after the last "(".
            const std::string segment = Mid(
                shared.CurrentEquation, static_cast<long long>(InStrRev(shared.CurrentEquation, "(")) + 1);
            ReduceStep(segment, shared.CurrentEquation, result, flag);
            if (shared.TraceFlag == "T") {
                for (int line = 0; line < 4; ++line) display.SetLine(line, display.Line(line + 1));
                display.SetLine(4, shared.CurrentEquation);
                display.Repaint();
                TracePause(p, 2);
            }
        } while (flag != 0);
        shared.LastAnswer = result;
    }

    text = NumText(shared.LastAnswer);
    if (mode == 0) {
        // The bottom line stays: with tracing on it shows the equation's
        // last form under the answer.
        for (int line = 1; line <= 3; ++line) display.SetLine(line, "");
        display.SetLine(0, "The Answer is " + text);
        display.Repaint();
    }
}

}  // namespace ravelo::CALCULX
