// The program-wide values and services, and the window registry.
#include "core/program.hpp"

#include "runtime/error.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"
#include "platform/download.hpp"

namespace ravelo {

Program::Program(Services services)
    : fs(*services.files),
      clock(*services.clock),
      ui(*services.ui),
      shell(*services.shell),
      downloader(*services.downloader),
      env(environment_),
      waitScale(services.waitScale),
      files_(std::move(services.files)),
      clock_(std::move(services.clock)),
      ui_(std::move(services.ui)),
      shell_(std::move(services.shell)),
      downloader_(std::move(services.downloader)),
      environment_(std::move(services.environment)) {
    ui.windowProvider = [this](std::string_view name) -> ui::Form* {
        return HasWindow(name) ? &Window(name) : nullptr;
    };
}

Program::~Program() {
    // Windows go before the host they are registered with.
    windows_.clear();
}

void Program::RegisterWindow(std::string name, WindowFactory factory) {
    factories_[LCase(name)] = std::move(factory);
}

bool Program::HasWindow(std::string_view name) const { return factories_.count(LCase(name)) != 0; }

ui::Form& Program::Window(std::string_view name) {
    const std::string key = LCase(name);
    if (auto it = windows_.find(key); it != windows_.end()) return *it->second;
    auto factory = factories_.find(key);
    if (factory == factories_.end()) Raise(kSubscript);
    auto& slot = windows_[key];
    slot = factory->second(*this);
    return *slot;
}

ui::Form* Program::ExistingWindow(std::string_view name) const {
    auto it = windows_.find(LCase(name));
    return it == windows_.end() ? nullptr : it->second.get();
}

void Program::DoEvents() {
    ui.DoEvents();
    clock.Idle();
}

std::string VersionLine() {
    return std::string(kProgramTitle) + " " RAVELO_VERSION " - Copyright (C) " RAVELO_BUILD_YEAR
                                        " The RaveloUtils developers";
}

}  // namespace ravelo
