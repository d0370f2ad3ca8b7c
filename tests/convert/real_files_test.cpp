// Files written by other programs, converted by the whole program: MOL2 and
// Alchemy files that Open Babel's obabel writes from SMILES, and listings
// that MOPAC writes for inputs made here (the corpus files are in the golden
// set).
// Every atom record is checked against the atom line it came from, read from
// the source file by the test itself. Where obabel or mopac is not on the
// PATH the test is skipped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/sxs_record.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

struct AtomLine {
    int number = 0;
    std::string name;  // the atom's name, type or element column
    double x = 0, y = 0, z = 0;
};

using Record = test::SxsRecord;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream in(line);
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// "number name x y z ..." as MOL2, Alchemy and MOPAC atom lines all begin.
AtomLine ParseAtomLine(const std::string& line) {
    const std::vector<std::string> w = Words(line);
    EXPECT_GE(w.size(), 5u) << line;
    if (w.size() < 5) return {};
    return {std::stoi(w[0]), w[1], std::stod(w[2]), std::stod(w[3]), std::stod(w[4])};
}

// The records of an SXS file; the last one is the end record.
std::vector<Record> Records(const std::string& sxs) {
    std::vector<Record> records;
    for (const std::string& line : Lines(sxs)) {
        std::vector<std::string> f;
        std::istringstream in(line);
        for (std::string field; std::getline(in, field, ',');) f.push_back(field);
        EXPECT_EQ(f.size(), 5u) << line;
        if (f.size() != 5) continue;
        records.push_back({std::stod(f[0]), std::stod(f[1]), std::stod(f[2]), f[3].substr(1, f[3].size() - 2),
                           std::stoi(f[4])});
    }
    return records;
}

// Each atom record equals its atom line: coordinates, number, and the symbol
// `symbolOf` expects for the line's name column; the end record carries the
// title and the last number plus 1.
template <class SymbolOf>
void ExpectConverted(const std::string& sxs, const std::vector<AtomLine>& atoms, const std::string& title,
                     SymbolOf symbolOf) {
    const std::vector<Record> records = Records(sxs);
    ASSERT_EQ(records.size(), atoms.size() + 1) << sxs;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        const AtomLine& a = atoms[i];
        const Record& r = records[i];
        EXPECT_EQ(r.x, a.x) << "atom " << a.number;
        EXPECT_EQ(r.y, a.y) << "atom " << a.number;
        EXPECT_EQ(r.z, a.z) << "atom " << a.number;
        EXPECT_EQ(r.number, a.number);
        EXPECT_EQ(r.symbol, symbolOf(a.name)) << "atom " << a.number << " " << a.name;
    }
    EXPECT_EQ(records.back().symbol, title);
    EXPECT_EQ(records.back().number, atoms.back().number + 1);
}

// The atom lines of a MOL2 file's first atom section, and its name.
std::vector<AtomLine> Mol2Atoms(const std::string& text, std::string& title) {
    const std::vector<std::string> lines = Lines(text);
    std::vector<AtomLine> atoms;
    bool inAtoms = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!inAtoms && lines[i].find("@<TRIPOS>MOLECULE") != std::string::npos)
            title = Words(lines[i + 1])[0];
        if (lines[i].find("@<TRIPOS>ATOM") != std::string::npos) {
            inAtoms = true;
        } else if (inAtoms) {
            if (lines[i].find("@<TRIPOS>") != std::string::npos) break;
            if (!Words(lines[i]).empty()) atoms.push_back(ParseAtomLine(lines[i]));
        }
    }
    return atoms;
}

bool OnPath(const std::string& tool) {
    return std::system(("command -v " + tool + " >/dev/null 2>&1").c_str()) == 0;
}

// Runs a shell command in a host folder; true when it succeeded.
bool RunIn(const std::filesystem::path& folder, const std::string& command) {
    return std::system(("cd '" + folder.string() + "' && " + command + " >/dev/null 2>&1").c_str()) == 0;
}

// Molecules with chlorine and bromine among C, H, N, O and S.
const char* const kSmiles[][2] = {
    {"aspirin", "CC(=O)Oc1ccccc1C(=O)O"},
    {"halide", "ClCC(Br)C#N"},
    {"thiazole", "c1cscn1"},
};

// obabel builds each molecule in 3D once, as a MOL2 file under a ".mop" name
// (the converter's way to the Tripos reader), and writes the same atoms as
// an Alchemy file.
TEST(TriposAndAlchemyObabelFiles, Mol2AndAlchemyFilesConvertAtomForAtom) {
    if (!OnPath("obabel")) GTEST_SKIP() << "obabel is not on the PATH";
    for (const auto& [name, smiles] : kSmiles) {
        TestProgram t;
        t.Install();
        const std::string base = std::string("C:\\d\\") + name;
        const std::filesystem::path folder = t.Host("C:\\d");
        std::filesystem::create_directories(folder);
        ASSERT_TRUE(RunIn(folder, std::string("obabel -:'") + smiles + "' --gen3d --title " + name +
                                      " -omol2 -O " + name + ".mop && obabel -imol2 " + name +
                                      ".mop -oalc -O " + name + ".alc"))
            << smiles;

        const std::string mol2 = t.Read(base + ".mop");
        std::string title;
        const std::vector<AtomLine> atoms = Mol2Atoms(mol2, title);
        ASSERT_GT(atoms.size(), 2u) << mol2;
        ASSERT_EQ(t.Run("fileconv " + base + ".mop"), 0);
        // obabel names each atom by its element in upper case (C, CL, BR).
        ExpectConverted(t.Read(base + ".sxs"), atoms, name, [](const std::string& element) {
            std::string symbol = element;
            for (std::size_t i = 1; i < symbol.size(); ++i)
                symbol[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(symbol[i])));
            return symbol;
        });

        // The Alchemy file's first line counts the atoms; the atom lines
        // follow it.
        const std::vector<std::string> lines = Lines(t.Read(base + ".alc"));
        ASSERT_FALSE(lines.empty());
        const std::size_t count = static_cast<std::size_t>(std::stoi(Words(lines[0])[0]));
        ASSERT_EQ(count, atoms.size());
        std::vector<AtomLine> alchemyAtoms;
        for (std::size_t i = 1; i <= count; ++i) alchemyAtoms.push_back(ParseAtomLine(lines[i]));
        TestProgram a;  // a second run of the program, on a drive of its own
        a.Install();
        a.Write(base + ".alc", t.Read(base + ".alc"));
        ASSERT_EQ(a.Run("fileconv " + base + ".alc"), 0);
        // The types begin with the element's letters in upper case (C2, O3,
        // CL, BR, NPL3, CAR): the symbol is the first, or both where they name
        // an element (CL, BR, and CAR, an aromatic carbon, as calcium).
        ExpectConverted(a.Read(base + ".sxs"), alchemyAtoms, name, [](const std::string& type) {
            const std::string two = type.substr(0, 2);
            if (two == "CL" || two == "BR" || two == "CA")
                return std::string(1, type[0]) + char(std::tolower(type[1]));
            return type.substr(0, 1);
        });
    }
}

// Geometries for MOPAC to optimise: Cartesian coordinates, each marked to be
// optimised.
const char* const kMopacInputs[][2] = {
    {"ethene",
     "C   0.0000 1  0.0000 1  0.0000 1\n"
     "C   1.3300 1  0.0000 1  0.0000 1\n"
     "H  -0.5700 1  0.9300 1  0.0000 1\n"
     "H  -0.5700 1 -0.9300 1  0.0000 1\n"
     "H   1.9000 1  0.9300 1  0.0000 1\n"
     "H   1.9000 1 -0.9300 1  0.0000 1\n"},
    {"chloromethanol",
     "C   0.0000 1  0.0000 1  0.0000 1\n"
     "Cl  1.7700 1  0.0000 1  0.0000 1\n"
     "O  -0.4700 1  1.3300 1  0.0000 1\n"
     "H  -0.3600 1 -0.5100 1  0.8900 1\n"
     "H  -0.3600 1 -0.5100 1 -0.8900 1\n"
     "H  -1.4300 1  1.3300 1  0.0000 1\n"},
};

// The listing's final table (the second "CARTESIAN COORDINATES"): its atom
// lines, and whether a single blank line stands between heading and atoms.
std::vector<AtomLine> FinalTable(const std::vector<std::string>& lines, bool& oneBlankLine) {
    int headings = 0;
    std::size_t at = 0;
    while (at < lines.size() && headings < 2)
        if (lines[at++].find("CARTESIAN COORDINATES") != std::string::npos) ++headings;
    oneBlankLine = at + 1 < lines.size() && Words(lines[at]).empty() && !Words(lines[at + 1]).empty();
    std::vector<AtomLine> atoms;
    for (++at; at < lines.size() && !Words(lines[at]).empty(); ++at)
        atoms.push_back(ParseAtomLine(lines[at]));
    return atoms;
}

TEST(MopacRealListings, TheFinalGeometryIsConvertedThroughTheMopacWindow) {
    if (!OnPath("mopac")) GTEST_SKIP() << "mopac is not on the PATH";
    for (const auto& [name, geometry] : kMopacInputs) {
        const std::string listing = std::string("C:\\d\\") + name + ".out";
        TestProgram t(std::string("show MOPAC\ntext MOPAC.Text1 ") + listing + "\nclick MOPAC.Command1\n");
        t.Install();
        t.Write(std::string("C:\\d\\") + name + ".mop", std::string("PM7\n") + name + "\n\n" + geometry);
        ASSERT_TRUE(RunIn(t.Host("C:\\d"), std::string("mopac ") + name + ".mop")) << name;
        const std::string before = t.Read(listing);
        bool oneBlankLine = false;
        std::vector<AtomLine> atoms = FinalTable(Lines(before), oneBlankLine);
        ASSERT_EQ(atoms.size(),
                  static_cast<std::size_t>(std::count(geometry, geometry + std::strlen(geometry), '\n')));
        // The reader skips three lines after the heading whatever they hold;
        // these listings have one blank line there, so the first two atoms go
        // with it.
        ASSERT_TRUE(oneBlankLine) << before;
        atoms.erase(atoms.begin(), atoms.begin() + 2);

        ASSERT_EQ(t.Run(""), 0);
        ExpectConverted(t.Read(std::string("C:\\d\\") + name + ".sxs"), atoms, name,
                        [](const std::string& element) { return element; });
        EXPECT_EQ(t.Read(listing), before);
    }
}

}  // namespace
}  // namespace ravelo
