#include "faults/job_runs.hpp"

#include <cerrno>
#include <cstdio>
#include <stdexcept>

namespace ravelo::test {
namespace {

namespace fs = std::filesystem;

const fs::path kData = RAVELO_TEST_DATA;

// Every file under `folder` as it is now, with paths under `root`.
void Collect(const fs::path& root, const fs::path& folder, Files& files) {
    if (!fs::exists(folder)) return;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files[fs::relative(entry.path(), root).generic_string()] = ReadHostFile(entry.path());
}

// A data folder's files as paths under drive C.
Files DataFiles(const fs::path& folder) {
    Files files;
    Collect(folder, folder, files);
    Files under;
    for (auto& [name, bytes] : files) under["drive_c/" + name] = std::move(bytes);
    return under;
}

std::string Script(const std::string& job) { return ReadHostFile(kData / job / "script.txt"); }
// The file a pending replacement of process `pid` is for ("d/.x.ravelo-tmp-PID-N"
// is for "d/x"); empty for any other name.
std::string PendingTarget(const std::string& name, ProcessId pid) {
    const std::string mark = ".ravelo-tmp-" + std::to_string(pid) + "-";
    const auto slash = name.rfind('/') + 1;
    const auto at = name.rfind(mark);
    if (pid <= 0 || at == std::string::npos || name[slash] != '.' ||
        name.find_first_not_of("0123456789", at + mark.size()) != std::string::npos)
        return {};
    return name.substr(0, slash) + name.substr(slash + 1, at - slash - 1);
}

}  // namespace

JobFolder::JobFolder(const Files& files) {
    fs::create_directories(Root() / "drive_c" / "dmor");
    fs::create_directories(Root() / "temp");
    fs::create_directories(root_.Path() / "io");
    for (const auto& [name, bytes] : files) WriteHostFile(Root() / name, bytes);
}

Files JobFolder::Snapshot() const {
    Files files;
    Collect(Root(), Root(), files);
    return files;
}

ProcessId JobFolder::Start(const Step& step, const std::map<std::string, std::string>& env) const {
    std::map<std::string, std::string> all{{"RAVELO_DRIVE_C", (Root() / "drive_c").string()},
                                           {"TEMP", (Root() / "temp").string()},
                                           {"RAVELO_WAIT_SCALE", "0"},
                                           {"RAVELO_UI", step.ui}};
    for (const auto& [name, value] : env) all[name] = value;
    WriteHostFile(root_.Path() / "io" / "in", step.script);
    return StartBinary(step.args, all, root_.Path() / "io");
}

JobFolder::Ended JobFolder::Wait(ProcessId pid) const {
    const ProcessResult result = WaitBinary(pid, root_.Path() / "io");
    return {result.status, result.out, result.err, pid};
}

std::vector<Files> ReferenceStates(const Job& job) {
    JobFolder folder(job.before);
    std::vector<Files> states{folder.Snapshot()};
    for (const Step& step : job.steps) {
        const JobFolder::Ended ended = folder.Run(step);
        if (ended.status != 0) throw std::runtime_error(job.name + ": the reference run ended with " + ended.err);
        states.push_back(folder.Snapshot());
    }
    return states;
}

std::vector<std::string> Faults(const Files& now, const Files& before, const Files& finished, const Job& job,
                                ProcessId killed) {
    const auto holds = [](const Files& files, const std::string& name, const std::string& bytes) {
        const auto it = files.find(name);
        return it != files.end() && it->second == bytes;
    };
    std::vector<std::string> faults;
    for (const auto& [name, bytes] : now) {
        if (holds(before, name, bytes) || holds(finished, name, bytes)) continue;
        // The small logs in TEMP are appended to in place: a line may be cut.
        const auto cut = [&](const Files& files) {
            const auto it = files.find(name);
            return it != files.end() && it->second.starts_with(bytes);
        };
        if (name.starts_with("temp/") && (cut(before) || cut(finished))) continue;
        const std::string target = PendingTarget(name, killed);
        const auto targetMoved = job.renamed.find(target);
#ifdef _WIN32
        if (!target.empty()) continue;
#endif
        if (!target.empty() && (holds(before, target, bytes) || holds(finished, target, bytes) ||
                                (targetMoved != job.renamed.end() && holds(finished, targetMoved->second, bytes))))
            continue;
        const auto moved = job.renamed.find(name);
        if (moved != job.renamed.end() && holds(finished, moved->second, bytes)) continue;
        const bool known = before.count(name) || finished.count(name);
        faults.push_back(name + (known ? " is neither as before nor as finished (" : " is a stray file (") +
                         std::to_string(bytes.size()) + " bytes)");
    }
    for (const auto& [name, bytes] : before) {
        if (now.count(name) || name.starts_with("temp/")) continue;
        const auto moved = job.renamed.find(name);
        const bool lost = moved != job.renamed.end() ? !now.count(moved->second) : finished.count(name) != 0;
        if (lost) faults.push_back(name + " is lost");
    }
    return faults;
}

std::vector<std::string> Differences(const Files& now, const Files& expected) {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : now) {
        const auto it = expected.find(name);
        if (it == expected.end()) {
            names.push_back(name + " is not expected");
        } else if (it->second != bytes) {
            names.push_back(name + " differs (" + std::to_string(bytes.size()) + " bytes, expected " +
                            std::to_string(it->second.size()) + ")");
        }
    }
    for (const auto& [name, bytes] : expected)
        if (!now.count(name)) names.push_back(name + " is missing");
    return names;
}

std::string Listed(const std::vector<std::string>& faults) {
    std::string text;
    for (const std::string& fault : faults) text += "\n  " + fault;
    return text;
}

Files Installed(const Files& files) {
    Files all{{"drive_c/programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n"},
              {"drive_c/ravelo/Kalmodyn.Exe", "stand-in\r\n"}};
    for (const auto& [name, bytes] : files) all["drive_c/" + name] = bytes;
    return all;
}

Job Conversion(const std::string& name, const std::string& input, const std::vector<std::string>& more,
               const Files& existing) {
    Files files = existing;
    files["case/" + name] = input;
    Job job{name, Installed(files), {}, {}, {}};
    for (const std::string& file : more) job.name += "+" + file;
    job.steps.push_back({{"fileconv", "C:\\case\\" + name}, "headless", ""});
    for (const std::string& file : more) job.steps.push_back({{"fileconv", "C:\\case\\" + file}, "headless", ""});
    return job;
}

std::string PdbLibrary(const std::vector<std::string>& codes, int atomsPerEntry) {
    static const char* const kNames[] = {" N  ", " CA ", " C  ", " O  "};
    std::string text;
    char line[96];
    for (const std::string& code : codes) {
        text += "HEADER    TEST ENTRY                              01-JAN-00   " + code + "\n";
        for (int i = 0; i < atomsPerEntry; ++i) {
            std::snprintf(line, sizeof line, "ATOM  %5d %s GLY A%4d    %8.3f%8.3f%8.3f  1.00  0.00           %c\n",
                          i % 100000 + 1, kNames[i % 4], i / 4 % 10000 + 1, (i % 97) * 0.5, (i % 89) * 0.25,
                          (i % 83) * -0.75, kNames[i % 4][1]);
            text += line;
        }
        text += "END\n";
    }
    return text;
}

namespace {
// A job of the script host on the files of tests/data/WORD/before.
Job ScriptJob(const std::string& word, const std::string& tail, const std::string& log) {
    Job job{word, DataFiles(kData / word / "before"), {{{word, tail}, "script", Script(word)}}, {}, {}};
    job.before.merge(Installed());
    if (!log.empty()) job.before["drive_c/ravelo/molecule.log"] = log;
    return job;
}
}  // namespace

Job DatabaseTransfer(const std::string& log) { return ScriptJob("updtmol", "now", log); }
Job LogToIndex(const std::string& log) { return ScriptJob("logtohtm", "all", log); }

std::string MoleculeLog(int records) {
    std::string log = "\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n\"Molecular Energy\"\r\nDate*\r\n";
    for (int i = 1; i <= records; ++i) {
        const std::string n = std::to_string(i);
        log += "\"C:\\ravelo\\mols\\model" + n + ".sxs\"\r\n\"Model " + n + ", a ring with a side chain\"\r\n\"C" + n +
               "H6\"\r\n\"-" + n + ".25\"\r\n11-20-2026\r\n";
    }
    return log;
}

}  // namespace ravelo::test
