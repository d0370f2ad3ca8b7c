// Micro benchmarks of the converter's per-line routines: CleanNumericLine
// runs on every atom line of every reader, ReadCoordinates right after it.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "convert/filcvrt.hpp"

namespace {

using ravelo::FilCvrt::CleanNumericLine;

// Lines as the readers meet them: a PDB atom, an SD atom, a CIF atom with
// uncertainties, a line of lone zeros and short fractions, and a long line
// full of zeros (the case a rebuild per match would make quadratic).
const std::vector<std::string>& Lines() {
    static const std::vector<std::string> lines = {
        "ATOM      1  N   VAL A   1       6.204  16.869   4.854  1.00 49.05           N",
        "    1.2345   -0.3000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0",
        "C1 C 0.1234(5) 0.2345(6) 0.3456(7) 0.0123(4) Uani 1 1 d . . .",
        "H12 0 .5 0.0 -0.3 ? 7 .0 0",
    };
    return lines;
}

std::string LongZeroLine() {
    std::string line;
    for (int i = 0; i < 2000; ++i) line += " 0";
    return line;
}

void BM_CleanNumericLine(benchmark::State& state) {
    const std::string& source = Lines()[static_cast<std::size_t>(state.range(0))];
    for (auto _ : state) {
        std::string line = source;
        CleanNumericLine(line);
        benchmark::DoNotOptimize(line);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * source.size()));
}
BENCHMARK(BM_CleanNumericLine)->DenseRange(0, 3);

void BM_CleanNumericLineLongZeros(benchmark::State& state) {
    const std::string source = LongZeroLine();
    for (auto _ : state) {
        std::string line = source;
        CleanNumericLine(line);
        benchmark::DoNotOptimize(line);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * source.size()));
}
BENCHMARK(BM_CleanNumericLineLongZeros);

void BM_ReadCoordinates(benchmark::State& state) {
    const std::string& source = Lines()[static_cast<std::size_t>(state.range(0))];
    ravelo::InputFile empty(ravelo::MemorySource({}));
    for (auto _ : state) {
        std::string line = source;
        CleanNumericLine(line);
        double x = 0, y = 0, z = 0;
        ravelo::FilCvrt::ReadCoordinates(ravelo::FilCvrt::SourceType::Labelled, empty, line, x, y, z);
        benchmark::DoNotOptimize(x + y + z);
    }
}
BENCHMARK(BM_ReadCoordinates)->DenseRange(0, 2);

// Coordinates spread over several lines: the routine reads on.
void BM_ReadCoordinatesAcrossLines(benchmark::State& state) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += "label 7\r\n 1.25\r\n-2.5 3.125\r\n";
    for (auto _ : state) {
        ravelo::InputFile in(ravelo::MemorySource(text));
        int atoms = 0;
        while (!in.Eof()) {
            std::string line = in.LineInput();
            double x = 0, y = 0, z = 0;
            ravelo::FilCvrt::ReadCoordinates(ravelo::FilCvrt::SourceType::Plain, in, line, x, y, z);
            benchmark::DoNotOptimize(x + y + z);
            ++atoms;
        }
        benchmark::DoNotOptimize(atoms);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_ReadCoordinatesAcrossLines);

}  // namespace
