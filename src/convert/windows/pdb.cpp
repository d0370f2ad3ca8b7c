// The PDB converter window, which divides a file of several entries first.
#include "convert/filcvrt.hpp"
#include "convert/pdb.hpp"
#include "convert/windows/formats.hpp"
#include "runtime/text.hpp"
#include "startup/shared.hpp"

namespace ravelo::windows {

PDB::PDB(Program& p)
    : ConverterWindow(p, "PDB",
                      {.caption = "PDBX for Kalmodyn",
                       // "Kalmodyn3's" is the window's designed title.
                       .title = "Brookhaven Protein Database Files => Kalmodyn3's Data Files",
                       .prompt = "Enter the Name of the PDB file",
                       .question = "Convert another PDB file?"}) {}

void PDB::ConvertFile(const std::string& name) {
    readers::PDB::ConvertFile(p_, name, [this](const std::string& text) { ShowProgress(text); });
}

// Every line that begins with "HEADER" starts an entry; each entry is
// converted from its own file, and the library keeps a ".lib" name.
void PDB::InitConverter() {
    SetUpControls();
    if (!TakeFileName()) return;
    FilCvrt::PrepareInputFile(p_, fileName);
    std::int32_t count = 0;
    FilCvrt::SplitLibraryFile(p_, count, fileName, "HEADER", ".pdb",
                              [this](const std::string& text) { ShowProgress(text); });
    if (count >= 2) {
        const std::string library = fileName;
        (*this)["Text1"].SetText("Separating Library into Files.");
        for (std::int32_t i = 1; i <= count; ++i) {
            ConvertFile(DropLast(library, 4) + "_" + std::to_string(i) + ".pdb");
            WaitSeconds(p_, 3.0);
        }
        FilCvrt::MoveFile(p_, library, Replace(library, ".", "_") + ".lib");
    } else {
        ConvertFile(fileName);
    }
    AskConvertAnother();
    FinishConversion();
}

}  // namespace ravelo::windows
