// The desktop host's tests share one QApplication, on Qt's offscreen platform
// unless QT_QPA_PLATFORM names another (to watch them on a display).
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Quiet only the offscreen platform's notes that it cannot raise a window or pass size hints.
    static const QtMessageHandler standard = qInstallMessageHandler(nullptr);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (!text.startsWith(QLatin1String("This plugin does not support"))) standard(type, context, text);
    });
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
