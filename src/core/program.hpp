// The program-wide values and services. One Program object holds what every
// routine shares: the values set at start-up, the host services (files,
// clock, shell, windows), and the windows themselves. Routines take it first.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/filesystem.hpp"
#include "platform/host.hpp"

// The window host and the downloader are used through references here; the
// routines that show windows or download include their headers.
namespace ravelo::ui {
class Form;
class UiHost;
}  // namespace ravelo::ui
namespace ravelo::platform {
class Downloader;
}  // namespace ravelo::platform

namespace ravelo {

class Program;

// A utility that a command word (or a main-menu label) opens.
using Utility = std::function<void(Program&)>;
// Makes a window of the program by its design name.
using WindowFactory = std::function<std::unique_ptr<ui::Form>(Program&)>;

struct Services {
    std::unique_ptr<platform::FileSystem> files;
    std::unique_ptr<platform::Clock> clock;
    std::unique_ptr<ui::UiHost> ui;
    std::unique_ptr<platform::Shell> shell;
    std::unique_ptr<platform::Downloader> downloader;
    platform::Environment environment;
    double waitScale = 1;   // multiplies every timed pause; 0 skips them
};

class Program {
public:
    explicit Program(Services services);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    platform::FileSystem& fs;
    platform::Clock& clock;
    ui::UiHost& ui;
    platform::Shell& shell;
    platform::Downloader& downloader;
    const platform::Environment& env;
    const double waitScale;

    // Values set at start-up.
    std::string TempDir;
    std::string InstallDrive;
    std::string ModellerExe;
    std::string CommandWord;
    std::string CommandTail;
    std::int32_t LibraryCount = 0;
    // False while a wait without a time limit runs; a button (or a key) that
    // ends it sets it true.
    bool WaitFlag = true;

    // What the converter knows of the file it converts. Kept from one
    // conversion to the next: a typed name without a "." takes the
    // extension the last reader recorded.
    struct Conversion {
        std::string file;        // full path of the file being converted
        std::string folder;      // its folder, with the trailing "\"
        std::string extension;   // its extension (".xyz"; readers record their own)
    };
    Conversion conversion;

    // Utilities by command word ("calculx", "fileconv", ...). A word without
    // an entry is not offered by this build.
    std::map<std::string, Utility> utilities;
    // Windows by design name; created on first use, kept until the end.
    void RegisterWindow(std::string name, WindowFactory factory);
    bool HasWindow(std::string_view name) const;
    // The window of that name (created on first use); a name without a
    // factory raises 9.
    ui::Form& Window(std::string_view name);
    template <class T>
    T& Window(std::string_view name) {
        return static_cast<T&>(Window(name));
    }
    // The window if it has been created, else nullptr.
    ui::Form* ExistingWindow(std::string_view name) const;

    // Lets pending events be processed once (one turn of a waiting loop).
    void DoEvents();

private:
    std::unique_ptr<platform::FileSystem> files_;
    std::unique_ptr<platform::Clock> clock_;
    std::unique_ptr<ui::UiHost> ui_;
    std::unique_ptr<platform::Shell> shell_;
    std::unique_ptr<platform::Downloader> downloader_;
    platform::Environment environment_;
    std::map<std::string, WindowFactory> factories_;        // by lower-case name
    std::map<std::string, std::unique_ptr<ui::Form>> windows_;
};

// The element symbols GetElementSymbol looks two letters up in.
inline constexpr std::string_view kElementSymbols =
    "HeNeArKrXeRnClBrAtSeTePoAsSbBiSiGeSnPbAlGaInTlZnCdHgCuAgAuNiPdPtCoRhIrFeRuOsMnTcReCrMoNbTaTiZrHfScLaAc"
    "BeMgCaSrBaRaLiNaRbCsFrCeThPrPaNdPmSmEuGdTbDyHoErTmYbLu";

// The file converter's prompts.
inline constexpr std::string_view kSelectFilePrompt = "Select a File Above to Process";
inline constexpr std::string_view kIdentifyFilePrompt =
    "Identify the target file using the directory explorer below, and then click the go button.";
// Six decimals of pi, not more: every angle the program converts uses it.
inline constexpr double kDegToRad = 3.141592 / 180;

// The program's title and its version line.
inline constexpr std::string_view kProgramTitle = "RaveloUtils";
std::string VersionLine();

}  // namespace ravelo
