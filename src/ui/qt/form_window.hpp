// One window of the program as a Qt widget: built once from the form's
// controls, then brought in step with the model by Sync. User actions on the
// widgets go back to the model through an EventSink, never straight into an
// event function, so that the host can catch what they throw and re-sync.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "ui/form.hpp"

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace ravelo::ui::qt {

class EventSink {
public:
    virtual ~EventSink() = default;
    // Runs one of `form`'s event functions as a user's event. Returns false
    // when it was not run (the window is no longer loaded, or the program is
    // ending).
    virtual bool Deliver(Form& form, const std::function<void()>& event) = 0;
};

class FormWindow : public QWidget {
public:
    FormWindow(Form& form, EventSink& sink);
    ~FormWindow() override;

    Form& form() const { return form_; }
    // True while this widget was built from exactly these controls.
    bool BuiltFrom(const Form& form) const;

    // Brings caption, captions, texts, lists, colours, visibility, enabled
    // state and focus in step with the model. Returns whether anything shown
    // changed.
    bool Sync();

    // Sizes the window to show every caption whole: at first a width that
    // fits the longest message line (within limits); later wider when a
    // longer line comes (Grow), never narrower; and always at least the
    // height that the wrapped lines need at the width it has.
    enum class Fit { First, Grow, Height };
    void FitToContents(Fit fit);
    // Sets the focus where a user starts: the first text box, or else the
    // window itself, so that no clickable label looks chosen.
    void FocusFirst();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

public:
    // What one control is drawn with; public for the file's helpers only.
    struct Binding {
        Control* control = nullptr;
        QWidget* outer = nullptr;  // what is shown or hidden
        QLabel* label = nullptr;
        QPushButton* button = nullptr;
        QLineEdit* edit = nullptr;
        QListWidget* list = nullptr;
        QComboBox* combo = nullptr;
        QLabel* heading = nullptr;  // a list's caption (its folder, its pattern)
        bool clickable = false;
        bool title = false;
        bool footer = false;
        int rowAtPress = -1;   // a list's current row when a mouse press began
        bool pressed = false;  // a label: the left button went down on it
        std::string shownStyle;
        std::vector<std::string> shownItems;
        std::string shownHeading;
    };

private:
    void Build();
    Binding& Bind(Control& control);
    QWidget* MakeLabel(Binding& b);
    QWidget* MakeList(Binding& b);
    void Connect(Binding& b);
    bool SyncControl(Binding& b);
    void Deliver(const std::function<void()>& event);
    Binding* BindingOf(const QObject* widget);

    Form& form_;
    EventSink& sink_;
    std::vector<Binding> bindings_;
    std::vector<const Control*> builtFrom_;
    std::string shownFocus_;
    bool syncing_ = false;
    bool fitting_ = false;
    bool pressedOnWindow_ = false;
};

// Text of the model (bytes) for a widget: UTF-8 when it is valid UTF-8, else
// one character per byte; CR LF and lone CR become line breaks.
QString ToQt(const std::string& bytes);
// Text of a widget for the model: UTF-8 bytes.
std::string FromQt(const QString& text);

}  // namespace ravelo::ui::qt
