// The window model: a window (Form) owns named controls whose captions,
// texts, lists, visibility and colours are plain data, and whose events are
// ordinary functions. Hosts (headless, script, Qt) show forms and deliver
// events; nothing here knows how a window is drawn.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravelo::ui {

class UiHost;

enum class ControlKind { Label, Button, TextBox, ListBox, DriveList, DirList, FileList };

// Colours as 0xRRGGBB.
using Colour = std::uint32_t;
// The classic 16-colour palette (0 black ... 15 white).
Colour PaletteColour(int index);

// The data of a control: what a window sets and a host shows.
struct ControlState {
    std::string text;                   // caption of a label or button, text of a text box
    bool visible = true;
    bool enabled = true;
    std::optional<Colour> backColour;   // unset: the host's default
    std::optional<Colour> foreColour;
    std::vector<std::string> items;     // list entries
    int listIndex = -1;                 // selected entry, -1 for none
    std::string path;                   // drive, directory or file list: its drive or folder
    std::string pattern = "*.*";        // file list: the names shown
};

class Control {
public:
    Control(std::string name, ControlKind kind) : name_(std::move(name)), kind_(kind) {}

    const std::string& Name() const { return name_; }
    ControlKind Kind() const { return kind_; }

    // Label and button captions and text-box texts share one field.
    const std::string& Caption() const { return state.text; }
    void SetCaption(std::string caption) { state.text = std::move(caption); }
    const std::string& Text() const { return state.text; }
    // Sets a text box's text; fires the change event when the text changes.
    void SetText(std::string text);
    // Sets the text and always fires the change event (typing).
    void Type(std::string text);

    bool Visible() const { return state.visible; }
    void SetVisible(bool visible) { state.visible = visible; }
    void SetBackColour(std::optional<Colour> colour) { state.backColour = colour; }

    // Lists.
    void Clear() { state.items.clear(); state.listIndex = -1; }
    void AddItem(std::string item) { state.items.push_back(std::move(item)); }
    // The selected entry, empty when none.
    std::string SelectedItem() const;
    // Selects entry `index` as a user would: a list box or file list fires its
    // click event, a drive or directory list its navigation and change event.
    void Pick(int index);

    // What a script dump shows: caption, text, or list entries joined by "|".
    std::string DumpText() const;

    ControlState state;
    std::function<void()> onClick;
    std::function<void()> onDblClick;
    std::function<void()> onChange;
    std::function<void(int& keyAscii)> onKeyPress;
    // Drive and directory lists: called by Pick before the change event, to
    // move the list's drive or folder to the picked entry.
    std::function<void(int index)> onNavigate;

private:
    std::string name_;
    ControlKind kind_;
};

class Form {
public:
    Form(UiHost& host, std::string name, std::string caption);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption) { caption_ = std::move(caption); }
    UiHost& Host() const { return host_; }

    bool Loaded() const { return loaded_; }
    bool Visible() const { return visible_; }
    bool Modal() const { return modal_; }

    // Controls in creation order (the order of dumps and of tab stops).
    const std::vector<std::unique_ptr<Control>>& Controls() const { return controls_; }
    Control& operator[](std::string_view name);   // a missing name raises 9
    Control* Find(std::string_view name);

    // The control that has the focus (empty for none).
    const std::string& Focus() const { return focus_; }
    void SetFocus(std::string_view controlName) { focus_ = controlName; }

    // Shorthands for the host's lifecycle calls.
    void Show(bool modal = false);
    void Hide();
    void Unload();

    // Events, overridden by the windows.
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Unload(int& cancel) { (void)cancel; }
    virtual void Form_Click() {}
    virtual void Form_KeyPress(int& keyAscii) { (void)keyAscii; }

protected:
    Control& Add(std::string name, ControlKind kind, std::string text = {});

private:
    friend class UiHost;
    void SnapshotOrRestore();

    UiHost& host_;
    std::string name_;
    std::string caption_;
    std::string designCaption_;
    std::vector<std::unique_ptr<Control>> controls_;
    std::vector<ControlState> design_;   // control states as designed, restored on a reload
    bool hasDesign_ = false;
    bool loaded_ = false;
    bool visible_ = false;
    bool modal_ = false;
    std::string focus_;
};

}  // namespace ravelo::ui
