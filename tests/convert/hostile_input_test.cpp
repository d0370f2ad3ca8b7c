// The readers of Tripos, MOPAC, Alchemy, Schakal, M3D and force-field files
// on input that no program writes: random bytes, alone and after the lines
// that lead each reader to its atoms, numbers beyond the whole-number and the
// double range, and a line of 100,000 digits. A conversion ends normally or
// in a run-time error, never in a crash or a hang, and the input stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "convert/alchemy.hpp"
#include "convert/filcvrt.hpp"
#include "convert/m3d.hpp"
#include "convert/mm2mmx.hpp"
#include "convert/mopac.hpp"
#include "convert/schakal.hpp"
#include "convert/tripos.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

struct Reader {
    std::string path;
    std::string lead;         // the lines before the atoms
    bool cleaned;             // the window cleans the input before reading
    std::vector<int> errors;  // the run-time errors it may end with
    std::function<void(Program&, const std::string&)> convert;
};

Reader ReaderFor(const std::string& name) {
    if (name == "Tripos")
        return {"C:\\d\\h.mop",
                "@<TRIPOS>MOLECULE\r\nh\r\n@<TRIPOS>ATOM\r\n",
                true,
                {6, 62},
                readers::Tripos::ConvertFile};
    if (name == "Mopac")
        return {"C:\\d\\h.out",
                "CARTESIAN COORDINATES\r\nCARTESIAN COORDINATES\r\n\r\n\r\n\r\n",
                false,
                {6, 62},
                readers::MOPAC::ConvertFile};
    if (name == "Alchemy")
        return {"C:\\d\\h.alc", "100 ATOMS\r\n", true, {6, 62}, readers::Alchemy::ConvertFile};
    if (name == "Schakal")
        return {"C:\\d\\h.sch", "ATOM ", true, {6, 9}, [](Program& p, const std::string& path) {
                    readers::Schakal::Tables tables;
                    readers::Schakal::ConvertFile(p, path, tables);
                }};
    if (name == "M3d")
        return {"C:\\d\\h.m3d", "M3D\r\nNAME h\r\n", true, {6, 62}, [](Program& p, const std::string& path) {
                    std::int32_t lastAtom = 0;
                    readers::M3D::ConvertFile(p, path, lastAtom);
                }};
    return {"C:\\d\\h.mm2",
            "title\r\n 1 0\r\n 3\r\n",
            false,
            {6, 9, 62},
            [](Program& p, const std::string& path) { MM2MMX::ConvertFile(p, path, "m2"); }};
}

// A fixed pseudo-random sequence of bytes.
std::string Noise(unsigned seed) {
    std::string bytes;
    for (int i = 0; i < 4000; ++i) {
        seed = seed * 1103515245u + 12345u;
        bytes += static_cast<char>(seed >> 16);
    }
    return bytes;
}

class HostileInput : public testing::TestWithParam<std::string> {};

TEST_P(HostileInput, ConvertsOrEndsInARunTimeError) {
    const Reader reader = ReaderFor(GetParam());
    std::string atoms = Noise(2);
    for (std::size_t at = 0; at < atoms.size(); at += 97) atoms.insert(at, "\r\n" + reader.lead);
    for (const std::string& input : std::vector<std::string>{
             Noise(1), reader.lead + Noise(3), atoms, reader.lead + "99999999999 C 1.0 2.0 3.0 x\r\n",
             reader.lead + "1 C 1.0e999 2.0 3.0 x\r\n1.25 1e999 1 1 1\r\n",
             reader.lead + "1 C 1.0 2.0 " + std::string(100000, '7')}) {
        TestProgram t;
        t.program().InstallDrive = "C:";
        t.Write("C:\\ravelo\\mmatoms.dat",
                test::ReadHostFile(std::string(RAVELO_TEST_DATA) + "/../../demo/drive_c/ravelo/mmatoms.dat"));
        t.Write(reader.path, input);
        const int error = test::ErrorOf([&] {
            if (reader.cleaned) FilCvrt::PrepareInputFile(t.program(), reader.path);
            reader.convert(t.program(), reader.path);
        });
        EXPECT_TRUE(error == 0 || std::count(reader.errors.begin(), reader.errors.end(), error)) << error;
        // Cleaned input is rewritten in place; the rest is never touched.
        if (reader.cleaned) {
            EXPECT_TRUE(t.Exists(reader.path));
        } else {
            EXPECT_EQ(t.Read(reader.path), input);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Readers, HostileInput,
                         testing::Values("Tripos", "Mopac", "Alchemy", "Schakal", "M3d", "Mm2mmx"));

}  // namespace
}  // namespace ravelo
