// The desktop host: every window of the program drawn with Qt Widgets from
// its controls. Events that the user gives a window reach the model's event
// functions, and the widgets follow the model after every event and every
// Refresh. Waits process the window system's events, so a window stays alive
// while the program pauses; modal windows run a nested event loop.
//
// Qt stays out of this header: the program's entry makes a QtHost without
// including Qt, and only the entry (and the tests) link this layer.
#pragma once

#include <memory>
#include <string_view>

#include "ui/host.hpp"

class QWidget;

namespace ravelo::ui {

class QtHost : public UiHost {
public:
    // Uses the running QApplication, or starts one (on the platform that
    // QT_QPA_PLATFORM names, else Qt's default for the display).
    QtHost();
    ~QtHost() override;
    QtHost(const QtHost&) = delete;
    QtHost& operator=(const QtHost&) = delete;

    void DoEvents() override;
    void WaitForEvent() override;
    MsgResult MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) override;
    void Refresh(Form& form) override;

    // The top-level widget that shows `form`, nullptr before its first show.
    // Its children are named after the controls (objectName), so tests and
    // accessibility tools find them.
    QWidget* WindowOf(const Form& form) const;

protected:
    void OnShown(Form& form) override;
    void OnHidden(Form& form) override;
    void RunModal(Form& form) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ravelo::ui
