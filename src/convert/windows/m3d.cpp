// The M3D converter window. It keeps the last atom number of its
// conversions, so a file without atoms ends its output with the number that
// the previous conversion in this window reached, plus 1.
#include "convert/m3d.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

M3D::M3D(Program& p)
    : ConverterWindow(p, "M3D",
                      {.caption = "M3DX.EXE for Kalmodyn",
                       .title = "M3D Database Files => Kalmodyn's Data Files",
                       .prompt = "Enter the Name of the M3D file",
                       .question = "Convert another M3D file?"}) {}

void M3D::ConvertFile(const std::string& name) { readers::M3D::ConvertFile(p_, name, lastAtom_); }

}  // namespace ravelo::windows
