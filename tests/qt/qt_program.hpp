// A fresh program on the desktop host for a test: drive C as the demo
// installation has it, a TEMP, a fake clock, and the Qt host on Qt's
// offscreen platform; and helpers that work and look at the widgets of any
// window as a user would.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program.hpp"
#include "support/test_program.hpp"
#include "ui/qt/qt_host.hpp"

class QLabel;
class QListWidget;

namespace ravelo::test {

class QtProgram {
public:
    QtProgram();
    Program& program() { return *program_; }
    // Start-up as the program runs it, without the final wait for the user:
    // Main with the command line (or the named window). Returns the exit
    // status when the start already ended the program.
    std::optional<int> Start(const std::string& commandLine, const std::string& window = {});
    // One turn of a waiting loop; the exit status when an event ended the program.
    std::optional<int> Settle();
    // The window that shows a form, and a label of it.
    QWidget* Window(std::string_view form);
    QLabel* Label(std::string_view form, std::string_view control);

private:
    TempFolder root_;
    ui::QtHost* host_ = nullptr;
    std::unique_ptr<Program> program_;
};

QString Q(const std::string& text);
// Clicks a widget in its middle, or an entry of a list, as a user does.
void Click(QWidget* widget);
void ClickItem(QListWidget* list, int row);
void DoubleClickItem(QListWidget* list, int row);
std::vector<std::string> Entries(QListWidget* list);

// Saves the window's picture as screenshots/NAME.png in the build folder.
void SaveScreenshot(QWidget* window, const std::string& name);
// Expects every visible caption of the window to be shown whole: buttons as
// wide as their text needs, labels as tall as their wrapped text needs, all
// inside the window.
void ExpectNothingCut(QWidget* window);

}  // namespace ravelo::test
