// Replays a recorded run of the molecule log utilities through the built program:
// a run folder under tests/data holds before/ (drive C), command.txt, script.txt,
// stdout.txt and after/ (all of ravelo\ and dmor\), with @TODAY@ and @VERSIONLINE@.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "core/program.hpp"
#include "support/test_program.hpp"

namespace ravelo::test {

// Relative path -> bytes of every file under `root`.
inline std::map<std::string, std::string> FilesUnder(const std::filesystem::path& root) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.is_regular_file())
            files[relative(entry.path(), root).generic_string()] = ReadHostFile(entry.path());
    return files;
}

// The built program with the script host, no pauses, drive C at work/c, TEMP and folder at work.
inline ProcessResult RunScripted(const std::filesystem::path& work, const std::vector<std::string>& args,
                                 const std::string& script) {
    return RunBinary(args,
                     {{"RAVELO_DRIVE_C", (work / "c").string()},
                      {"RAVELO_UI", "script"},
                      {"RAVELO_WAIT_SCALE", "0"},
                      {"TEMP", work.string()}},
                     script, work);
}

inline void ExpectGoldenRun(const std::string& runName) {
    const std::filesystem::path run = std::filesystem::path(RAVELO_TEST_DATA) / runName;
    TempFolder work;
    const auto driveC = work.Path() / "c";
    WriteHostFile(driveC / "programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    WriteHostFile(driveC / "ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    for (const auto& [file, bytes] : FilesUnder(run / "before")) WriteHostFile(driveC / file, bytes);

    auto expected = [&](std::string text) {
        for (std::size_t at; (at = text.find("@VERSIONLINE@")) != std::string::npos;) text.replace(at, 13, VersionLine());
        return Dated(std::move(text));
    };

    // The words after "raveloutils" in "RAVELO_UI=script ... raveloutils updtmol now   (script on ...)".
    const std::string command = ReadHostFile(run / "command.txt");
    std::istringstream words(command.substr(command.find("raveloutils ") + 12));
    std::vector<std::string> args;
    for (std::string word; words >> word && word[0] != '(';) args.push_back(word);

    const ProcessResult result = RunScripted(work.Path(), args, ReadHostFile(run / "script.txt"));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, expected(ReadHostFile(run / "stdout.txt")));

    std::map<std::string, std::string> want = FilesUnder(run / "after"), got;
    for (auto& [file, bytes] : want) bytes = expected(bytes);
    for (const auto& [file, bytes] : FilesUnder(driveC))
        if (file.rfind("ravelo/", 0) == 0 || file.rfind("dmor/", 0) == 0) got[file] = bytes;
    got.erase("ravelo/Kalmodyn.Exe");  // the installation's own file
    EXPECT_EQ(got, want);              // the same files, byte for byte, and no others
}

}  // namespace ravelo::test
