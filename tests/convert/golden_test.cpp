// The whole program on every golden converter case: the built raveloutils
// converts the case's input in an empty folder, and every file it leaves
// there and in the log folder must equal the golden copy byte for byte. The
// cases are listed in tests/data/golden/MANIFEST.tsv (case folder, input
// under tests/data, how the program ends, and how it ran when that was not
// "fileconv" on the input's own name).
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

namespace fs = std::filesystem;
using test::ReadHostFile;
using test::RunBinary;
using test::TempFolder;
using test::WriteHostFile;

const fs::path kData = RAVELO_TEST_DATA;

struct GoldenCase {
    std::string folder;   // under tests/data/golden/converter
    std::string input;    // under tests/data
    std::string outcome;  // "ends normally" or "ends with RUNTIME ERROR n: ..."
    // How the case ran, when not as "fileconv CASE/name" with the input's own
    // name: "fileconv CASE/other.ext" (the input under another name), or
    // "--window NAME; ... CASE\name ..." (the name typed into that converter
    // window and converted with its Convert button).
    std::string command;
};

void PrintTo(const GoldenCase& c, std::ostream* os) { *os << c.folder; }

std::vector<GoldenCase> LoadManifest() {
    std::vector<GoldenCase> cases;
    std::istringstream lines(ReadHostFile(kData / "golden" / "MANIFEST.tsv"));
    std::string line;
    std::getline(lines, line);  // the heading
    while (std::getline(lines, line)) {
        if (line.empty()) continue;
        std::istringstream fields(line);
        GoldenCase c;
        std::getline(fields, c.folder, '\t');
        std::getline(fields, c.input, '\t');
        std::getline(fields, c.outcome, '\t');
        std::getline(fields, c.command, '\t');
        cases.push_back(c);
    }
    return cases;
}

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// The Windows form in which the program names a host folder.
std::string WindowsForm(const fs::path& p) {
    std::string text = "Z:" + p.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

// Every occurrence of `what`, in any case, replaced by "@CASE@".
std::string MarkCaseFolder(const std::string& bytes, const std::string& what) {
    const std::string lowerBytes = Lower(bytes), lowerWhat = Lower(what);
    std::string result;
    std::size_t from = 0;
    for (std::size_t at; (at = lowerBytes.find(lowerWhat, from)) != std::string::npos;
         from = at + what.size())
        result += bytes.substr(from, at - from) + "@CASE@";
    return result + bytes.substr(from);
}

// The file name that follows "CASE/" or "CASE\\" in a case's command.
std::string NameIn(const std::string& command) {
    const std::size_t at = command.find_first_of("/\\", command.find("CASE"));
    return command.substr(at + 1, command.find_first_of(" ;,", at) - at - 1);
}

// The window a case's command opens ("--window NAME"), or "".
std::string WindowIn(const std::string& command) {
    const std::size_t at = command.find("--window ");
    if (at == std::string::npos) return {};
    const std::size_t from = at + 9;
    return command.substr(from, command.find_first_of(" ;", from) - from);
}

// Relative path -> contents of every file under `root`/`sub`.
void Snapshot(const fs::path& root, const std::string& sub, std::map<std::string, std::string>& files) {
    if (!fs::exists(root / sub)) return;
    for (const auto& entry : fs::recursive_directory_iterator(root / sub))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), root).generic_string()] = ReadHostFile(entry.path());
}

// The first line (CR LF separated) where two texts differ.
std::string FirstDifference(const std::string& got, const std::string& want) {
    std::size_t line = 1, start = 0;
    while (true) {
        const std::size_t a = got.find("\r\n", start), b = want.find("\r\n", start);
        const std::string gotLine = got.substr(start, a == std::string::npos ? a : a - start);
        const std::string wantLine = want.substr(start, b == std::string::npos ? b : b - start);
        if (gotLine != wantLine || a != b)
            return "line " + std::to_string(line) + ": got \"" + gotLine + "\" want \"" + wantLine + "\"";
        if (a == std::string::npos) return "same";
        start = a + 2;
        ++line;
    }
}

class ConverterGolden : public testing::TestWithParam<GoldenCase> {};

TEST_P(ConverterGolden, LeavesTheGoldenFiles) {
    const GoldenCase& c = GetParam();
    TempFolder work;
    // The program cuts paths at their first ".", so the case folder must
    // hold none, as the golden runs' folder did.
    ASSERT_EQ(work.Path().string().find('.'), std::string::npos) << work.Path();
    const fs::path caseDir = work.Path() / "case", temp = work.Path() / "temp", inst = work.Path() / "inst";
    fs::create_directories(caseDir);
    fs::create_directories(temp);
    WriteHostFile(inst / "programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    WriteHostFile(inst / "ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    fs::create_directories(inst / "dmor");

    const std::string name =
        c.command.empty() ? Lower(fs::path(c.input).filename().string()) : NameIn(c.command);
    ASSERT_TRUE(fs::exists(kData / c.input)) << c.input;
    WriteHostFile(caseDir / name, ReadHostFile(kData / c.input));

    std::map<std::string, std::string> env = {{"TEMP", temp.string()},
                                              {"RAVELO_DRIVE_C", inst.string()},
                                              {"RAVELO_WAIT_SCALE", "0"},
                                              {"RAVELO_UI", "headless"}};
    test::ProcessResult run;
    if (const std::string window = WindowIn(c.command); !window.empty()) {
        env["RAVELO_UI"] = "script";
        run = RunBinary(
            {"--window", window}, env,
            "text " + window + ".Text1 " + WindowsForm(caseDir / name) + "\nclick " + window + ".Command1\n",
            caseDir);
    } else {
        run = RunBinary({"fileconv", (caseDir / name).string()}, env, {}, caseDir);
    }
    const bool normal = c.outcome == "ends normally";
    EXPECT_EQ(run.status, normal ? 0 : 3) << run.err;
    if (!normal) {
        // "ends with RUNTIME ERROR 62: ..." is reported as "Run-time error '62':".
        const std::string number = c.outcome.substr(c.outcome.find("ERROR ") + 6);
        EXPECT_NE(run.err.find("Run-time error '" + number.substr(0, number.find(':')) + "'"),
                  std::string::npos)
            << run.err;
    }
    // Crystal files go on from each XCC file they wrote (in name order) to
    // its XXS file, a run of its own each.
    if (c.command.find("then fileconv CASE/X.xcc") != std::string::npos) {
        std::vector<fs::path> written;
        for (const auto& entry : fs::directory_iterator(caseDir))
            if (entry.path().extension() == ".xcc") written.push_back(entry.path());
        std::sort(written.begin(), written.end());
        for (const fs::path& xcc : written) {
            const auto next = RunBinary({"fileconv", xcc.string()}, env, {}, caseDir);
            EXPECT_EQ(next.status, 0) << xcc << next.err;
        }
    }

    std::map<std::string, std::string> got, want;
    Snapshot(work.Path(), "case", got);
    Snapshot(work.Path(), "temp", got);
    for (auto& [file, bytes] : got) bytes = MarkCaseFolder(bytes, WindowsForm(caseDir));
    const fs::path golden = kData / "golden" / "converter" / c.folder;
    Snapshot(golden, "case", want);
    Snapshot(golden, "temp", want);

    for (const auto& [file, bytes] : want) {
        const auto found = got.find(file);
        if (found == got.end()) {
            ADD_FAILURE() << "missing " << file;
            continue;
        }
        EXPECT_TRUE(found->second == bytes) << file << " " << FirstDifference(found->second, bytes);
    }
    for (const auto& [file, bytes] : got) EXPECT_TRUE(want.count(file)) << "unexpected " << file;
}

std::string CaseName(const testing::TestParamInfo<GoldenCase>& info) {
    std::string name = info.param.folder;
    for (char& ch : name)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Converter, ConverterGolden, testing::ValuesIn(LoadManifest()), CaseName);

}  // namespace
}  // namespace ravelo
