// The window model: controls as data, forms with their lifecycle events.
#include "ui/form.hpp"

#include <algorithm>

#include "runtime/error.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"

namespace ravelo::ui {

Colour PaletteColour(int index) {
    static constexpr Colour kPalette[16] = {
        0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080, 0x808000, 0xC0C0C0,
        0x808080, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
    if (index < 0 || index > 15) Raise(kInvalidCall);
    return kPalette[index];
}

void Control::SetText(std::string text) {
    if (text == state.text) return;
    state.text = std::move(text);
    if (onChange) onChange();
}

void Control::Type(std::string text) {
    state.text = std::move(text);
    if (onChange) onChange();
}

std::string Control::SelectedItem() const {
    if (state.listIndex < 0 || state.listIndex >= static_cast<int>(state.items.size())) return {};
    return state.items[static_cast<std::size_t>(state.listIndex)];
}

void Control::Pick(int index) {
    if (index < 0 || index >= static_cast<int>(state.items.size())) return;
    state.listIndex = index;
    if (kind_ == ControlKind::DriveList || kind_ == ControlKind::DirList) {
        if (onNavigate) onNavigate(index);
        if (onChange) onChange();
    } else if (onClick) {
        onClick();
    }
}

std::string Control::DumpText() const {
    switch (kind_) {
        case ControlKind::ListBox:
        case ControlKind::DriveList:
        case ControlKind::DirList:
        case ControlKind::FileList: {
            std::string joined;
            for (std::size_t i = 0; i < state.items.size(); ++i) {
                if (i) joined += '|';
                joined += state.items[i];
            }
            return joined;
        }
        default:
            return state.text;
    }
}

Form::Form(UiHost& host, std::string name, std::string caption)
    : host_(host), name_(std::move(name)), caption_(caption), designCaption_(std::move(caption)) {}

Form::~Form() { host_.Forget(*this); }

Control& Form::operator[](std::string_view name) {
    Control* control = Find(name);
    if (!control) Raise(kSubscript);
    return *control;
}

Control* Form::Find(std::string_view name) {
    const std::string wanted = LCase(name);
    for (auto& control : controls_)
        if (LCase(control->Name()) == wanted) return control.get();
    return nullptr;
}

void Form::Show(bool modal) { host_.Show(*this, modal); }
void Form::Hide() { host_.Hide(*this); }
void Form::Unload() { host_.Unload(*this); }

Control& Form::Add(std::string name, ControlKind kind, std::string text) {
    controls_.push_back(std::make_unique<Control>(std::move(name), kind));
    controls_.back()->state.text = std::move(text);
    return *controls_.back();
}

// A window loaded again after an unload starts from its designed controls,
// as the first load did; the designed states are taken at the first load.
void Form::SnapshotOrRestore() {
    if (!hasDesign_) {
        design_.clear();
        for (auto& control : controls_) design_.push_back(control->state);
        hasDesign_ = true;
        return;
    }
    for (std::size_t i = 0; i < controls_.size() && i < design_.size(); ++i)
        controls_[i]->state = design_[i];
    caption_ = designCaption_;
    focus_.clear();
}

}  // namespace ravelo::ui
