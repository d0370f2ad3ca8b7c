// The main window: a menu of clickable labels, one per utility.
#pragma once

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

class RaveloUtils : public ui::Form {
public:
    static constexpr std::string_view kName = "RaveloUtils";
    explicit RaveloUtils(Program& p);

    void Form_Load() override;
    void Form_Unload(int& cancel) override;

private:
    // Opens the utility of a command word, as the dispatcher does.
    void Open(std::string_view word);

    Program& p_;
};

}  // namespace ravelo
