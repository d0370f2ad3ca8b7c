// What the fuzz targets share: a private drive C with the installation that
// start-up looks for (and the atom-type table of the demo installation), a
// TEMP folder, and a headless program of this build.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "shell/features.hpp"
#include "shell/run.hpp"

namespace ravelo::fuzz {

// The folder of this fuzzing process, made once: drive C (installed) and
// TEMP under it, and the environment that points the program at them.
inline const std::filesystem::path& Root() {
    static const std::filesystem::path root = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "ravelo-fuzz-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        const std::filesystem::path made = pattern;
        std::filesystem::create_directories(made / "drive_c" / "programdata" / "ravelo");
        std::filesystem::create_directories(made / "drive_c" / "ravelo");
        std::filesystem::create_directories(made / "drive_c" / "dmor");
        std::filesystem::create_directories(made / "temp");
        std::ofstream(made / "drive_c" / "programdata" / "ravelo" / "ravelodrive.dat", std::ios::binary)
            << "\"Kalmodyn\",\"2026\",\"C:\"\r\n";
        std::ofstream(made / "drive_c" / "ravelo" / "Kalmodyn.Exe", std::ios::binary) << "stand-in\r\n";
        // Force-field inputs are read through the atom-type table.
        std::filesystem::copy_file(std::filesystem::path(RAVELO_DEMO_RAVELO) / "mmatoms.dat",
                                   made / "drive_c" / "ravelo" / "mmatoms.dat");
        setenv("RAVELO_DRIVE_C", (made / "drive_c").c_str(), 1);
        setenv("TEMP", (made / "temp").c_str(), 1);
        setenv("RAVELO_UI", "headless", 1);
        setenv("RAVELO_WAIT_SCALE", "0", 1);
        return made;
    }();
    return root;
}

inline std::unique_ptr<Program> MakeProgram() {
    Root();
    auto program = std::make_unique<Program>(ServicesFromEnvironment());
    RegisterFeatures(*program);
    return program;
}

}  // namespace ravelo::fuzz
