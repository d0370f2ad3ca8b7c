// Micro benchmarks of the number text (every record field the converter
// writes) and of the leading-number parser (every coordinate it reads).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "runtime/number.hpp"
#include "runtime/sequential.hpp"

namespace {

const std::vector<double>& Values() {
    static const std::vector<double> values = {6.204, -16.869, 0.5, 1e-05, 123456.789012345, 0.1 + 0.2, -0.25};
    return values;
}

void BM_NumText(benchmark::State& state) {
    for (auto _ : state) {
        for (const double v : Values()) benchmark::DoNotOptimize(ravelo::NumText(v));
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * Values().size()));
}
BENCHMARK(BM_NumText);

void BM_NumTextBare(benchmark::State& state) {
    for (auto _ : state) {
        for (const double v : Values()) benchmark::DoNotOptimize(ravelo::NumTextBare(v));
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * Values().size()));
}
BENCHMARK(BM_NumTextBare);

// One atom record as the converter writes it.
void BM_RecordText(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(ravelo::RecordText({ravelo::Field::Double(6.204), ravelo::Field::Double(-16.869),
                                                     ravelo::Field::Double(4.854), ravelo::Field::Text("N"),
                                                     ravelo::Field::Integer(12345)}));
    }
}
BENCHMARK(BM_RecordText);

void BM_Val(benchmark::State& state) {
    static const std::vector<std::string> texts = {"6.204",    "  -16.869", "4.854 1.00", "1.5D-3",
                                                   "12(3)",    "abc",       ".5",         "0.0000",
                                                   "1.25E+02", "-0.30000"};
    for (auto _ : state) {
        for (const std::string& t : texts) benchmark::DoNotOptimize(ravelo::Val(t));
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * texts.size()));
}
BENCHMARK(BM_Val);

}  // namespace
