// Crash safety of every rewrite of a user's file. A test build ends the
// process at its N-th file operation when RAVELO_FAULT_AFTER=N (an open, a
// write, a rename, a delete, a copy). Each job runs once for every N until it
// completes; after every injected end the user's file must be there whole, as
// it was before the job or as the finished job leaves it.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/test_program.hpp"

namespace ravelo::test {
namespace {

namespace fs = std::filesystem;

// The exit status of an injected end (platform/filesystem.cpp).
constexpr int kFaultStatus = 86;
// Far more operations than either job performs: a job still cut short here
// has stopped finishing.
constexpr int kMaxOperations = 2000;

void InstallInto(const fs::path& driveC) {
    WriteHostFile(driveC / "programdata" / "ravelo" / "ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    WriteHostFile(driveC / "ravelo" / "Kalmodyn.Exe", "stand-in\r\n");
    fs::create_directories(driveC / "dmor");
}

// Every regular file under `root` with its bytes, by relative path.
std::map<std::string, std::string> Snapshot(const fs::path& root) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) files[fs::relative(entry.path(), root).string()] = ReadHostFile(entry.path());
    }
    return files;
}

// One job on a fresh drive C that `prepare` fills, with RAVELO_FAULT_AFTER
// set when `faultAfter` is positive. Returns the exit status; `driveC`
// receives the folder to look at.
struct Job {
    std::vector<std::string> args;
    std::map<std::string, std::string> env;
    std::string input;
};

int RunJob(const Job& job, const TempFolder& root, int faultAfter) {
    std::map<std::string, std::string> env = job.env;
    env["RAVELO_DRIVE_C"] = (root.Path() / "drive_c").string();
    env["TEMP"] = (root.Path() / "temp").string();
    env["RAVELO_WAIT_SCALE"] = "0";
    if (faultAfter > 0) env["RAVELO_FAULT_AFTER"] = std::to_string(faultAfter);
    return RunBinary(job.args, env, job.input).status;
}

// Two PDB entries in one file with LF line ends: the cleaning rewrites it,
// the division makes one file per entry and keeps the library under a new
// name, and each entry is cleaned and converted in turn.
std::string PdbLibrary() {
    std::string text;
    for (const char* code : {"1AAA", "2BBB"}) {
        text += std::string("HEADER    TEST ENTRY                              01-JAN-00   ") + code + "\n";
        text += "ATOM      1  N   GLY A   1      11.104   6.134  -6.504  1.00  0.00           N\n";
        text += "ATOM      2  CA  GLY A   1      11.639   6.071  -5.147  1.00  0.00           C\n";
        text += "ATOM      3  C   GLY A   1      10.674   5.433  -4.151  1.00  0.00           C\n";
        text += "ATOM      4  O   GLY A   1       9.587   4.958  -4.501  1.00  0.00           O\n";
        text += "END\n";
    }
    return text;
}

// The cleaned form of a text whose only fault is its LF line ends.
std::string WithCrLf(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

// Runs `job` for N = 1, 2, ... until it completes, calling `check` with the
// drive C folder after every injected end. Returns the number of operations
// the finished job took (0 when the build injects no faults).
template <class Prepare, class Check>
int RunForEveryN(const Job& job, Prepare prepare, Check check) {
    for (int n = 1; n <= kMaxOperations; ++n) {
        TempFolder root;
        fs::create_directories(root.Path() / "temp");
        InstallInto(root.Path() / "drive_c");
        prepare(root.Path() / "drive_c");
        const int status = RunJob(job, root, n);
        if (status != kFaultStatus) {
            EXPECT_EQ(status, 0) << "at N = " << n;
            return n == 1 ? 0 : n - 1;
        }
        SCOPED_TRACE("ended at file operation " + std::to_string(n));
        check(root.Path() / "drive_c");
        if (testing::Test::HasFailure()) return n;
    }
    ADD_FAILURE() << "the job never completed";
    return kMaxOperations;
}

TEST(FaultInjection, ConvertingALibraryNeverLosesTheInput) {
    const std::string before = PdbLibrary();
    const Job job{{"fileconv", "C:\\case\\lib.pdb"}, {{"RAVELO_UI", "headless"}}, ""};

    // The finished job, for the input's final name and content.
    TempFolder reference;
    fs::create_directories(reference.Path() / "temp");
    InstallInto(reference.Path() / "drive_c");
    WriteHostFile(reference.Path() / "drive_c" / "case" / "lib.pdb", before);
    ASSERT_EQ(RunJob(job, reference, 0), 0);
    const auto finished = Snapshot(reference.Path() / "drive_c" / "case");
    // The library is kept under its new name; its entries were converted.
    ASSERT_TRUE(finished.count("lib_pdb.lib")) << "files: " << finished.size();
    ASSERT_TRUE(finished.count("lib_1.xxs") && finished.count("lib_2.xxs"));
    const std::string after = finished.at("lib_pdb.lib");

    const int operations = RunForEveryN(
        job, [&](const fs::path& driveC) { WriteHostFile(driveC / "case" / "lib.pdb", before); },
        [&](const fs::path& driveC) {
            const auto files = Snapshot(driveC / "case");
            const auto input = files.find("lib.pdb");
            const auto kept = files.find("lib_pdb.lib");
            const bool inputWhole =
                input != files.end() && (input->second == before || input->second == WithCrLf(before));
            const bool keptWhole = kept != files.end() && kept->second == after;
            EXPECT_TRUE(inputWhole || keptWhole) << "neither lib.pdb nor lib_pdb.lib holds the library whole";
        });
    if (operations == 0) GTEST_SKIP() << "this build does not honour RAVELO_FAULT_AFTER";
    EXPECT_GT(operations, 10);   // cleaning, division, renames and both conversions
}

TEST(FaultInjection, DatabaseTransferNeverLosesTheLogOrTheSubfile) {
    const fs::path data = fs::path(RAVELO_TEST_DATA) / "updtmol";
    const Job job{{"updtmol", "now"},
                  {{"RAVELO_UI", "script"}},
                  ReadHostFile(data / "script.txt")};
    const std::string logBefore = ReadHostFile(data / "before" / "ravelo" / "molecule.log");
    const std::string logAfter = ReadHostFile(data / "after" / "ravelo" / "molecule.log");
    const std::string subfileBefore = ReadHostFile(data / "before" / "dmor" / "molecule.001");
    const std::string subfileAfter = ReadHostFile(data / "after" / "dmor" / "molecule.001");
    ASSERT_NE(logBefore, logAfter);   // the run marks the log
    // The records are added to the subfile as a whole, then its header is
    // replaced (the record count keeps its length here): between the two the
    // subfile is the old one with every new record after it.
    ASSERT_EQ(subfileBefore.find('\n'), subfileAfter.find('\n'));
    const std::string subfileMiddle = subfileBefore + subfileAfter.substr(subfileBefore.size());

    const int operations = RunForEveryN(
        job,
        [&](const fs::path& driveC) {
            fs::copy(data / "before", driveC, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        },
        [&](const fs::path& driveC) {
            const std::string log = ReadHostFile(driveC / "ravelo" / "molecule.log");
            EXPECT_TRUE(log == logBefore || log == logAfter) << "the molecule log is neither before nor after";
            const std::string subfile = ReadHostFile(driveC / "dmor" / "molecule.001");
            EXPECT_TRUE(subfile == subfileBefore || subfile == subfileMiddle || subfile == subfileAfter)
                << "subfile 001 holds a part of a change";
        });
    if (operations == 0) GTEST_SKIP() << "this build does not honour RAVELO_FAULT_AFTER";
    EXPECT_GT(operations, 3);
}

TEST(FaultInjection, CopyingTheLogToTheIndexAddsAllItsRecordsOrNone) {
    const fs::path data = fs::path(RAVELO_TEST_DATA) / "logtohtm";
    const Job job{{"logtohtm"}, {{"RAVELO_UI", "script"}}, ReadHostFile(data / "script.txt")};
    const std::string log = ReadHostFile(data / "before" / "ravelo" / "molecule.log");
    const std::string indexAfter = Dated(ReadHostFile(data / "after" / "ravelo" / "molecule.htm"));
    const std::string textAfter = ReadHostFile(data / "after" / "ravelo" / "molecule.txt");

    const int operations = RunForEveryN(
        job,
        [&](const fs::path& driveC) {
            fs::copy(data / "before", driveC, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        },
        [&](const fs::path& driveC) {
            const fs::path folder = driveC / "ravelo";
            EXPECT_EQ(ReadHostFile(folder / "molecule.log"), log);
            // The index: none yet, its header alone, or the header and every record.
            if (fs::exists(folder / "molecule.htm")) {
                const std::string index = ReadHostFile(folder / "molecule.htm");
                const bool headerOnly =
                    indexAfter.starts_with(index) && indexAfter.compare(index.size(), 8, "<a href=") == 0;
                EXPECT_TRUE(index == indexAfter || headerOnly) << "the index holds a part of a record";
            }
            if (fs::exists(folder / "molecule.txt")) {
                EXPECT_EQ(ReadHostFile(folder / "molecule.txt"), textAfter);
            }
        });
    if (operations == 0) GTEST_SKIP() << "this build does not honour RAVELO_FAULT_AFTER";
    EXPECT_GT(operations, 3);
}

}  // namespace
}  // namespace ravelo::test
