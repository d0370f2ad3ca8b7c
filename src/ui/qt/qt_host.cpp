// The Qt host: windows, event delivery, waits, modal loops and message boxes.
//
// Event functions may end the program (ProgramEnd) or raise a run-time
// error; neither may unwind through Qt's own code. Every user event is
// therefore delivered inside a catch that keeps what was thrown, and the
// host throws it again from the call that was processing events (DoEvents,
// WaitForEvent, a modal loop or a message box), which is program code.
#include "ui/qt/qt_host.hpp"

#include <QApplication>
#include <QEventLoop>
#include <QIcon>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <algorithm>
#include <exception>
#include <map>
#include <utility>
#include <vector>

#include "runtime/error.hpp"
#include "ui/qt/form_window.hpp"

namespace ravelo::ui {
namespace {

// The program's icon, drawn rather than loaded so that the binary needs no
// image plugin: the molecule of the desktop icon (packaging/raveloutils.svg),
// a central atom bonded to three others on a light tile.
QIcon MoleculeIcon() {
    QIcon icon;
    for (int size : {32, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 64.0, size / 64.0);
        painter.setPen(QPen(QColor("#9fb4d3"), 1.5));
        painter.setBrush(QColor("#e8f0fb"));
        painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
        const QPointF centre(32, 34), atoms[3] = {{16, 20}, {49, 21}, {31, 52}};
        painter.setPen(QPen(QColor("#5b6470"), 4, Qt::SolidLine, Qt::RoundCap));
        for (const QPointF& atom : atoms) painter.drawLine(centre, atom);
        const QColor colours[3] = {QColor("#e0453a"), QColor("#3a7be0"), QColor("#f7f7f7")};
        painter.setPen(QPen(QColor("#2b2f36"), 1.5));
        for (int i = 0; i < 3; ++i) {
            painter.setBrush(colours[i]);
            painter.drawEllipse(atoms[i], 7, 7);
        }
        painter.setBrush(QColor("#3c4048"));
        painter.drawEllipse(centre, 9.5, 9.5);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QMessageBox::StandardButtons ButtonsOf(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case MsgButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case MsgButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MsgButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

// The answer when the box was closed without a button: Cancel where there
// is one, else No, else OK.
MsgResult Dismissed(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::OkCancel:
        case MsgButtons::YesNoCancel:
            return MsgResult::Cancel;
        case MsgButtons::YesNo:
            return MsgResult::No;
        case MsgButtons::Ok:
            break;
    }
    return MsgResult::Ok;
}

}  // namespace

struct QtHost::Impl final : qt::EventSink {
    explicit Impl(QtHost& owner) : host(owner) {
        if (!QCoreApplication::instance()) {
            app = std::make_unique<QApplication>(argc, argv);
            QCoreApplication::setApplicationName(QStringLiteral("RaveloUtils"));
            QGuiApplication::setDesktopFileName(QStringLiteral("raveloutils"));
        }
        // The program decides when it ends, not the closing of a window.
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::setWindowIcon(MoleculeIcon());
    }

    bool Deliver(Form& form, const std::function<void()>& event) override {
        if (pending || !IsLoaded(&form)) return false;
        try {
            event();
        } catch (...) {
            if (!pending) pending = std::current_exception();
        }
        // An event may change any window (a converter window writes on the
        // file converter's button), so all of them follow the model.
        for (auto& [shown, window] : windows) {
            if (IsLoaded(shown) && window->Sync()) window->update();
        }
        QuitFinishedLoops();
        return true;
    }

    // A window is only ever looked at while it is loaded: the host forgets a
    // form when it is unloaded or destroyed.
    bool IsLoaded(const Form* form) const {
        const auto& loaded = host.LoadedForms();
        return std::find(loaded.begin(), loaded.end(), form) != loaded.end();
    }

    void QuitFinishedLoops() {
        for (const ModalFrame& frame : modal) {
            if (pending || !IsLoaded(frame.form) || !frame.form->Visible()) frame.loop->quit();
        }
    }

    void RethrowPending() {
        if (!pending) return;
        std::rethrow_exception(std::exchange(pending, nullptr));
    }

    // Centred, each further window a little down and to the right so that
    // none hides another completely.
    void Place(qt::FormWindow& window) const {
        int others = 0;
        for (const auto& [shown, other] : windows)
            if (other.get() != &window && other->isVisible()) ++others;
        QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen) return;
        const QRect area = screen->availableGeometry();
        QPoint topLeft = area.center() - window.rect().center() + QPoint(28, 28) * others;
        topLeft.setX(std::max(area.left(), topLeft.x()));
        topLeft.setY(std::max(area.top(), topLeft.y()));
        window.move(topLeft);
    }

    qt::FormWindow* WindowOf(const Form& form) const {
        auto it = windows.find(&form);
        return (it != windows.end() && it->second->BuiltFrom(form)) ? it->second.get() : nullptr;
    }

    // The newest visible window, which a message box is centred on.
    QWidget* NewestVisibleWindow() const {
        const auto& loaded = host.LoadedForms();
        for (auto it = loaded.rbegin(); it != loaded.rend(); ++it) {
            qt::FormWindow* window = WindowOf(**it);
            if (window && window->isVisible()) return window;
        }
        return nullptr;
    }

    QtHost& host;
    // QApplication keeps references to these for its whole life.
    int argc = 1;
    char name[12] = "raveloutils";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;  // when the host started the application itself
    std::map<const Form*, std::unique_ptr<qt::FormWindow>> windows;
    struct ModalFrame {
        Form* form;
        QEventLoop* loop;
    };
    std::vector<ModalFrame> modal;
    std::exception_ptr pending;       // thrown by an event function, not yet thrown again
    qt::FormWindow* fresh = nullptr;  // shown, not yet painted
};

QtHost::QtHost() : impl_(std::make_unique<Impl>(*this)) {}

QtHost::~QtHost() = default;

void QtHost::DoEvents() {
    impl_->RethrowPending();
    impl_->fresh = nullptr;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    impl_->RethrowPending();
}

void QtHost::WaitForEvent() {
    impl_->RethrowPending();
    // With no window on the screen no user event can come any more.
    if (!AnyWindowVisible()) {
        UnloadAll();
        EndProgram(0);
    }
    impl_->fresh = nullptr;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    impl_->RethrowPending();
}

MsgResult QtHost::MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) {
    const std::string titleText(title), bodyText(text);
    QMessageBox::Icon icon = QMessageBox::Information;
    if (buttons == MsgButtons::YesNo || buttons == MsgButtons::YesNoCancel) icon = QMessageBox::Question;
    if (titleText.find("Error") != std::string::npos || bodyText.rfind("Run-time error", 0) == 0)
        icon = QMessageBox::Critical;
    QMessageBox box(icon, qt::ToQt(titleText), qt::ToQt(bodyText), ButtonsOf(buttons),
                    impl_->NewestVisibleWindow());
    box.setObjectName(QStringLiteral("RaveloMessageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setWindowModality(Qt::ApplicationModal);
    impl_->fresh = nullptr;
    box.exec();
    MsgResult result = Dismissed(buttons);
    switch (box.standardButton(box.clickedButton())) {
        case QMessageBox::Ok:
            result = MsgResult::Ok;
            break;
        case QMessageBox::Cancel:
            result = MsgResult::Cancel;
            break;
        case QMessageBox::Yes:
            result = MsgResult::Yes;
            break;
        case QMessageBox::No:
            result = MsgResult::No;
            break;
        default:
            break;
    }
    impl_->RethrowPending();
    return result;
}

void QtHost::Refresh(Form& form) {
    qt::FormWindow* window = impl_->IsLoaded(&form) ? impl_->WindowOf(form) : nullptr;
    if (!window) return;
    if (window == impl_->fresh) {
        impl_->fresh = nullptr;
        window->Sync();
        window->FitToContents(qt::FormWindow::Fit::First);
        impl_->Place(*window);
    }
    // Painted at once, as a program that changes a colour, refreshes and
    // then waits (a flashing label) expects to be seen.
    if (window->Sync() && window->isVisible()) window->repaint();
}

QWidget* QtHost::WindowOf(const Form& form) const { return impl_->WindowOf(form); }

void QtHost::OnShown(Form& form) {
    auto& slot = impl_->windows[&form];
    bool placed = true;
    if (!slot || !slot->BuiltFrom(form)) {
        if (slot) slot.release()->deleteLater();  // a window of a form that is gone
        slot = std::make_unique<qt::FormWindow>(form, *impl_);
        placed = false;
    }
    qt::FormWindow& window = *slot;
    window.Sync();
    const Qt::WindowModality modality = form.Modal() ? Qt::ApplicationModal : Qt::NonModal;
    if (window.windowModality() != modality) {
        window.hide();  // modality is set on a hidden window only
        window.setWindowModality(modality);
    }
    if (!window.isVisible()) {
        window.FitToContents(placed ? qt::FormWindow::Fit::Grow : qt::FormWindow::Fit::First);
        if (!placed) impl_->Place(window);
        window.FocusFirst();
        window.show();
        // Form_Activate may still write the window's lines: until the window
        // has been painted, its first Refresh sizes and places it afresh.
        if (!placed) impl_->fresh = &window;
    }
    window.raise();
    window.activateWindow();
}

void QtHost::OnHidden(Form& form) {
    if (qt::FormWindow* window = impl_->WindowOf(form)) window->hide();
    impl_->QuitFinishedLoops();
}

// A modal window runs its own event loop, which ends when the window is
// unloaded or hidden, or when an event function ended the program.
void QtHost::RunModal(Form& form) {
    if (!form.Loaded() || !form.Visible()) return;
    QEventLoop loop;
    impl_->modal.push_back({&form, &loop});
    impl_->fresh = nullptr;
    if (!impl_->pending) loop.exec();
    impl_->modal.pop_back();
    impl_->RethrowPending();
}

}  // namespace ravelo::ui
