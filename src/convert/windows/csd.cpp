// The CSD converter window for crystal structures, which divides a CIF
// library of several data blocks first.
#include "convert/csd.hpp"

#include "convert/filcvrt.hpp"
#include "convert/windows/formats.hpp"
#include "runtime/text.hpp"
#include "startup/shared.hpp"

namespace ravelo::windows {

CSD::CSD(Program& p)
    : ConverterWindow(p, "CSD",
                      {.caption = "CSDX for Kalmodyn",
                       .title = "Cambridge Crystallographic Database Files => Kalmodyn's Data Files",
                       .prompt = "Enter the Name of the CSD file",
                       .question = "Convert another CSD file?"}) {}

void CSD::ConvertFile(const std::string& name) {
    readers::CSD::ConvertFile(p_, name, [this](const std::string& text) { ShowProgress(text); });
}

// Every data block holds one "cell_length_a" item; a file of two or more
// is divided into lib_1.cif, lib_2.cif, ..., each converted by itself, and
// the library keeps a ".lib" name.
void CSD::InitConverter() {
    SetUpControls();
    if (!TakeFileName()) return;
    FilCvrt::PrepareInputFile(p_, fileName);
    const std::string extension = TextFrom(fileName, ".");
    std::int32_t count = 0;
    FilCvrt::SplitLibraryFile(p_, count, fileName, "cell_length_a", extension,
                              [this](const std::string& text) { ShowProgress(text); });
    if (count >= 2) {
        const std::string library = fileName;
        (*this)["Text1"].SetText("Separating Library into Files.");
        for (std::int32_t i = 1; i <= count; ++i) {
            ConvertFile(DropLast(library, 4) + "_" + std::to_string(i) + extension);
            WaitSeconds(p_, 3.0);
        }
        // Every "." of the full name, folders included, becomes "_".
        FilCvrt::MoveFile(p_, library, Replace(library, ".", "_") + ".lib");
    } else {
        ConvertFile(fileName);
    }
    AskConvertAnother();
    FinishConversion();
}

}  // namespace ravelo::windows
