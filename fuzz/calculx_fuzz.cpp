// The expression evaluator on any equation text. An unmatched closing bracket
// makes the evaluator repeat its pass for ever, by design; the step bound
// turns that loop into a StepBoundExceeded here, so the fuzzer goes on to the
// next input instead of reporting the known endless loop as a hang.
#include <cstddef>
#include <cstdint>
#include <string>

#include "calc/calculx.hpp"
#include "fuzz/fuzz_program.hpp"
#include "runtime/error.hpp"

namespace {

class MemoryDisplay final : public ravelo::CALCULX::Display {
public:
    std::string Line(int index) const override { return lines_[static_cast<std::size_t>(index)]; }
    void SetLine(int index, std::string text) override { lines_[static_cast<std::size_t>(index)] = std::move(text); }
    void Repaint() override {}

private:
    std::string lines_[5];
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto program = ravelo::fuzz::MakeProgram();
    if (size < 1) return 0;
    ravelo::CALCULX::Shared shared;
    MemoryDisplay display;
    ravelo::CALCULX::History history;
    const int mode = data[0] & 1;
    std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    shared.CurrentEquation = text;
    try {
        ravelo::CALCULX::EvaluateExpression(*program, shared, display, mode, text, history, 20000L);
    } catch (const ravelo::RuntimeError&) {
        // Division by zero, overflow and the like: the classic errors.
    } catch (const ravelo::CALCULX::StepBoundExceeded&) {
        // The deliberate endless loop of an unmatched bracket.
    }
    return 0;
}
