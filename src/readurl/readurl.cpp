// The internet file reader.
#include "readurl/readurl.hpp"

#include <memory>

#include "runtime/error.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"
#include "platform/download.hpp"

namespace ravelo {

RaveloReadURLForm::RaveloReadURLForm(Program& p) : Form(p.ui, std::string(kName), "Kalmodyn URL Tool") {
    Add("Label1", ui::ControlKind::Label, "Read Kalmodyn File From the Internet");
}

namespace RaveloReadURL {

void ReadURL(Program& p) {
    ui::Form& form = p.Window(RaveloReadURLForm::kName);
    p.ui.Load(form);
    // The whole request is taken in lower case, the address and the target
    // path alike: the modeller's own addresses are written so.
    const std::string request = LCase(Trim(p.CommandTail));
    if (request.empty()) {
        p.ui.Unload(form);
        EndProgram(0);
    }
    // Without a blank both parts are empty and the download fails quietly.
    const std::string address = Trim(TextUpToIncluding(request, " "));
    const std::string target = Trim(TextFrom(request, " "));
    p.downloader.DownloadToFile(address, target);
    p.ui.Unload(form);
}

}  // namespace RaveloReadURL

void RegisterReadUrl(Program& p) {
    p.utilities["readurl"] = RaveloReadURL::ReadURL;
    p.RegisterWindow(std::string(RaveloReadURLForm::kName),
                     [](Program& program) { return std::make_unique<RaveloReadURLForm>(program); });
}

}  // namespace ravelo
