// Jobs of the built program in throw-away folders, and the judgement of what
// an interrupted run leaves there, for the crash-safety tests.
#pragma once

#include <filesystem>
#include <ostream>
#include <map>
#include <string>
#include <vector>

#include "support/test_program.hpp"

namespace ravelo::test {

// Files by their path under a run's root folder ("drive_c/case/x.pdb",
// "temp/Ravelo/RaveloFilConvStat.Txt") with their bytes.
using Files = std::map<std::string, std::string>;

// One start of the program.
struct Step {
    std::vector<std::string> args;
    std::string ui = "headless";   // "script": the script host reads `script`
    std::string script;
};

struct Job {
    std::string name;
    Files before;   // the installation and the user's files
    std::vector<Step> steps;
    // Inputs the job keeps under another name (old -> new): until the
    // rename the old name may already hold the final content.
    std::map<std::string, std::string> renamed;
    // Files the job appends to: the finished file starts with the old one.
    std::vector<std::string> grows;
};
inline void PrintTo(const Job& job, std::ostream* os) { *os << job.name; }

// A drive C and a TEMP folder holding `files`, where the job's steps run.
class JobFolder {
public:
    explicit JobFolder(const Files& files);
    std::filesystem::path Root() const { return root_.Path() / "run"; }
    Files Snapshot() const;

    struct Ended {
        int status = -1;   // 128 + signal when a signal ended it
        std::string out, err;
        ProcessId pid = 0;
    };
    // Starts `step` with `env` added to the run's own settings.
    ProcessId Start(const Step& step, const std::map<std::string, std::string>& env = {}) const;
    Ended Wait(ProcessId pid) const;
    Ended Run(const Step& step, const std::map<std::string, std::string>& env = {}) const {
        return Wait(Start(step, env));
    }

private:
    TempFolder root_;   // "run" holds drive_c and temp, "io" the standard streams
};

// The job's state before its first step and after each, run without faults.
std::vector<Files> ReferenceStates(const Job& job);

// What is wrong with `now`, left by a run cut short between `before` and
// `finished`: files neither as before nor as finished, files lost, strays.
// The small logs in TEMP may miss a last line or end in one cut short; a
// pending file of the killed process `killed` holding its target's old or
// new content is no fault (the next run removes it), nor, on a host without
// unnamed files (Windows), one with any content: there pending files have
// their hidden name from the start. Empty when all is well.
std::vector<std::string> Faults(const Files& now, const Files& before, const Files& finished, const Job& job,
                                ProcessId killed = 0);
std::string Listed(const std::vector<std::string>& faults);
// The names of the files in which `now` and `expected` differ.
std::vector<std::string> Differences(const Files& now, const Files& expected);

// The installation start-up looks for, plus `files` (paths under drive C).
Files Installed(const Files& files = {});

// Converting `input` saved as C:\case\NAME, then each of `more` (files the
// first conversion makes); `existing` lies beside it.
Job Conversion(const std::string& name, const std::string& input, const std::vector<std::string>& more = {},
               const Files& existing = {});
// PDB entries, one per code, with LF line ends, in one file.
std::string PdbLibrary(const std::vector<std::string>& codes, int atomsPerEntry);
// The database transfer of tests/data/updtmol and "logtohtm all" on the log
// of tests/data/logtohtm, with `log` as the molecule log when given.
Job DatabaseTransfer(const std::string& log = {});
Job LogToIndex(const std::string& log = {});
// A molecule log with `records` records, none transferred yet.
std::string MoleculeLog(int records);

}  // namespace ravelo::test
