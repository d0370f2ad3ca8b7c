// The window of the database transfer: one button that first counts the log
// (BEGIN) and then transfers its new records (GO), EXIT, and the lines that
// report the counts.
#pragma once

#include <string_view>

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo::UpdatMol {

class UpdtMolForm1 : public ui::Form {
public:
    static constexpr std::string_view kName = "UpdtMolForm1";
    explicit UpdtMolForm1(Program& p);

    void Form_Load() override;

private:
    Program& p_;
};

}  // namespace ravelo::UpdatMol
