// Routines shared by every utility.
#include "core/shared.hpp"

#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"

namespace ravelo {
namespace {

constexpr std::string_view kDriveFile = "C:\\programdata\\ravelo\\ravelodrive.dat";
constexpr std::string_view kLineBreak = "\r\n";

bool HasWildcard(std::string_view text) { return Contains(text, "*") || Contains(text, "?"); }

}  // namespace

bool FileExists(Program& p, std::string& path, int* readOnly) {
    if (readOnly) *readOnly = 0;
    if (path.empty()) return false;
    std::int64_t size = 0;
    const bool present = p.fs.Exists(path);
    if (present) size = p.fs.FileLen(path);
    if (size >= 8) {
        if (readOnly) *readOnly = p.fs.ReadOnly(path) ? 1 : 0;
        return true;
    }
    // A file of fewer than 8 bytes is a broken leftover: it goes.
    if (present) p.fs.Kill(path);
    path = "Datafile " + path + " is missing.";
    return false;
}

std::size_t FindLibraryCount(const std::string& text, std::int32_t& count) {
    for (std::size_t i = text.size(); i >= 1; --i) {
        if (text[i - 1] != ' ') continue;
        const std::string last = Mid(text, static_cast<long long>(i));
        if (last.size() < 3 && Val(last) != 0) {
            count = ToInt32(Val(last));
            return i;
        }
    }
    return 0;
}

void DropQuotes(std::string& name) {
    if (Contains(name, "\"")) name = DropFirst(DropLast(name, 1));
}

void ShowCriticalError(Program& p, std::string_view message) {
    p.ui.MsgBox(message, ui::MsgButtons::Ok, std::string(kProgramTitle) + " - Critical Error");
}

void CheckInstallation(Program& p) {
    std::string driveFile(kDriveFile);
    if (!FileExists(p, driveFile)) {
        p.InstallDrive.clear();
        std::string message =
            "The critical file RAVELODRIVE.DAT cannot be found in the root Directory C:\\programdata\\ravelo. ";
        message += kLineBreak;
        message += "If there is a copy in the \\Ravelo directory, then copy this file to C:\\programdata\\ravelo. ";
        message += kLineBreak;
        message += "A copy can be downloaded from the Kalmodyn web site.";
        message += kLineBreak;
        message += kLineBreak;
        message += "I am sorry, but I must terminate.";
        ShowCriticalError(p, message);
        EndProgram(1);
    }
    {
        InputFile in = p.fs.OpenInput(kDriveFile);
        in.InputText();   // the first two fields belong to the installer
        in.InputText();
        p.InstallDrive = Trim(in.InputText());
    }
    p.ModellerExe.clear();
    for (const std::string& name : p.fs.Dir(p.InstallDrive + "\\ravelo\\kal*.exe")) {
        if (Contains(LCase(name), "kalmod")) {
            p.ModellerExe = "Kalmodyn.Exe";
            break;
        }
    }
    if (UCase(p.ModellerExe) != "KALMODYN.EXE") EndProgram(1);
}

bool WaitSeconds(Program& p, double seconds) {
    p.WaitFlag = false;
    if (seconds == 0 || seconds == -100) {
        // Ended by someone else (a button) setting WaitFlag; not a timed pause.
        while (!p.WaitFlag) p.ui.WaitForEvent();
    } else if (seconds < 0) {
        p.WaitFlag = true;
    } else {
        // Below 10 the value is in seconds, from 10 on in milliseconds.
        const double duration = (seconds < 10 ? seconds * 1000 : seconds) * p.waitScale;
        const std::uint32_t start = p.clock.Millis();
        while (!p.WaitFlag) {
            const std::uint32_t elapsed = p.clock.Millis() - start;
            if (duration - elapsed <= 0) break;
            p.DoEvents();
        }
    }
    return p.WaitFlag;
}

void RunAndWait(Program& p, const std::string& commandLine) {
    const long processId = p.shell.Start(commandLine);
    WaitSeconds(p, 2.0);
    if (processId != 0) p.shell.Wait(processId);
}

std::int32_t CountMatchingFiles(Program& p, std::string_view pattern) {
    return static_cast<std::int32_t>(p.fs.Dir(pattern).size());
}

void GetFilePath(std::string_view path, std::string& dir) {
    const std::size_t slash = InStrRev(path, "\\");
    if (path.empty() || slash == 0) return;
    dir = Left(path, static_cast<long long>(slash));
}

void GetTempDir(Program& p) {
    for (std::size_t i = 1;; ++i) {
        const std::string entry = p.env.At(i);
        if (entry.empty()) break;
        if (Left(entry, 5) == "TEMP=") {
            p.TempDir = Trim(p.env.Get("TEMP"));
            break;
        }
    }
}

void DeleteFileByCommand(Program& p) {
    const std::string target = Replace(Trim(p.CommandTail), "\"", "");
    if (target.empty()) return;
    try {
        if (HasWildcard(target)) {
            std::string dir;
            GetFilePath(target, dir);
            for (const std::string& name : p.fs.Dir(target)) p.fs.Kill(dir + name);
        } else {
            p.fs.Kill(target);
        }
    } catch (const RuntimeError&) {
        // Deleting by command ignores every error, as the shell's del would.
    }
}

std::string FilConvLogPath(const Program& p, std::string_view fileName) {
    return p.TempDir + "\\Ravelo\\" + std::string(fileName);
}

void DeleteIfExists(Program& p, std::string path) {
    const std::string target = path;
    if (FileExists(p, path)) p.fs.Kill(target);
}

void ClearFilConvLogs(Program& p) {
    for (std::string_view name :
         {"RaveloFilConvE.Txt", "RaveloFilConvN.Txt", "RaveloFilConvLib.Txt", "RaveloFilConvStat.Txt"})
        DeleteIfExists(p, FilConvLogPath(p, name));
}

namespace {
// Appends one write record to a converter log, making its folder at the
// first write.
void AppendToLog(Program& p, std::string_view fileName, const Field& value) {
    p.fs.MkDirs(p.TempDir + "\\Ravelo");
    // The small logs are appended to in place.
    OutputFile out = p.fs.AppendInPlace(FilConvLogPath(p, fileName));
    out.WriteRecord({value});
    out.Close();
}
}  // namespace

void WriteFilConvN(Program& p, const Field& value) { AppendToLog(p, "RaveloFilConvN.Txt", value); }

void WriteFilConvLib(Program& p, std::int32_t counter) {
    AppendToLog(p, "RaveloFilConvLib.Txt", Field::Integer(counter));
}

void WriteFilConvStat(Program& p) {
    const std::string word = p.CommandWord.empty() ? std::string("FileConv") : p.CommandWord;
    AppendToLog(p, "RaveloFilConvStat.Txt", Field::Text(word + " terminated"));
}

}  // namespace ravelo
