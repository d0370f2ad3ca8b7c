#include "qt/qt_program.hpp"

#include <gtest/gtest.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <functional>

#include "platform/download.hpp"
#include "runtime/error.hpp"
#include "shell/features.hpp"
#include "shell/raveloutilx.hpp"
#include "ui/host.hpp"

namespace ravelo::test {

QtProgram::QtProgram() {
    std::filesystem::copy(RAVELO_DEMO_DRIVE, root_.Path() / "drive_c", std::filesystem::copy_options::recursive);
    std::filesystem::create_directories(root_.Path() / "temp");
    platform::DriveMap drives({{'C', (root_.Path() / "drive_c").string()}, {'Z', "/"}});
    Services services;
    services.environment =
        platform::Environment({"HOME=/root", "TEMP=" + drives.ToWindows((root_.Path() / "temp").string())});
    services.files = std::make_unique<platform::FileSystem>(std::move(drives));
    services.clock = std::make_unique<FakeClock>();
    auto host = std::make_unique<ui::QtHost>();
    host_ = host.get();
    services.ui = std::move(host);
    services.shell = std::make_unique<platform::SystemShell>();
    services.downloader = std::make_unique<platform::CurlDownloader>(*services.files);
    program_ = std::make_unique<Program>(std::move(services));
    RegisterFeatures(*program_);
}

namespace {
std::optional<int> Guard(const std::function<void()>& step) {
    try {
        step();
    } catch (const ProgramEnd& end) {
        return end.status;
    } catch (const RuntimeError& error) {
        ADD_FAILURE() << "run-time error " << error.number;
        return 3;
    }
    return std::nullopt;
}
}  // namespace

std::optional<int> QtProgram::Start(const std::string& commandLine, const std::string& window) {
    return Guard([&] { Main(*program_, commandLine, window); });
}

std::optional<int> QtProgram::Settle() {
    return Guard([&] { host_->DoEvents(); });
}

QWidget* QtProgram::Window(std::string_view form) {
    ui::Form* model = program_->ExistingWindow(form);
    return model ? host_->WindowOf(*model) : nullptr;
}

QLabel* QtProgram::Label(std::string_view form, std::string_view control) {
    QWidget* window = Window(form);
    return window ? window->findChild<QLabel*>(Q(std::string(control))) : nullptr;
}

QString Q(const std::string& text) { return QString::fromStdString(text); }

void Click(QWidget* widget) {
    ASSERT_NE(widget, nullptr);
    QTest::mouseClick(widget, Qt::LeftButton);
}

void ClickItem(QListWidget* list, int row) {
    ASSERT_NE(list, nullptr);
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void DoubleClickItem(QListWidget* list, int row) {
    ClickItem(list, row);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

std::vector<std::string> Entries(QListWidget* list) {
    std::vector<std::string> entries;
    for (int i = 0; list && i < list->count(); ++i) entries.push_back(list->item(i)->text().toStdString());
    return entries;
}

void SaveScreenshot(QWidget* window, const std::string& name) {
    ASSERT_NE(window, nullptr) << name;
    const std::filesystem::path folder = RAVELO_SCREENSHOT_DIR;
    std::filesystem::create_directories(folder);
    const QString path = Q((folder / (name + ".png")).string());
    EXPECT_TRUE(window->grab().save(path)) << path.toStdString();
}

void ExpectNothingCut(QWidget* window) {
    ASSERT_NE(window, nullptr);
    const QRect inside = window->rect();
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        auto* button = qobject_cast<QPushButton*>(widget);
        auto* label = qobject_cast<QLabel*>(widget);
        if ((!button && !label) || !widget->isVisibleTo(window) || (label && label->text().isEmpty())) continue;
        const std::string name = window->objectName().toStdString() + "." + widget->objectName().toStdString();
        if (label && label->wordWrap())
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name;
        else
            EXPECT_GE(widget->width(), widget->sizeHint().width()) << name;
        EXPECT_TRUE(inside.contains(QRect(widget->mapTo(window, QPoint(0, 0)), widget->size()))) << name;
    }
}

}  // namespace ravelo::test
