// raveloutils: the companion utility program of the Kalmodyn modeller.
// Started with one command word, it opens the one utility the word names.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "install_demo.hpp"
#include "platform/host.hpp"
#include "platform/paths.hpp"
#include "core/program.hpp"
#include "shell/features.hpp"
#include "shell/run.hpp"
#ifdef RAVELO_WITH_QT
#include "ui/qt/qt_host.hpp"
#endif

namespace {

constexpr const char* kUsage =
    "usage: raveloutils [WORD [ARGUMENTS...]]\n"
    "       raveloutils FILE [COUNT]\n"
    "       raveloutils --window NAME\n"
    "\n"
    "Started without a word, the program shows its main menu. Command words:\n"
    "  fileconv [FILE|PATTERN [COUNT]]  convert structure files to the modeller's SXS files\n"
    "                                   (no file: the file converter window)\n"
    "  calculx                          the scientific calculator\n"
    "  logtohtm [all]                   copy the molecule log into the HTML index and back\n"
    "  updtmol ARGUMENT                 transfer new molecule log records into the database\n"
    "  readurl ADDRESS TARGET           download one file (the request is taken in lower case)\n"
    "  ravelodelfile FILE|PATTERN       delete a file, or every file a pattern names\n"
    "A bare FILE whose name ends in a structure type (xyz, mol, sdf, pdb, ent, ...) is converted.\n"
    "The modeller's words ravelobatch, inventory and slideshow are accepted and do nothing.\n"
    "Quote Windows-form paths in a shell: 'C:\\data\\x.pdb'.\n"
    "\n"
    "Options:\n"
    "  --window NAME   show one window of the program by its name (e.g. RaveloUtils)\n"
    "  --install-demo [FOLDER]\n"
    "                  copy the demo installation into FOLDER (default: the folder of drive C),\n"
    "                  which must be empty or missing\n"
    "  --help          show this text\n"
    "  --version       show the version line\n"
    "\n"
    "Environment:\n"
    "  RAVELO_DRIVE_C     host folder of drive C: (default ~/.local/share/ravelo/drive_c);\n"
    "                     RAVELO_DRIVE_<L> maps any drive letter; Z: is the host root\n"
    "  TEMP               temporary folder (converter logs in TEMP/Ravelo); default TMPDIR, /tmp\n"
    "  RAVELO_UI          qt, headless or script (default: qt when this build has it and a\n"
    "                     display is available, else headless)\n"
    "  RAVELO_SCRIPT      script file for RAVELO_UI=script (default standard input)\n"
    "  RAVELO_WAIT_SCALE  multiplies every timed pause (0 skips them)\n"
    "\n"
    "Host paths may be given as they are: one inside a drive's folder becomes that drive's path\n"
    "($RAVELO_DRIVE_C/data/x.pdb is C:\\data\\x.pdb), any other one is on drive Z:.\n"
    "\n"
    "Exit status: 0 normal end, 1 installation not found, 2 usage error (or --install-demo\n"
    "refused), 3 run-time error, 4 a window waited for a person and no display could show it\n"
    "(headless host: start on a desktop, or use RAVELO_UI=script).\n";

}  // namespace

int main(int argc, char** argv) {
    ravelo::platform::PrepareStandardStreams();
    std::string window;
    int first = 1;
    if (argc > 1) {
        if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
            std::fputs(kUsage, stdout);
            return ravelo::kExitNormal;
        }
        if (std::strcmp(argv[1], "--version") == 0) {
            std::printf("%s\n", ravelo::VersionLine().c_str());
            return ravelo::kExitNormal;
        }
        if (std::strcmp(argv[1], "--install-demo") == 0) {
            if (argc > 3) {
                std::fputs("raveloutils: --install-demo takes at most one folder\n", stderr);
                return ravelo::kExitUsage;
            }
            return ravelo::app::InstallDemo(argc == 3 ? argv[2] : "");
        }
        if (std::strcmp(argv[1], "--window") == 0) {
            if (argc != 3) {
                std::fputs("raveloutils: --window takes one window name\n", stderr);
                return ravelo::kExitUsage;
            }
            window = argv[2];
            first = argc;
        } else if (std::strncmp(argv[1], "--", 2) == 0) {
            std::fprintf(stderr, "raveloutils: unknown option %s (try --help)\n", argv[1]);
            return ravelo::kExitUsage;
        }
    }
    const std::string commandLine =
        ravelo::platform::ProgramCommandLine(ravelo::platform::DriveMap::FromEnvironment(), argc, argv, first);

    ravelo::DesktopHostFactory desktop;
#ifdef RAVELO_WITH_QT
    desktop = [] { return std::make_unique<ravelo::ui::QtHost>(); };
#endif
    ravelo::Program program(ravelo::ServicesFromEnvironment(desktop));
    ravelo::RegisterFeatures(program);
    return ravelo::RunProgram(program, commandLine, window);
}
