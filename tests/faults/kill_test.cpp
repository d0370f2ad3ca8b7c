// Real kills: a long job of the built program gets SIGKILL at instants spread
// over its run, and what each kill leaves must pass Faults. Then a normal run
// in the last killed folder (the job's files put back) must leave exactly
// what an undisturbed run leaves.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <thread>

#include "faults/job_runs.hpp"

namespace ravelo::test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kKills = 40;

std::vector<Job> Jobs() {
    // PDB text with LF line ends, which the cleaning rewrites first.
    Job big = Conversion("big.pdb", PdbLibrary({"9BIG"}, 60000));
    big.name = "big_pdb";
    Job library = Conversion("lib.pdb", PdbLibrary({"1AAA", "2BBB", "3CCC", "4DDD", "5EEE", "6FFF"}, 5000));
    library.name = "pdb_library";
    library.renamed["drive_c/case/lib.pdb"] = "drive_c/case/lib_pdb.lib";
    // All records fit in the first subfile, so one transfer takes them all.
    return {big, library, DatabaseTransfer(MoleculeLog(90)), LogToIndex(MoleculeLog(12000))};
}

// Puts the job's own files back as before, and adds a pending file of the
// ended process `gone` in each folder the job replaces files in.
void StartAgain(const JobFolder& folder, const Files& before, const Files& finished, ProcessId gone) {
    Files own = before;
    own.insert(finished.begin(), finished.end());
    for (const auto& [name, bytes] : own) {
        const auto old = before.find(name), made = finished.find(name);
        if (old != before.end()) {
            WriteHostFile(folder.Root() / name, old->second);
        } else {
            fs::remove(folder.Root() / name);
        }
        // The small logs in TEMP are appended to in place, never replaced.
        const bool replaced = !name.starts_with("temp/");
        if (replaced && (old == before.end() || made == finished.end() || old->second != made->second))
            WriteHostFile(folder.Root() / fs::path(name).parent_path() / (".x.ravelo-tmp-" + std::to_string(gone) + "-0"),
                          "left by a killed run");
    }
}

class Kill : public testing::TestWithParam<Job> {};

TEST_P(Kill, AtAnyInstantLeavesEachFileOldOrNew) {
    const Job& job = GetParam();
    const Step& step = job.steps.front();
    const std::vector<Files> states = ReferenceStates(job);
    const Files& before = states.front();
    const Files& finished = states.back();

    // How long the job takes undisturbed: the middle of three runs.
    std::vector<Clock::duration> runs;
    for (int i = 0; i < 3; ++i) {
        JobFolder folder(before);
        const Clock::time_point start = Clock::now();
        ASSERT_EQ(folder.Run(step).status, 0);
        runs.push_back(Clock::now() - start);
    }
    std::sort(runs.begin(), runs.end());
    const Clock::duration length = runs[1];

    int landed[3] = {0, 0, 0};   // before the job changed anything, during it, after it
    std::unique_ptr<JobFolder> last;
    ProcessId lastPid = 0;
    for (int i = 1; i <= kKills; ++i) {
        auto folder = std::make_unique<JobFolder>(before);
        const Clock::time_point start = Clock::now();
        const ProcessId pid = folder->Start(step);
        std::this_thread::sleep_until(start + length * i / (kKills + 1));
        KillBinary(pid);
        folder->Wait(pid);
        const Files now = folder->Snapshot();
        ++landed[now == before ? 0 : now == finished ? 2 : 1];
        const std::vector<std::string> faults = Faults(now, before, finished, job, pid);
        EXPECT_TRUE(faults.empty()) << "kill " << i << " of " << kKills << Listed(faults);
        last = std::move(folder);
        lastPid = pid;
    }

    StartAgain(*last, before, finished, lastPid);
    EXPECT_EQ(last->Run(step).status, 0);
    const std::vector<std::string> left = Differences(last->Snapshot(), finished);
    EXPECT_TRUE(left.empty()) << "the run after the kills left other files" << Listed(left);

    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(length).count();
    std::cout << "[ kills    ] " << job.name << ": " << kKills << " kills over " << ms << " ms, " << landed[0]
              << " before, " << landed[1] << " during, " << landed[2] << " after the job's changes\n";
}

INSTANTIATE_TEST_SUITE_P(Jobs, Kill, testing::ValuesIn(Jobs()),
                         [](const testing::TestParamInfo<Job>& param) { return param.param.name; });

}  // namespace
}  // namespace ravelo::test
