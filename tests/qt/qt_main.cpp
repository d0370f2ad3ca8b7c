// The desktop host's tests run in one QApplication, on Qt's offscreen
// platform unless QT_QPA_PLATFORM names another (to watch them on a display).
#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <filesystem>
#include <string>

namespace {

QtMessageHandler qtDefault = nullptr;

// The offscreen platform says each time that it cannot raise a window or
// pass size hints to a window manager it does not have; only that is quiet.
void QuietOffscreen(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && message.startsWith(QLatin1String("This plugin does not support"))) return;
    if (qtDefault) qtDefault(type, context, message);
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        // Qt wants a runtime folder that only this user may enter.
        const std::filesystem::path runtime =
            std::filesystem::temp_directory_path() / ("ravelo-qt-tests-" + std::to_string(getuid()));
        std::filesystem::create_directories(runtime);
        std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime.string()));
    }
    qtDefault = qInstallMessageHandler(QuietOffscreen);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
