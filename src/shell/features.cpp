#include "shell/features.hpp"

#include "calc/calcx_form.hpp"
#include "convert/windows/fileconv.hpp"
#include "moldb/updt_mol_form.hpp"
#include "mollog/log_htm_form.hpp"
#include "readurl/readurl.hpp"
#include "shell/run.hpp"

namespace ravelo {

void RegisterFeatures(Program& p) {
    RegisterStartupWindows(p);
    RegisterConverter(p);
    RegisterCalculator(p);
    RegisterReadUrl(p);
    RegisterMolLog(p);
    RegisterMolDb(p);
}

}  // namespace ravelo
