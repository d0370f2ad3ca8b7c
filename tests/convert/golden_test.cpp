// The whole program on every golden converter case (tests/data/golden/
// MANIFEST.tsv: case folder, input under tests/data, how the program ends,
// and how it ran when not as "fileconv" on the input's own name): every file
// it leaves in the case and log folders equals the golden copy byte for byte.
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
using test::WriteHostFile;

const fs::path kData = RAVELO_TEST_DATA;

// `command`, when set: "fileconv CASE/other.ext" (the input under another name), or
// "--window NAME; ... CASE\name ..." (typed into that window, converted by its button).
struct GoldenCase {
    std::string folder, input, outcome, command;
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
        for (std::string* field : {&c.folder, &c.input, &c.outcome, &c.command}) std::getline(fields, *field, '\t');
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
    std::string text = p.string();
    if (text.size() < 2 || text[1] != ':') text = "Z:" + text;   // a POSIX host path
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

// Every occurrence of `what`, in any case, replaced by "@CASE@".
std::string MarkCaseFolder(const std::string& bytes, const std::string& what) {
    const std::string lowerBytes = Lower(bytes), lowerWhat = Lower(what);
    std::string result;
    std::size_t from = 0;
    for (std::size_t at; (at = lowerBytes.find(lowerWhat, from)) != std::string::npos; from = at + what.size())
        result += bytes.substr(from, at - from) + "@CASE@";
    return result + bytes.substr(from);
}

// The file name after "CASE/" or "CASE\" in a command; the window after "--window ", or "".
std::string NameIn(const std::string& command) {
    const std::size_t at = command.find_first_of("/\\", command.find("CASE"));
    return command.substr(at + 1, command.find_first_of(" ;,", at) - at - 1);
}
std::string WindowIn(const std::string& command) {
    const std::size_t at = command.find("--window ");
    return at == std::string::npos ? std::string() : command.substr(at + 9, command.find_first_of(" ;", at + 9) - at - 9);
}

// Relative path -> contents of every file under `root`/`sub`.
void Snapshot(const fs::path& root, const std::string& sub, std::map<std::string, std::string>& files) {
    if (!fs::exists(root / sub)) return;
    for (const auto& entry : fs::recursive_directory_iterator(root / sub))
        if (entry.is_regular_file()) files[fs::relative(entry.path(), root).generic_string()] = ReadHostFile(entry.path());
}

class ConverterGolden : public testing::TestWithParam<GoldenCase> {};

TEST_P(ConverterGolden, LeavesTheGoldenFiles) {
    const GoldenCase& c = GetParam();
    test::TempFolder work;
    // The program cuts paths at their first ".": the case folder holds none.
    ASSERT_EQ(work.Path().string().find('.'), std::string::npos) << work.Path();
    const fs::path caseDir = work.Path() / "case", temp = work.Path() / "temp", inst = work.Path() / "inst";
    fs::create_directories(caseDir);
    fs::create_directories(temp);
    WriteHostFile(inst / "programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    WriteHostFile(inst / "ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    fs::create_directories(inst / "dmor");

    const std::string name = c.command.empty() ? Lower(fs::path(c.input).filename().string()) : NameIn(c.command);
    ASSERT_TRUE(fs::exists(kData / c.input)) << c.input;
    WriteHostFile(caseDir / name, ReadHostFile(kData / c.input));

    std::map<std::string, std::string> env = {
        {"TEMP", temp.string()}, {"RAVELO_DRIVE_C", inst.string()}, {"RAVELO_WAIT_SCALE", "0"}, {"RAVELO_UI", "headless"}};
    test::ProcessResult run;
    if (const std::string window = WindowIn(c.command); !window.empty()) {
        env["RAVELO_UI"] = "script";
        run = RunBinary({"--window", window}, env,
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
        EXPECT_NE(run.err.find("Run-time error '" + number.substr(0, number.find(':')) + "'"), std::string::npos)
            << run.err;
    }
    // Crystal files go on from each XCC file they wrote (in name order) to its XXS file, a run each.
    if (c.command.find("then fileconv CASE/X.xcc") != std::string::npos) {
        std::vector<fs::path> written;
        for (const auto& entry : fs::directory_iterator(caseDir))
            if (entry.path().extension() == ".xcc") written.push_back(entry.path());
        std::sort(written.begin(), written.end());
        for (const fs::path& xcc : written) EXPECT_EQ(RunBinary({"fileconv", xcc.string()}, env, {}, caseDir).status, 0) << xcc;
    }

    std::map<std::string, std::string> got, want;
    for (const char* sub : {"case", "temp"}) {
        Snapshot(work.Path(), sub, got);
        Snapshot(kData / "golden" / "converter" / c.folder, sub, want);
    }
    for (auto& [file, bytes] : got) bytes = MarkCaseFolder(bytes, WindowsForm(caseDir));
    for (const auto& [file, bytes] : want) {
        const auto found = got.find(file);
        if (found == got.end()) {
            ADD_FAILURE() << "missing " << file;
        } else if (found->second != bytes) {
            const auto at = std::mismatch(bytes.begin(), bytes.end(), found->second.begin(), found->second.end());
            ADD_FAILURE() << file << " differs from byte " << (at.first - bytes.begin()) << ": got \""
                          << found->second.substr(at.second - found->second.begin(), 80) << "\"";
        }
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
