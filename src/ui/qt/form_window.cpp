// A form drawn with Qt Widgets. The model says nothing about positions, so
// the window is laid out from what its controls are, top to bottom:
//   the title (Label1, bold),
//   the message lines and the clickable labels, in the order they were made,
//   the text boxes (the first under the label that names it),
//   the lists (drive and folder list beside the file list),
//   the buttons, in one row,
//   the version line, small, at the foot.
// A label with an empty caption takes no room unless it has a colour, so
// message lines appear as the program writes them, and the window grows to
// show every caption whole.
#include "ui/qt/form_window.hpp"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QResizeEvent>
#include <QStringDecoder>
#include <QStyle>
#include <algorithm>

namespace ravelo::ui::qt {
namespace {

// Window and control sizes, in pixels at 96 dpi.
constexpr int kMinWindowWidth = 460;
constexpr int kMaxPreferredWidth = 760;
constexpr int kMinTextBoxWidth = 360;
constexpr int kMinListHeight = 190;
constexpr int kMinButtonWidth = 96;

// Clickable labels with short captions sit in a grid of this many columns;
// long captions (a menu) go one under the other.
constexpr int kGridColumns = 4;
constexpr std::size_t kShortCaption = 20;

// The program's version line ("... Copyright (C) ...") goes to the foot of
// the window whatever its control is called.
bool IsVersionLine(const std::string& caption) { return caption.find("Copyright (C)") != std::string::npos; }

QString ColourName(Colour colour) {
    return QStringLiteral("#%1").arg(static_cast<unsigned>(colour & 0xFFFFFF), 6, 16, QLatin1Char('0'));
}

// Black or white text, whichever reads better on `colour`.
QString ContrastText(Colour colour) {
    const double r = (colour >> 16) & 0xFF, g = (colour >> 8) & 0xFF, b = colour & 0xFF;
    return (0.299 * r + 0.587 * g + 0.114 * b) < 110 ? QStringLiteral("#ffffff") : QStringLiteral("#000000");
}

// The colours of a control as a style sheet for its widget class.
std::string StyleFor(const FormWindow::Binding& b) {
    const ControlState& s = b.control->state;
    const QString back = s.backColour ? ColourName(*s.backColour) : QString();
    QString fore = s.foreColour ? ColourName(*s.foreColour) : QString();
    if (fore.isEmpty() && s.backColour) fore = ContrastText(*s.backColour);
    QString css;
    if (b.label && b.clickable) {
        // Clickable labels look like things to press: a frame that lights up
        // under the mouse, a hand cursor, and link colours when the program
        // gives them none.
        const QString fill = back.isEmpty() ? QStringLiteral("#f2f6fc") : back;
        const QString hover =
            back.isEmpty() ? QStringLiteral("#dde8f8") : QColor(back).lighter(112).name(QColor::HexRgb);
        const QString ink = fore.isEmpty() ? QStringLiteral("#17468c") : fore;
        css = QStringLiteral(
                  "QLabel { border: 1px solid #8b9bb4; border-radius: 4px; padding: 5px 12px;"
                  " background-color: %1; color: %2; }"
                  " QLabel:hover { border: 1px solid #1f5fbf; background-color: %3; }"
                  " QLabel:focus { border: 1px dashed #1f5fbf; }"
                  " QLabel:disabled { color: #8a8a8a; }")
                  .arg(fill, ink, hover);
    } else if (b.label) {
        if (!back.isEmpty() || !fore.isEmpty()) {
            css = QStringLiteral("QLabel {");
            if (!back.isEmpty())
                css += QStringLiteral(" background-color: %1; border-radius: 3px;").arg(back);
            if (!fore.isEmpty()) css += QStringLiteral(" color: %1;").arg(fore);
            css += QStringLiteral(" padding: %1; }")
                       .arg(b.title ? QStringLiteral("6px 10px") : QStringLiteral("3px 8px"));
        } else if (b.footer) {
            css = QStringLiteral("QLabel { color: #5b6470; }");
        }
    } else {
        const char* type = b.button  ? "QPushButton"
                           : b.edit  ? "QLineEdit"
                           : b.combo ? "QComboBox"
                                     : "QListWidget";
        if (!back.isEmpty() || !fore.isEmpty()) {
            css = QStringLiteral("%1 {").arg(QLatin1String(type));
            if (!back.isEmpty()) css += QStringLiteral(" background-color: %1;").arg(back);
            if (!fore.isEmpty()) css += QStringLiteral(" color: %1;").arg(fore);
            css += QStringLiteral(" }");
        }
    }
    return css.toStdString();
}

// The character code of a key press, as a KeyPress event gives it: Enter 13,
// Backspace 8, Escape 27, else the typed character; 0 for keys that type
// nothing (arrows, Tab, modifiers).
int KeyAscii(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return 13;
        case Qt::Key_Backspace:
            return 8;
        case Qt::Key_Escape:
            return 27;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return 0;
        default:
            break;
    }
    const QString text = event.text();
    if (text.size() != 1) return 0;
    const char16_t c = text.at(0).unicode();
    return (c >= 32 && c < 256) ? static_cast<int>(c) : 0;
}

// A label whose caption is never read as markup, wrapped when long.
QLabel* PlainLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

// "&" in a button caption is a character, not a shortcut mark.
QString ButtonText(const std::string& caption) {
    return ToQt(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

QString ToQt(const std::string& bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r') {
            text += '\n';
            if (i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
        } else {
            text += bytes[i];
        }
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = utf8.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    if (!utf8.hasError()) return decoded;
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) { return text.toUtf8().toStdString(); }

FormWindow::FormWindow(Form& form, EventSink& sink) : QWidget(nullptr), form_(form), sink_(sink) {
    setObjectName(ToQt(form.Name()));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFocusPolicy(Qt::ClickFocus);  // keys on the window reach Form_KeyPress
    Build();
    Sync();
    FitToContents(Fit::First);
}

// The children outlive this part of the window by a moment; they must not
// call back into it while they go.
FormWindow::~FormWindow() {
    for (Binding& b : bindings_) {
        if (b.label) b.label->removeEventFilter(this);
        if (b.edit) b.edit->removeEventFilter(this);
        if (b.list) b.list->viewport()->removeEventFilter(this);
    }
}

bool FormWindow::BuiltFrom(const Form& form) const {
    if (&form != &form_ || form.Controls().size() != builtFrom_.size()) return false;
    for (std::size_t i = 0; i < builtFrom_.size(); ++i)
        if (form.Controls()[i].get() != builtFrom_[i]) return false;
    return true;
}

FormWindow::Binding* FormWindow::BindingOf(const QObject* widget) {
    for (Binding& b : bindings_) {
        if (b.outer == widget || b.label == widget || b.button == widget || b.edit == widget ||
            b.list == widget || b.combo == widget || (b.list && b.list->viewport() == widget))
            return &b;
    }
    return nullptr;
}

FormWindow::Binding& FormWindow::Bind(Control& control) {
    Binding& b = bindings_.emplace_back();
    b.control = &control;
    switch (control.Kind()) {
        case ControlKind::Label:
            b.outer = MakeLabel(b);
            break;
        case ControlKind::Button:
            b.button = new QPushButton(this);
            b.button->setMinimumWidth(kMinButtonWidth);
            b.button->setAutoDefault(false);
            b.outer = b.button;
            break;
        case ControlKind::TextBox:
            b.edit = new QLineEdit(this);
            b.edit->setMinimumWidth(kMinTextBoxWidth);
            b.edit->installEventFilter(this);
            b.outer = b.edit;
            break;
        default:
            b.outer = MakeList(b);
            break;
    }
    b.outer->setObjectName(ToQt(control.Name()));
    Connect(b);
    return b;
}

QWidget* FormWindow::MakeLabel(Binding& b) {
    Control& control = *b.control;
    b.clickable = static_cast<bool>(control.onClick);
    b.footer = !b.clickable && IsVersionLine(control.Caption());
    b.title = control.Name() == "Label1" && !b.footer;
    b.label = PlainLabel(this);
    // A label takes the mouse itself, so that a click on it is never a click
    // on the window's background.
    b.label->installEventFilter(this);
    if (b.clickable) {
        b.label->setCursor(Qt::PointingHandCursor);
        b.label->setAttribute(Qt::WA_Hover);
        b.label->setFocusPolicy(Qt::TabFocus);
        b.label->setAlignment(Qt::AlignCenter);
    }
    if (b.title) {
        QFont font = b.label->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.3);
        b.label->setFont(font);
        b.label->setAlignment(Qt::AlignCenter);
    }
    if (b.footer) {
        QFont font = b.label->font();
        font.setPointSizeF(font.pointSizeF() * 0.9);
        b.label->setFont(font);
        b.label->setAlignment(Qt::AlignCenter);
    }
    return b.label;
}

QWidget* FormWindow::MakeList(Binding& b) {
    const ControlKind kind = b.control->Kind();
    auto* box = new QWidget(this);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    b.heading = PlainLabel(box);
    b.heading->setWordWrap(false);
    QFont small = b.heading->font();
    small.setBold(true);
    b.heading->setFont(small);
    column->addWidget(b.heading);
    if (kind == ControlKind::DriveList) {
        b.combo = new QComboBox(box);
        b.combo->setObjectName(ToQt(b.control->Name()) + QStringLiteral("_combo"));
        column->addWidget(b.combo);
    } else {
        b.list = new QListWidget(box);
        b.list->setObjectName(ToQt(b.control->Name()) + QStringLiteral("_list"));
        b.list->setMinimumHeight(kMinListHeight);
        b.list->setUniformItemSizes(true);
        b.list->viewport()->installEventFilter(this);
        column->addWidget(b.list, 1);
        if (kind == ControlKind::ListBox) b.heading->hide();
    }
    return box;
}

void FormWindow::Connect(Binding& b) {
    Control* control = b.control;
    if (b.button) {
        connect(b.button, &QPushButton::clicked, this, [this, control] {
            Deliver([control] {
                if (control->onClick) control->onClick();
            });
        });
    } else if (b.edit) {
        connect(b.edit, &QLineEdit::textEdited, this, [this, control](const QString& text) {
            if (syncing_) return;
            Deliver([control, typed = FromQt(text)] { control->Type(typed); });
        });
    } else if (b.combo) {
        connect(b.combo, &QComboBox::activated, this, [this, control](int index) {
            if (syncing_) return;
            Deliver([control, index] { control->Pick(index); });
        });
    } else if (b.list && control->Kind() == ControlKind::DirList) {
        // A folder opens on a double click or Enter, as in a file dialog; a
        // single click only marks it.
        QListWidget* list = b.list;
        connect(list, &QListWidget::itemActivated, this, [this, control, list](QListWidgetItem* item) {
            if (syncing_) return;
            const int row = list->row(item);
            Deliver([control, row] { control->Pick(row); });
        });
    } else if (b.list) {
        // A pick is one event however the entry was chosen: the change of
        // the current row (mouse press or keys) delivers it, and a click on
        // the entry that was already current delivers it again.
        QListWidget* list = b.list;
        Binding* binding = &b;
        connect(list, &QListWidget::currentRowChanged, this, [this, control](int row) {
            if (syncing_ || row < 0) return;
            Deliver([control, row] { control->Pick(row); });
        });
        connect(list, &QListWidget::itemClicked, this, [this, control, list, binding](QListWidgetItem* item) {
            const int row = list->row(item);
            const bool again = row == binding->rowAtPress;
            binding->rowAtPress = -1;
            if (syncing_ || !again) return;
            Deliver([control, row] { control->Pick(row); });
        });
        connect(list, &QListWidget::itemDoubleClicked, this, [this, control](QListWidgetItem*) {
            Deliver([control] {
                if (control->onDblClick) control->onDblClick();
            });
        });
    }
}

void FormWindow::Build() {
    bindings_.reserve(form_.Controls().size());  // bindings are referred to by address
    for (const auto& control : form_.Controls()) {
        builtFrom_.push_back(control.get());
        Bind(*control);
    }

    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(20, 16, 20, 14);
    page->setSpacing(10);
    setMinimumWidth(kMinWindowWidth);

    // The title, a little apart from what follows.
    for (Binding& b : bindings_) {
        if (!b.title) continue;
        page->addWidget(b.label);
        page->addSpacing(4);
    }

    // Message lines and clickable labels in the order they were made. A run
    // of clickable labels is one block: a grid when the captions are short,
    // else one under the other. A run of message lines is one block too,
    // closely spaced, so that lines written one after the other read as a
    // paragraph.
    // The last message line with a caption, when only empty lines follow it
    // (the lines the program will write), names the first text box ("Math
    // Equation"): it goes right above the box.
    Binding* heading = nullptr;
    bool emptyAfter = false;
    for (Binding& b : bindings_) {
        if (!b.label || b.title || b.footer || b.clickable) continue;
        if (!b.control->Caption().empty()) {
            heading = &b;
            emptyAfter = false;
        } else if (heading) {
            emptyAfter = true;
        }
    }
    const bool hasTextBox =
        std::any_of(bindings_.begin(), bindings_.end(), [](const Binding& b) { return b.edit != nullptr; });
    if (!emptyAfter || !hasTextBox) heading = nullptr;

    std::vector<Binding*> run;
    bool runClickable = false;
    auto flushRun = [&] {
        if (run.empty()) return;
        if (runClickable) {
            std::size_t longest = 0;
            for (Binding* b : run) longest = std::max(longest, b->control->Caption().size());
            if (run.size() >= 6 && longest <= kShortCaption) {
                auto* grid = new QGridLayout();
                grid->setHorizontalSpacing(8);
                grid->setVerticalSpacing(6);
                for (std::size_t i = 0; i < run.size(); ++i) {
                    // Short captions stay on one line: the grid is as wide
                    // as they need.
                    run[i]->label->setWordWrap(false);
                    grid->addWidget(run[i]->label, static_cast<int>(i) / kGridColumns,
                                    static_cast<int>(i) % kGridColumns);
                }
                page->addLayout(grid);
                run.clear();
                return;
            }
        }
        auto* column = new QVBoxLayout();
        column->setSpacing(runClickable ? 6 : 2);
        for (Binding* b : run) column->addWidget(b->label);
        page->addLayout(column);
        run.clear();
    };
    for (Binding& b : bindings_) {
        if (!b.label || b.title || b.footer || &b == heading) continue;
        // A label the program hides from the start ("Read URLs" among the
        // menu entries) stays in the block it stands in.
        const bool hidden = !b.control->Visible();
        if (!run.empty() && runClickable != b.clickable && !hidden) flushRun();
        if (run.empty() || !hidden) runClickable = b.clickable;
        run.push_back(&b);
    }
    flushRun();

    // Text boxes, the first under its heading.
    if (heading) page->addWidget(heading->label);
    for (Binding& b : bindings_)
        if (b.edit) page->addWidget(b.edit);

    // Lists: drive and folder lists in a column beside the file list; other
    // lists under them.
    bool hasLists = false;
    const auto isBrowser = [](const Binding& b) {
        const ControlKind kind = b.control->Kind();
        return kind == ControlKind::DriveList || kind == ControlKind::DirList ||
               kind == ControlKind::FileList;
    };
    if (std::any_of(bindings_.begin(), bindings_.end(), isBrowser)) {
        auto* browser = new QHBoxLayout();
        browser->setSpacing(12);
        auto* places = new QVBoxLayout();
        places->setSpacing(8);
        browser->addLayout(places, 1);
        for (Binding& b : bindings_) {
            const ControlKind kind = b.control->Kind();
            if (kind == ControlKind::DriveList) places->addWidget(b.outer);
            if (kind == ControlKind::DirList) places->addWidget(b.outer, 1);
            if (kind == ControlKind::FileList) browser->addWidget(b.outer, 1);
        }
        page->addLayout(browser, 1);
        hasLists = true;
    }
    for (Binding& b : bindings_) {
        if (b.control->Kind() == ControlKind::ListBox) {
            page->addWidget(b.outer, 1);
            hasLists = true;
        }
    }
    if (!hasLists) page->addStretch(1);

    // Buttons in one centred row.
    auto* row = new QHBoxLayout();
    row->setSpacing(10);
    row->addStretch(1);
    bool hasButtons = false;
    for (Binding& b : bindings_) {
        if (!b.button) continue;
        row->addWidget(b.button);
        hasButtons = true;
    }
    row->addStretch(1);
    if (hasButtons) {
        page->addLayout(row);
    } else {
        delete row;
    }

    // The version line at the foot, under a rule.
    bool ruled = false;
    for (Binding& b : bindings_) {
        if (!b.footer) continue;
        if (!ruled) {
            auto* rule = new QFrame(this);
            rule->setFrameShape(QFrame::HLine);
            rule->setFrameShadow(QFrame::Sunken);
            page->addWidget(rule);
            ruled = true;
        }
        page->addWidget(b.label);
    }
}

bool FormWindow::SyncControl(Binding& b) {
    const Control& control = *b.control;
    const ControlState& s = control.state;
    bool changed = false;

    const bool plainEmptyLabel = b.label && s.text.empty() && !s.backColour;
    const bool visible = s.visible && !plainEmptyLabel;
    if (b.outer->isHidden() == visible) {
        b.outer->setVisible(visible);
        changed = true;
    }
    if (b.outer->isEnabled() != s.enabled) {
        b.outer->setEnabled(s.enabled);
        changed = true;
    }

    const std::string sheet = StyleFor(b);
    if (sheet != b.shownStyle) {
        b.shownStyle = sheet;
        const QString css = QString::fromStdString(sheet);
        if (b.list) {
            b.list->setStyleSheet(css);
        } else if (b.combo) {
            b.combo->setStyleSheet(css);
        } else {
            b.outer->setStyleSheet(css);
        }
        if (b.label && b.clickable) {
            QFont font = b.label->font();
            font.setUnderline(!s.backColour);
            b.label->setFont(font);
        }
        changed = true;
    }

    if (b.label) {
        const QString text = ToQt(s.text);
        if (b.label->text() != text) {
            b.label->setText(text);
            changed = true;
        }
    } else if (b.button) {
        const QString text = ButtonText(s.text);
        if (b.button->text() != text) {
            b.button->setText(text);
            changed = true;
        }
    } else if (b.edit) {
        if (FromQt(b.edit->text()) != s.text) {
            b.edit->setText(ToQt(s.text));
            changed = true;
        }
    } else if (b.combo) {
        if (b.shownItems != s.items) {
            b.combo->clear();
            const QIcon drive = style()->standardIcon(QStyle::SP_DriveHDIcon);
            for (const std::string& item : s.items) b.combo->addItem(drive, ToQt(item));
            b.shownItems = s.items;
            changed = true;
        }
        // The list shows its drive even when no entry was picked.
        int current = s.listIndex;
        if (current < 0) {
            for (std::size_t i = 0; i < s.items.size(); ++i)
                if (QString::compare(ToQt(s.items[i]), ToQt(s.path), Qt::CaseInsensitive) == 0)
                    current = static_cast<int>(i);
        }
        if (b.combo->currentIndex() != current) {
            b.combo->setCurrentIndex(current);
            changed = true;
        }
    } else if (b.list) {
        const ControlKind kind = control.Kind();
        if (b.shownItems != s.items) {
            b.list->clear();
            const QIcon folder = style()->standardIcon(QStyle::SP_DirIcon);
            const QIcon up = style()->standardIcon(QStyle::SP_FileDialogToParent);
            const QIcon file = style()->standardIcon(QStyle::SP_FileIcon);
            for (const std::string& item : s.items) {
                auto* entry = new QListWidgetItem(ToQt(item), b.list);
                if (kind == ControlKind::DirList) entry->setIcon(item == ".." ? up : folder);
                if (kind == ControlKind::FileList) entry->setIcon(file);
            }
            b.shownItems = s.items;
            changed = true;
        }
        const int current = (s.listIndex >= 0 && s.listIndex < b.list->count()) ? s.listIndex : -1;
        if (kind != ControlKind::DirList && b.list->currentRow() != current) {
            b.list->setCurrentRow(current);
            changed = true;
        }
    }

    if (b.heading) {
        std::string heading;
        switch (control.Kind()) {
            case ControlKind::DriveList:
                heading = "Drive";
                break;
            case ControlKind::DirList:
                heading = "Folder " + s.path;
                break;
            case ControlKind::FileList:
                heading = s.pattern == "*.*" || s.pattern.empty() ? "Files" : "Files (" + s.pattern + ")";
                break;
            default:
                break;
        }
        if (heading != b.shownHeading) {
            b.shownHeading = heading;
            b.heading->setText(ToQt(heading));
            b.heading->setToolTip(ToQt(heading));
            changed = true;
        }
    }
    return changed;
}

void FormWindow::FitToContents(Fit fit) {
    QLayout* page = layout();
    if (!page || fitting_) return;
    fitting_ = true;
    page->activate();
    int width = this->width();
    if (fit != Fit::Height) {
        // As wide as the longest message line, so that it fits on one line
        // where the screen allows; a window grows for a longer line but
        // never shrinks under its user.
        width = fit == Fit::First ? kMinWindowWidth : this->width();
        const QMargins margins = page->contentsMargins();
        for (const Binding& b : bindings_) {
            if (!b.label || b.footer || !b.label->wordWrap() || b.outer->isHidden()) continue;
            const QMargins inner = b.label->contentsMargins();
            const int line = b.label->fontMetrics().horizontalAdvance(b.label->text()) + inner.left() +
                             inner.right() + margins.left() + margins.right() + 24;
            width = std::max(width, std::min(kMaxPreferredWidth, line));
        }
    }
    width = std::max(width, minimumSizeHint().width());
    // Wrapped lines need more height the narrower the window is.
    const int height =
        page->hasHeightForWidth() ? page->totalHeightForWidth(width) : page->totalSizeHint().height();
    if (minimumHeight() != height) setMinimumHeight(height);
    if (fit == Fit::First) {
        resize(width, height);
    } else if (this->height() < height || this->width() < width) {
        resize(std::max(this->width(), width), std::max(this->height(), height));
    }
    fitting_ = false;
}

void FormWindow::FocusFirst() {
    if (!form_.Focus().empty()) return;  // the program chose; Sync shows it
    for (Binding& b : bindings_) {
        if (b.edit && !b.outer->isHidden() && b.edit->isEnabled()) {
            b.edit->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
    setFocus(Qt::OtherFocusReason);
}

void FormWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitToContents(Fit::Height);
}

bool FormWindow::Sync() {
    syncing_ = true;
    bool changed = false;
    const QString caption = ToQt(form_.Caption());
    if (windowTitle() != caption) {
        setWindowTitle(caption);
        changed = true;
    }
    for (Binding& b : bindings_) changed |= SyncControl(b);
    if (form_.Focus() != shownFocus_) {
        shownFocus_ = form_.Focus();
        for (Binding& b : bindings_) {
            if (b.control->Name() != shownFocus_) continue;
            QWidget* target = b.edit    ? static_cast<QWidget*>(b.edit)
                              : b.list  ? static_cast<QWidget*>(b.list)
                              : b.combo ? static_cast<QWidget*>(b.combo)
                                        : b.outer;
            if (target->isVisibleTo(this)) target->setFocus(Qt::OtherFocusReason);
        }
    }
    syncing_ = false;
    if (changed) FitToContents(Fit::Grow);
    return changed;
}

void FormWindow::Deliver(const std::function<void()>& event) { sink_.Deliver(form_, event); }

// The title bar's close button unloads the window; the window's own unload
// event may cancel that, and then the window stays.
void FormWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!sink_.Deliver(form_, [this] { form_.Unload(); })) event->accept();
}

// The window's own key press event sees the keys that no control has taken:
// the window has the focus itself. Keys a focused control passes on (Enter
// in a text box) are that control's.
void FormWindow::keyPressEvent(QKeyEvent* event) {
    int key = KeyAscii(*event);
    if (key == 0 || (focusWidget() && focusWidget() != this)) {
        QWidget::keyPressEvent(event);
        return;
    }
    Deliver([this, &key] { form_.Form_KeyPress(key); });
}

void FormWindow::mousePressEvent(QMouseEvent* event) { pressedOnWindow_ = event->button() == Qt::LeftButton; }

void FormWindow::mouseReleaseEvent(QMouseEvent* event) {
    const bool click =
        pressedOnWindow_ && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint());
    pressedOnWindow_ = false;
    if (click) Deliver([this] { form_.Form_Click(); });
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    Binding* b = BindingOf(watched);
    if (!b) return QWidget::eventFilter(watched, event);
    Control* control = b->control;

    if (b->list && watched == b->list->viewport()) {
        if (event->type() == QEvent::MouseButtonPress) b->rowAtPress = b->list->currentRow();
        return false;
    }

    if (b->edit && event->type() == QEvent::KeyPress) {
        auto* keyEvent = static_cast<QKeyEvent*>(event);
        const int typed = KeyAscii(*keyEvent);
        if (typed == 0 || !control->onKeyPress) return false;
        int key = typed;
        Deliver([control, &key] { control->onKeyPress(key); });
        if (key == typed) return false;  // the key goes on as typed
        // The event function swallowed the key (0) or turned it into another
        // character, which is typed instead.
        if (key >= 32 && key < 256) b->edit->insert(QString(QChar(static_cast<char16_t>(key))));
        return true;
    }

    if (b->label) {
        switch (event->type()) {
            case QEvent::MouseButtonPress: {
                auto* mouse = static_cast<QMouseEvent*>(event);
                b->pressed = mouse->button() == Qt::LeftButton;
                return true;
            }
            case QEvent::MouseButtonRelease: {
                auto* mouse = static_cast<QMouseEvent*>(event);
                const bool click = b->pressed && mouse->button() == Qt::LeftButton &&
                                   b->label->rect().contains(mouse->position().toPoint());
                b->pressed = false;
                if (click && control->onClick && b->label->isEnabled())
                    Deliver([control] { control->onClick(); });
                return true;
            }
            case QEvent::MouseButtonDblClick:
                if (control->onDblClick && b->label->isEnabled())
                    Deliver([control] { control->onDblClick(); });
                return true;
            case QEvent::KeyPress: {
                // Space or Enter on a clickable label that has the focus.
                auto* keyEvent = static_cast<QKeyEvent*>(event);
                const int k = keyEvent->key();
                if (b->clickable && (k == Qt::Key_Space || k == Qt::Key_Return || k == Qt::Key_Enter)) {
                    Deliver([control] {
                        if (control->onClick) control->onClick();
                    });
                    return true;
                }
                return false;
            }
            default:
                return false;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace ravelo::ui::qt
