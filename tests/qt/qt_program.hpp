// The program on the desktop host, and helpers that work widgets as a user does.
#pragma once

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "runtime/error.hpp"
#include "shell/features.hpp"
#include "shell/raveloutilx.hpp"
#include "shell/run.hpp"
#include "support/files.hpp"
#include "ui/qt/qt_host.hpp"

namespace ravelo::test {

inline QString Q(const std::string& text) { return QString::fromStdString(text); }

// The exit status when `step` ends the program.
inline std::optional<int> EndOf(const std::function<void()>& step) try {
    step();
    return std::nullopt;
} catch (const ProgramEnd& end) {
    return end.status;
}

// The program as its start-up makes it on a desktop, with a copy of the demo
// installation as drive C and no timed pauses.
class QtProgram {
public:
    QtProgram() {
        std::filesystem::copy(RAVELO_DEMO_DRIVE, root_.Path(), std::filesystem::copy_options::recursive);
        setenv("RAVELO_DRIVE_C", root_.Path().c_str(), 1);
        setenv("RAVELO_UI", "qt", 1);
        setenv("RAVELO_WAIT_SCALE", "0", 1);
        program_ =
            std::make_unique<Program>(ServicesFromEnvironment([] { return std::make_unique<ui::QtHost>(); }));
        RegisterFeatures(*program_);
    }
    Program& program() { return *program_; }
    QWidget* Window(std::string_view form) {
        ui::Form* model = program_->ExistingWindow(form);
        return model ? static_cast<ui::QtHost&>(program_->ui).WindowOf(*model) : nullptr;
    }

private:
    TempFolder root_;
    std::unique_ptr<Program> program_;
};

inline void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

// What the widget of a control shows, as its script dump has it: its text
// (CR LF for a line break), or its entries joined by "|".
inline QString Shows(QWidget* widget) {
    if (auto* label = qobject_cast<QLabel*>(widget)) return label->text().replace('\n', "\r\n");
    if (auto* button = qobject_cast<QPushButton*>(widget)) return button->text().replace("&&", "&");
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) return edit->text();
    QStringList entries;
    if (auto* list = widget->findChild<QListWidget*>())
        for (int i = 0; i < list->count(); ++i) entries << list->item(i)->text();
    if (auto* combo = widget->findChild<QComboBox*>())
        for (int i = 0; i < combo->count(); ++i) entries << combo->itemText(i);
    return entries.join('|');
}

// Expects the window to show its form whole: its caption; every control's
// text, entries and visibility; every caption uncut (buttons as wide as their
// text needs, wrapped labels as tall) and inside the window.
inline void ExpectShown(QWidget* window, const ui::Form& form) {
    EXPECT_EQ(window->windowTitle(), Q(form.Caption())) << form.Name();
    for (const auto& control : form.Controls()) {
        const std::string name = form.Name() + "." + control->Name();
        QWidget* widget = window->findChild<QWidget*>(Q(control->Name()));
        ASSERT_NE(widget, nullptr) << name;
        EXPECT_EQ(Shows(widget), Q(control->DumpText())) << name;
        if (!control->Visible() || !control->Caption().empty()) {  // an empty plain label takes no room
            EXPECT_EQ(widget->isVisible(), control->Visible()) << name;
        }
    }
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(widget);
        if (!widget->isVisibleTo(window) ||
            (label ? label->text().isEmpty() : !qobject_cast<QPushButton*>(widget)))
            continue;
        const std::string name = form.Name() + "." + widget->objectName().toStdString();
        if (label && label->wordWrap())
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name;
        else
            EXPECT_GE(widget->width(), widget->sizeHint().width()) << name;
        EXPECT_TRUE(window->rect().contains(QRect(widget->mapTo(window, QPoint()), widget->size()))) << name;
    }
}

}  // namespace ravelo::test
