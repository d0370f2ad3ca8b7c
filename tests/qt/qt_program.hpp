// A fresh program on the desktop host for a test: a temporary drive C and
// TEMP, a fake clock, and the Qt host on Qt's offscreen platform. The test
// starts the program, then works its real widgets with QTest and checks
// both the widgets and the window model.
#pragma once

#include <QString>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program.hpp"
#include "support/test_program.hpp"
#include "ui/qt/qt_host.hpp"

class QLabel;
class QPushButton;
class QLineEdit;
class QListWidget;
class QComboBox;

namespace ravelo::test {

// A clock that stands still until a waiting loop idles, then moves on 10 ms
// a turn, and lets a test look at the windows on each turn (a busy wait
// processes no events, so nothing else could).
class StepClock final : public platform::Clock {
public:
    std::uint32_t Millis() override { return millis; }
    double Timer() override { return 43200 + millis / 1000.0; }
    platform::Date Today() override { return {2026, 11, 22}; }
    void Idle() override {
        millis += 10;
        if (onIdle) onIdle();
    }
    std::uint32_t millis = 0;
    std::function<void()> onIdle;
};

class QtProgram {
public:
    explicit QtProgram(double waitScale = 1);
    ~QtProgram();
    QtProgram(const QtProgram&) = delete;
    QtProgram& operator=(const QtProgram&) = delete;

    Program& program() { return *program_; }
    ui::QtHost& host() { return *host_; }
    StepClock& clock() { return *clock_; }

    // The installation that start-up looks for (as TestProgram::Install).
    void Install();
    // Drive C as the demo installation has it (the log, the database, the
    // settings), over the test's installation.
    void InstallDemo();
    std::filesystem::path DriveC() const { return root_.Path() / "drive_c"; }
    std::filesystem::path Host(const std::string& winPath) const;
    void Write(const std::string& winPath, const std::string& bytes) const;
    std::string Read(const std::string& winPath) const;
    bool Exists(const std::string& winPath) const;

    // Start-up as the program runs it, without the final wait for the user:
    // Main with the command line (or the named window). Returns the exit
    // status when the start already ended the program.
    std::optional<int> Start(const std::string& commandLine, const std::string& window = {});
    // Lets the host process what is pending (one turn of a waiting loop);
    // returns the exit status when an event ended the program.
    std::optional<int> Settle();
    // The number of the run-time error that ended the program, 0 for none.
    int ErrorNumber() const { return errorNumber_; }

    // The window that shows a form, and its controls' widgets.
    QWidget* Window(std::string_view form);
    QLabel* Label(std::string_view form, std::string_view control);
    QPushButton* Button(std::string_view form, std::string_view control);
    QLineEdit* TextBox(std::string_view form, std::string_view control);
    QListWidget* List(std::string_view form, std::string_view control);
    QComboBox* DriveList(std::string_view form, std::string_view control);
    // The model's control.
    ui::Control& Model(std::string_view form, std::string_view control);

private:
    std::optional<int> Guard(const std::function<void()>& step);

    TempFolder root_;
    StepClock* clock_ = nullptr;
    ui::QtHost* host_ = nullptr;
    std::unique_ptr<Program> program_;
    int errorNumber_ = 0;
};

// Clicks a widget in its middle, as a user does with the mouse.
void Click(QWidget* widget);
// Clicks (or double-clicks) an entry of a list.
void ClickItem(QListWidget* list, int row);
void DoubleClickItem(QListWidget* list, int row);
// The row of the entry with this text, -1 when there is none.
int RowOf(QListWidget* list, const QString& text);
// Chooses an entry of a drive list with the keyboard.
void ChooseEntry(QComboBox* combo, const QString& text);
// The entries of a list, in order.
std::vector<std::string> Entries(QListWidget* list);

// Runs `check` once, as soon as `ready` holds, from inside whatever event
// loop or wait the program is in (a modal window's loop, a pause). Keep the
// object alive until the program has passed that point; Seen() tells
// whether it did.
class WhenReady {
public:
    WhenReady(std::function<bool()> ready, std::function<void()> check);
    ~WhenReady();
    bool Seen() const { return seen_; }

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    bool seen_ = false;
};

// Answers message boxes as they come up by clicking the button with this
// text ("OK", "&Yes", ...), and keeps what each box said: its title and
// text, joined by "|".
class MessageBoxAnswers {
public:
    explicit MessageBoxAnswers(QString button);
    ~MessageBoxAnswers();
    const std::vector<std::string>& Seen() const { return seen_; }

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    std::vector<std::string> seen_;
};

// Saves the window's picture as screenshots/NAME.png in the build folder.
void SaveScreenshot(QWidget* window, const std::string& name);

// Expects every visible caption of the window to be shown whole: buttons as
// wide as their text needs, labels as tall as their wrapped text needs and
// inside the window.
void ExpectNothingCut(QWidget* window);

// The colour the window shows at a point of a widget (its middle when no
// point is given).
QColor ColourAt(QWidget* widget, std::optional<QPoint> point = std::nullopt);

}  // namespace ravelo::test
