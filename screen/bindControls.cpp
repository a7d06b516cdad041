#include "screen/bindControls.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QShortcut>
#include <algorithm>
#include <cmath>
#include <utility>

#include "screen/display/scale.h"

namespace tessel {
namespace {

constexpr int kCaptionPixels = 11;
constexpr int kMinCaptionPixels = 8;
constexpr int kBusyDelay = 50;  // ms
/// The height above the first control inside a frame.
constexpr int kFrameCaptionTwips = 240;

/// The palette with the text colours of disabled controls.
QPalette DisabledLook(QPalette colours) {
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setBrush(QPalette::Active, role, colours.brush(QPalette::Disabled, role));
        colours.setBrush(QPalette::Inactive, role, colours.brush(QPalette::Disabled, role));
    }
    return colours;
}

/// One line of plain text: a name from an image is never interpreted as markup or as a mnemonic.
class LabelView : public QLabel {
  public:
    LabelView(Label& label, const QString& meaning, QWidget* parent)
        : QLabel(parent), Record(label), Meaning(meaning) {
        setTextFormat(Qt::PlainText);
    }

    void Follow() {
        const QString text = SingleLine(Record.Caption);
        const QString hint = SingleLine(Record.Hint);
        setText(text);
        setAccessibleName(text);
        setAccessibleDescription(hint.isEmpty() ? Meaning : Meaning + ". " + hint);
        const bool fits = fontMetrics().horizontalAdvance(text) <= width();
        setToolTip((fits ? QString() : TipText(text)) + TipText(hint));
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(Foreground());
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideRight, width()));
    }

  private:
    QColor Foreground() const {
        if (Record.Colour == TextColour::kBlack) return palette().color(QPalette::WindowText);
        const bool dark = palette().color(QPalette::Window).lightness() < 128;
        return dark ? QColor(110, 170, 255) : QColor(0, 0, 255);
    }

    Label& Record;
    QString Meaning;
};

/// A frame whose top line runs through the middle of its caption in every style, so that it does
/// not touch the controls inside.
class FrameView : public QGroupBox {
  public:
    using QGroupBox::QGroupBox;

  protected:
    void paintEvent(QPaintEvent*) override {
        constexpr int kIndent = 8;
        const QRect caption(kIndent, 0, fontMetrics().horizontalAdvance(title()) + 6,
                            fontMetrics().height());
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(caption, Qt::AlignCenter, title());
        painter.setClipRegion(QRegion(rect()).subtracted(caption));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRoundedRect(rect().adjusted(0, caption.center().y(), -1, -1), 2, 2);
    }
};

/// Chooses entries by their first letter: the only entry with a letter is triggered at once,
/// several are highlighted in turn.
class MenuView : public QMenu {
  public:
    using QMenu::QMenu;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        const QString letter = event->text();
        QList<QAction*> named;
        for (QAction* action : actions()) {
            const bool fits = action->text().startsWith(letter, Qt::CaseInsensitive);
            if (fits && action->isEnabled() && !action->isSeparator()) named.append(action);
        }
        if (letter.isEmpty() || !letter.front().isLetter() || named.isEmpty()) {
            return QMenu::keyPressEvent(event);
        }
        const qsizetype next = (named.indexOf(activeAction()) + 1) % named.size();
        setActiveAction(named[next]);
        if (named.size() == 1) {
            QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QMenu::keyPressEvent(&enter);
        }
    }
};

}  // namespace

QString ToQt(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString SingleLine(const std::string& text) {
    QString line = ToQt(text);
    for (QChar& unit : line) {
        if (unit.category() == QChar::Other_Control) unit = u' ';
    }
    return line;
}

QString TipText(const QString& line) {
    constexpr int kLongLine = 60;
    if (line.isEmpty()) return "";
    const QString style = line.size() <= kLongLine ? " style='white-space:pre'" : "";
    return "<div" + style + ">" + line.toHtmlEscaped() + "</div>";
}

QRect ToPixels(const ControlBounds& bounds) {
    return {PixelsOf(bounds.Left), PixelsOf(bounds.Top), PixelsOf(bounds.Width),
            PixelsOf(bounds.Height)};
}

QFont CaptionFont(QSize available, const QString& caption) {
    QFont font;
    font.setFamilies({"Arial", "Liberation Sans", "Helvetica", font.family()});
    font.setStyleHint(QFont::SansSerif);
    const auto designed = static_cast<int>(std::lround(kCaptionPixels * DesktopScale()));
    int pixels = std::max(QFontInfo(QApplication::font()).pixelSize(), designed);
    const auto fits = [&] {
        font.setPixelSize(pixels);
        const QFontMetrics metrics(font);
        const bool highEnough = pixels <= designed || metrics.height() <= available.height();
        return highEnough && metrics.horizontalAdvance(caption) <= available.width();
    };
    while (!fits() && pixels > kMinCaptionPixels) --pixels;
    return font;
}

EnabledStates::EnabledStates(QObject* parent) : QObject(parent) {
    Delay.setSingleShot(true);
    Delay.setInterval(kBusyDelay);
    connect(&Delay, &QTimer::timeout, this, [this] { ShowAll(); });
}

void EnabledStates::Follow(Property<bool>& enabled, QWidget& widget) {
    Controls.push_back({&widget, &enabled});
    widget.installEventFilter(this);
    enabled.Observe([this, &widget](bool on) {
        if (on) widget.setPalette({});
        if (on || !widget.isVisible()) {
            widget.setEnabled(on);
        } else if (!Delay.isActive()) {
            Delay.start();
        }
        if (on && &widget == Awaited) std::exchange(Awaited, nullptr)->setFocus();
    });
}

void EnabledStates::ShowAll() {
    for (const Control& control : Controls) {
        QWidget& widget = *control.Widget;
        if (*control.Enabled || widget.window()->focusWidget() != &widget) {
            widget.setEnabled(*control.Enabled);
        } else {
            widget.setPalette(DisabledLook(widget.palette()));
        }
    }
}

bool EnabledStates::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::FocusOut) return false;
    // A menu and another window return the focus.
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool returns = reason == Qt::MenuBarFocusReason || reason == Qt::PopupFocusReason ||
                         reason == Qt::ActiveWindowFocusReason;
    if (!returns) Delay.start();
    return false;
}

void EnterButton::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) {
        QPushButton::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        click();
    }
}

QWidget* BindFrame(const Frame& frame, QWidget* parent) {
    auto* box = new FrameView(ToQt(frame.Caption), parent);
    box->setGeometry(ToPixels(frame.Bounds));
    box->setFont(CaptionFont({box->width(), PixelsOf(kFrameCaptionTwips)}, box->title()));
    return box;
}

QWidget* BindLabel(Label& label, const QString& meaning, QWidget* parent) {
    auto* view = new LabelView(label, meaning, parent);
    view->setGeometry(ToPixels(label.Bounds));
    view->setFont(CaptionFont(view->size()));
    label.Caption.Observe([view](const std::string&) { view->Follow(); });
    label.Hint.Observe([view](const std::string&) { view->Follow(); });
    label.Colour.Observe([view](TextColour) { view->update(); });
    return view;
}

EnterButton* BindButton(Button& button, QWidget* parent) {
    const QString caption = ToQt(button.Caption);
    auto* view = new EnterButton(caption, parent);
    view->setGeometry(ToPixels(button.Bounds));
    view->setFont(CaptionFont(view->size() - QSize(6, 4), caption));
    view->setAutoDefault(false);
    QObject::connect(view, &QPushButton::clicked, view, [&button] { button.Press(); });
    button.Enabled.Observe([view](bool enabled) { view->setEnabled(enabled); });
    return view;
}

OptionView* BindOptionButton(OptionButton& option, QWidget* parent) {
    const QString caption = ToQt(option.Caption);
    auto* view = new OptionView(caption, parent);
    view->setGeometry(ToPixels(option.Bounds));
    const int mark = OptionView::kMarkPixels + OptionView::kMarkSpacing;
    view->setFont(CaptionFont(view->size() - QSize(mark, 0), caption));
    QObject::connect(view, &QRadioButton::clicked, view, [&option, view] {
        view->setChecked(option.Value);  // a second click has just unchecked it
        option.Press();
    });
    option.Value.Observe([view](bool value) { view->setChecked(value); });
    option.Enabled.Observe([view](bool enabled) { view->setEnabled(enabled); });
    return view;
}

QLineEdit* BindTextBox(TextBox& box, const QString& meaning, QWidget* parent) {
    auto* view = new QLineEdit(parent);
    view->setGeometry(ToPixels(box.Bounds));
    view->setFont(CaptionFont(view->size()));
    view->setAccessibleName(meaning);
    box.Text.Observe([view](const std::string& text) {
        // Typed text is reported here as well and must not move the caret.
        if (view->text() != ToQt(text)) view->setText(ToQt(text));
    });
    QObject::connect(view, &QLineEdit::textEdited, view,
                     [&box](const QString& text) { box.Text = text.toStdString(); });
    return view;
}

void BindMenu(Menu& menu, QMenuBar& bar) {
    auto* view = new MenuView(ToQt(menu.Caption), &bar);
    QAction* title = bar.addMenu(view);
    const auto letter = QKeySequence("Alt+" + title->text().left(1));
    QObject::connect(new QShortcut(letter, bar.window()), &QShortcut::activated, &bar,
                     [&bar, title] { bar.setActiveAction(title); });
    QObject::connect(view, &QMenu::aboutToShow, view, [&menu] { RaiseEvent(menu.Click); });
    for (MenuEntry& entry : menu.Entries) {
        if (entry.IsSeparator()) {
            view->addSeparator();
            continue;
        }
        QAction* action = view->addAction(ToQt(entry.Caption));
        action->setMenuRole(QAction::NoRole);
        // Queued, because a screen reader's request to choose the entry must return before a dialog
        // waits for the user.
        QObject::connect(
            action, &QAction::triggered, action, [&entry] { entry.Press(); }, Qt::QueuedConnection);
        entry.Enabled.Observe([action](bool enabled) { action->setEnabled(enabled); });
    }
}

void BindCaption(Window& window, QWidget& widget) {
    window.Caption.Observe([&widget](const std::string& caption) {
        // "[*]" marks a modified document; doubled, it is shown as it is.
        widget.setWindowTitle(ToQt(caption).replace("[*]", "[*][*]"));
    });
}

}  // namespace tessel
