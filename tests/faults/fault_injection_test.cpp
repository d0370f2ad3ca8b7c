// Crash safety of every file the program writes: each step of a job runs
// once for every N until it completes, ended at its N-th file operation
// (RAVELO_FAULT_AFTER=N) or finding the disk full from its N-th write on
// (RAVELO_FAULT_KIND=diskfull); what every cut-short run leaves must pass Faults.
#include <gtest/gtest.h>

#include <cctype>
#include <iostream>

#include "faults/job_runs.hpp"
#include "platform/fault_injection.hpp"

namespace ravelo::test {
namespace {

namespace fs = std::filesystem;

const fs::path kData = RAVELO_TEST_DATA;

constexpr int kMaxOperations = 2000;   // far more than any job here performs
constexpr int kRunTimeErrorStatus = 3;

// A pending file's name without its process id: one fault reads the same at every N.
std::string WithoutProcessId(std::string fault) {
    if (const auto at = fault.find(".ravelo-tmp-"); at != std::string::npos) {
        const auto from = at + 12;
        fault.replace(from, fault.find('-', from) - from, "PID");
    }
    return fault;
}

std::string Corpus(const std::string& name) { return ReadHostFile(kData / "corpus" / name); }

// Every reader family, and each kind of output: new SXS files, one appended
// to, XXS files, an XCC file and the XXS made from it, the division of a
// library, a database subfile, the HTML index.
std::vector<Job> Jobs() {
    Job library = Conversion("lib.pdb", PdbLibrary({"1AAA", "2BBB"}, 4));
    library.renamed["drive_c/case/lib.pdb"] = "drive_c/case/lib_pdb.lib";
    // A Tripos file named .mop, converted beside the SXS file of an earlier
    // structure, which it extends.
    Job appended = Conversion("adp.mop", Corpus("adp.mol2"), {},
                              {{"case/adp.sxs", ReadHostFile(kData / "golden/converter/methane/case/methane.sxs")}});
    appended.grows.push_back("drive_c/case/adp.sxs");
    std::vector<Job> jobs{Conversion("methane.xyz", Corpus("methane.xyz")),
                          Conversion("aspirin.sdf", Corpus("aspirin.sdf")),
                          appended,
                          Conversion("1ps3_zn.pdb", Corpus("1ps3_zn.pdb")),
                          Conversion("1544173.cif", Corpus("1544173.cif"), {"1544173.xcc"}),
                          library,
                          DatabaseTransfer(),
                          LogToIndex()};
    // The readers the corpus holds no example of, from the edge-case table.
    for (const char* name : {"xcx_scale1.xcx", "sch_cell.sch", "m3d_ring.m3d", "alc_count1.alc"})
        jobs.push_back(Conversion(name, ReadHostFile(kData / "edge" / name)));
    return jobs;
}

class FaultInjection : public testing::TestWithParam<Job> {
protected:
    void SetUp() override {
        states_ = ReferenceStates(GetParam());
        ASSERT_NE(states_.back(), states_.front()) << "the job changed nothing";
        for (const std::string& name : GetParam().grows) {
            ASSERT_TRUE(states_.front().count(name));
            const std::string& old = states_.front().at(name);
            EXPECT_TRUE(states_.back().at(name).starts_with(old) && states_.back().at(name).size() > old.size())
                << name << " is not extended";
        }
    }

    // Runs every step with `kind` for N = 1, 2, ... until it completes (then
    // leaving what the reference run left); `cutShort` judges each run that
    // met the fault. Returns the last N that met it in each step.
    template <class Judge>
    std::vector<int> ForEveryN(const std::string& kind, Judge cutShort) {
        const Job& job = GetParam();
        std::vector<int> reached;
        for (std::size_t step = 0; step < job.steps.size(); ++step) {
            const Files& before = states_[step];
            const Files& finished = states_[step + 1];
            // Each fault once, with the instants that showed it.
            std::map<std::string, std::string> seen;
            int n = 1;
            for (; n <= kMaxOperations && !HasFatalFailure(); ++n) {
                JobFolder folder(before);
                std::map<std::string, std::string> env{{"RAVELO_FAULT_AFTER", std::to_string(n)}};
                if (!kind.empty()) env["RAVELO_FAULT_KIND"] = kind;
                const JobFolder::Ended ended = folder.Run(job.steps[step], env);
                SCOPED_TRACE("step " + std::to_string(step + 1) + ", N = " + std::to_string(n));
                if (ended.status == 0) {
                    EXPECT_TRUE(Differences(folder.Snapshot(), finished).empty())
                        << "the completed step left other files" << Listed(Differences(folder.Snapshot(), finished));
                    break;
                }
                cutShort(ended);
                for (const std::string& fault : Faults(folder.Snapshot(), before, finished, job, ended.pid))
                    seen[WithoutProcessId(fault)] += " " + std::to_string(n);
            }
            if (HasFatalFailure()) return reached;
            for (const auto& [fault, instants] : seen)
                ADD_FAILURE() << job.name << " step " << step + 1 << ", N =" << instants << ":\n  " << fault;
            EXPECT_LE(n, kMaxOperations) << "the step never completed";
            reached.push_back(n - 1);
        }
        std::string figures;
        for (const int n : reached) figures += " " + std::to_string(n);
        std::cout << "[ faults   ] " << job.name << " " << (kind.empty() ? "kill" : kind) << ": N = 1 to" << figures
                  << " per step\n";
        return reached;
    }

    std::vector<Files> states_;
};

TEST_P(FaultInjection, EndAtAnyFileOperationLeavesEachFileOldOrNew) {
    const auto reached = ForEveryN("", [](const JobFolder::Ended& ended) {
        ASSERT_EQ(ended.status, platform::faults::kFaultExitStatus) << ended.err;
    });
    if (!reached.empty() && reached.front() == 0) GTEST_SKIP() << "this build does not honour RAVELO_FAULT_AFTER";
}

TEST_P(FaultInjection, FullDiskIsErrorSixtyOneAndLeavesEachFileOldOrNew) {
    const bool script = GetParam().steps.front().ui == "script";
    const auto reached = ForEveryN("diskfull", [&](const JobFolder::Ended& ended) {
        ASSERT_EQ(ended.status, kRunTimeErrorStatus) << ended.err;
        // The headless host writes the message to standard error, the
        // script host shows it in a message box.
        const std::string& shown = script ? ended.out : ended.err;
        const std::string message = script ? "Run-time error '61':\\n\\nDisk full" : "Run-time error '61':\n\nDisk full";
        const auto at = shown.find(message);
        ASSERT_NE(at, std::string::npos) << shown;
        if (script) {
            ASSERT_NE(shown.rfind("MSGBOX ", at), std::string::npos) << shown;
        }
    });
    if (!reached.empty() && reached.front() == 0) GTEST_SKIP() << "this build does not honour RAVELO_FAULT_KIND";
}

INSTANTIATE_TEST_SUITE_P(Jobs, FaultInjection, testing::ValuesIn(Jobs()), [](const testing::TestParamInfo<Job>& param) {
    std::string name = param.param.name;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
});

}  // namespace
}  // namespace ravelo::test
