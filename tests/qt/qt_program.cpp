#include "qt/qt_program.hpp"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "shell/features.hpp"
#include "runtime/error.hpp"
#include "shell/raveloutilx.hpp"
#include "ui/host.hpp"
#include "platform/download.hpp"

namespace ravelo::test {

QtProgram::QtProgram(double waitScale) {
    std::filesystem::create_directories(DriveC());
    std::filesystem::create_directories(root_.Path() / "temp");
    platform::DriveMap drives({{'C', DriveC().string()}, {'Z', "/"}});
    Services services;
    services.environment =
        platform::Environment({"HOME=/root", "TEMP=" + drives.ToWindows((root_.Path() / "temp").string())});
    services.files = std::make_unique<platform::FileSystem>(std::move(drives));
    auto clock = std::make_unique<StepClock>();
    clock_ = clock.get();
    services.clock = std::move(clock);
    auto host = std::make_unique<ui::QtHost>();
    host_ = host.get();
    services.ui = std::move(host);
    services.shell = std::make_unique<platform::SystemShell>();
    services.downloader = std::make_unique<platform::CurlDownloader>(*services.files);
    services.waitScale = waitScale;
    program_ = std::make_unique<Program>(std::move(services));
    RegisterFeatures(*program_);
}

QtProgram::~QtProgram() = default;

void QtProgram::Install() {
    Write("C:\\programdata\\ravelo\\ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    Write("C:\\ravelo\\Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    std::filesystem::create_directories(DriveC() / "dmor");
}

void QtProgram::InstallDemo() {
    Install();
    std::filesystem::copy(
        RAVELO_DEMO_DRIVE, DriveC(),
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
}

std::filesystem::path QtProgram::Host(const std::string& winPath) const {
    std::string rest = winPath.substr(winPath.rfind(':') + 1);
    for (char& c : rest)
        if (c == '\\') c = '/';
    return DriveC() / rest.substr(rest.find_first_not_of('/'));
}

void QtProgram::Write(const std::string& winPath, const std::string& bytes) const {
    WriteHostFile(Host(winPath), bytes);
}

std::string QtProgram::Read(const std::string& winPath) const { return ReadHostFile(Host(winPath)); }

bool QtProgram::Exists(const std::string& winPath) const { return std::filesystem::exists(Host(winPath)); }

std::optional<int> QtProgram::Guard(const std::function<void()>& step) {
    try {
        step();
    } catch (const ProgramEnd& end) {
        return end.status;
    } catch (const RuntimeError& error) {
        errorNumber_ = error.number;
        return 3;
    }
    return std::nullopt;
}

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

namespace {
template <class W>
W* Child(QWidget* window, const QString& name) {
    return window ? window->findChild<W*>(name) : nullptr;
}
QString Name(std::string_view control) {
    return QString::fromUtf8(control.data(), static_cast<qsizetype>(control.size()));
}
}  // namespace

QLabel* QtProgram::Label(std::string_view form, std::string_view control) {
    return Child<QLabel>(Window(form), Name(control));
}
QPushButton* QtProgram::Button(std::string_view form, std::string_view control) {
    return Child<QPushButton>(Window(form), Name(control));
}
QLineEdit* QtProgram::TextBox(std::string_view form, std::string_view control) {
    return Child<QLineEdit>(Window(form), Name(control));
}
QListWidget* QtProgram::List(std::string_view form, std::string_view control) {
    return Child<QListWidget>(Window(form), Name(control) + QStringLiteral("_list"));
}
QComboBox* QtProgram::DriveList(std::string_view form, std::string_view control) {
    return Child<QComboBox>(Window(form), Name(control) + QStringLiteral("_combo"));
}

ui::Control& QtProgram::Model(std::string_view form, std::string_view control) {
    return program_->Window(form)[control];
}

void Click(QWidget* widget) {
    ASSERT_NE(widget, nullptr);
    QTest::mouseClick(widget, Qt::LeftButton);
}

void ClickItem(QListWidget* list, int row) {
    ASSERT_NE(list, nullptr);
    ASSERT_GE(row, 0);
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void DoubleClickItem(QListWidget* list, int row) {
    ASSERT_NE(list, nullptr);
    ASSERT_GE(row, 0);
    list->scrollToItem(list->item(row));
    const QPoint at = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

int RowOf(QListWidget* list, const QString& text) {
    for (int i = 0; list && i < list->count(); ++i)
        if (list->item(i)->text() == text) return i;
    return -1;
}

void ChooseEntry(QComboBox* combo, const QString& text) {
    ASSERT_NE(combo, nullptr);
    const int wanted = combo->findText(text);
    ASSERT_GE(wanted, 0) << text.toStdString();
    combo->setFocus();
    for (int guard = 0; combo->currentIndex() != wanted && guard < combo->count(); ++guard)
        QTest::keyClick(combo, combo->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
}

std::vector<std::string> Entries(QListWidget* list) {
    std::vector<std::string> entries;
    for (int i = 0; list && i < list->count(); ++i) entries.push_back(list->item(i)->text().toStdString());
    return entries;
}

struct WhenReady::Impl {
    QTimer timer;
};

WhenReady::WhenReady(std::function<bool()> ready, std::function<void()> check)
    : impl_(std::make_unique<Impl>()) {
    impl_->timer.setInterval(0);
    QObject::connect(&impl_->timer, &QTimer::timeout,
                     [this, ready = std::move(ready), check = std::move(check)] {
                         if (seen_ || !ready()) return;
                         seen_ = true;
                         impl_->timer.stop();
                         check();
                     });
    impl_->timer.start();
}

WhenReady::~WhenReady() = default;

struct MessageBoxAnswers::Impl {
    QTimer timer;
};

MessageBoxAnswers::MessageBoxAnswers(QString button) : impl_(std::make_unique<Impl>()) {
    impl_->timer.setInterval(5);
    QObject::connect(&impl_->timer, &QTimer::timeout, [this, button] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(top);
            if (!box || !box->isVisible()) continue;
            seen_.push_back((box->windowTitle() + QLatin1Char('|') + box->text()).toStdString());
            for (QAbstractButton* candidate : box->buttons()) {
                if (candidate->text() == button) {
                    candidate->click();
                    return;
                }
            }
            ADD_FAILURE() << "no button " << button.toStdString() << " on the message box";
            box->reject();
        }
    });
    impl_->timer.start();
}

MessageBoxAnswers::~MessageBoxAnswers() = default;

void SaveScreenshot(QWidget* window, const std::string& name) {
    ASSERT_NE(window, nullptr) << name;
    const std::filesystem::path folder = RAVELO_SCREENSHOT_DIR;
    std::filesystem::create_directories(folder);
    const QString path = QString::fromStdString((folder / (name + ".png")).string());
    EXPECT_TRUE(window->grab().save(path)) << path.toStdString();
}

void ExpectNothingCut(QWidget* window) {
    ASSERT_NE(window, nullptr);
    const QRect inside = window->rect();
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
        if (!button->isVisibleTo(window)) continue;
        EXPECT_GE(button->width(), button->sizeHint().width())
            << window->objectName().toStdString() << "." << button->objectName().toStdString();
        EXPECT_TRUE(inside.contains(QRect(button->mapTo(window, QPoint(0, 0)), button->size())))
            << button->objectName().toStdString();
    }
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(window) || label->text().isEmpty()) continue;
        const std::string name = window->objectName().toStdString() + "." + label->objectName().toStdString();
        if (label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name;
        } else {
            EXPECT_GE(label->width(), label->sizeHint().width()) << name;
        }
        EXPECT_TRUE(inside.contains(QRect(label->mapTo(window, QPoint(0, 0)), label->size()))) << name;
    }
}

QColor ColourAt(QWidget* widget, std::optional<QPoint> point) {
    const QImage image = widget->grab().toImage();
    const QPoint at = point.value_or(QPoint(image.width() / 2, image.height() / 2));
    return image.pixelColor(at);
}

}  // namespace ravelo::test
