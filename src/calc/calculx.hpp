// The calculator's expression evaluator. It does not parse: it rewrites the
// equation text one operation at a time, always inside the innermost bracket
// and strictly from left to right there (no precedence), putting each result
// back into the text as a number, until only a number is left. Answers
// therefore depend on the exact number text of every intermediate result.
#pragma once

#include <array>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "core/program.hpp"

namespace ravelo::CALCULX {

// The values the evaluator shares with the calculator window.
struct Shared {
    std::string CurrentEquation;  // the equation being reduced, rewritten by every pass
    double LastAnswer = 0;        // the value of the last finished evaluation
    std::string TraceFlag;        // "T": every pass is shown with a pause
};

// The equation history: element 0 is the last calculated equation, 1 to 10
// the stored ones.
using History = std::array<std::string, 11>;

// The window's five-line display: line 0 at the top, line 4 at the bottom.
class Display {
public:
    virtual ~Display() = default;
    virtual std::string Line(int index) const = 0;
    virtual void SetLine(int index, std::string text) = 0;
    // Brings the lines on screen up to date.
    virtual void Repaint() = 0;
};

// Thrown when a test's step bound is passed; the program itself never sets
// one (an unmatched closing bracket repeats its pass for ever).
struct StepBoundExceeded : std::exception {
    const char* what() const noexcept override { return "the evaluator passed its step bound"; }
};

// Evaluates an equation. Mode 0 reduces shared.CurrentEquation and writes
// the answer line of the display. Mode 1 takes the equation from `text`
// instead (only when its leading number is not 0 and it has at least 3
// characters; otherwise nothing at all happens), stores it lower-cased in
// CurrentEquation and history[0], and leaves the answer lines alone. Either
// way `text` receives the answer in the standard number text (leading blank
// kept) and LastAnswer its value. With TraceFlag "T" every pass scrolls into
// the display, followed by a pause of 2 seconds. `stepBound` limits the
// number of passes (tests only).
void EvaluateExpression(Program& p, Shared& shared, Display& display, int mode, std::string& text,
                        History& history, std::optional<long> stepBound = std::nullopt);

// One pass. `segment` is the text after the last "(" of `equation` (all of
// it when there is none). `flag` comes back 0 when the equation is finished,
// `result` then holding its value; otherwise `equation` has been rewritten
// (or its pattern was not found) and another pass is due. `result` keeps its
// value when the pass meets an operation it cannot compute.
void ReduceStep(const std::string& segment, std::string& equation, double& result, int& flag);

// Replaces the first occurrence of `pattern` in `text` (exact case); leaves
// `text` as it is when there is none.
void ReplaceFirst(std::string& text, std::string_view pattern, std::string_view replacement);

}  // namespace ravelo::CALCULX
