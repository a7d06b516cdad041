#pragma once

#include <QFont>
#include <QPushButton>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTimer>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "screen/optionView.h"

class QLineEdit;
class QMenuBar;

/// Shows the control records as widgets. A record must outlive its widget. Every widget has the
/// bounds that its record gives, regardless of the desktop's font.
namespace tessel {

QString ToQt(const std::string& text);
/// The text, which may come from an image, as one line: control characters become blanks.
QString SingleLine(const std::string& text);
/// Plain text as a part of a tool tip: a short text on one line, a long one wrapped.
QString TipText(const QString& line);

/// Twips as logical pixels, at the scale of DesktopScale().
QRect ToPixels(const ControlBounds& bounds);

/// The font of captions, in the size of the desktop's font where `available` (logical pixels) is
/// high and wide enough, otherwise in the size that the bounds are designed for, 8.25 points, or as
/// much smaller as `caption` needs.
QFont CaptionFont(QSize available, const QString& caption = {});

/// Shows which controls are enabled. In a visible window controls are disabled after a short delay,
/// so that short operations change nothing on screen, nor for screen readers. A control that has
/// the focus stays enabled for the toolkit, because disabling it would move the focus. In both
/// cases the record ignores the user.
class EnabledStates : public QObject {
  public:
    explicit EnabledStates(QObject* parent);
    /// `widget` follows `enabled` from now on.
    void Follow(Property<bool>& enabled, QWidget& widget);

    /// Gives `widget` the focus when its record is enabled the next time.
    void FocusNext(QWidget& widget) { Awaited = &widget; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Control {
        QWidget* Widget;
        const Property<bool>* Enabled;
    };
    void ShowAll();

    std::vector<Control> Controls;
    QWidget* Awaited = nullptr;
    QTimer Delay;
};

/// A push button that Enter presses, too, while it has the focus.
class EnterButton : public QPushButton {
  public:
    using QPushButton::QPushButton;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

QWidget* BindFrame(const Frame& frame, QWidget* parent);
/// `meaning` describes the text; it is part of the accessible description.
QWidget* BindLabel(Label& label, const QString& meaning, QWidget* parent);
EnterButton* BindButton(Button& button, QWidget* parent);
OptionView* BindOptionButton(OptionButton& option, QWidget* parent);
QLineEdit* BindTextBox(TextBox& box, const QString& meaning, QWidget* parent);
/// Captions have no mnemonics: Alt and a menu's first letter open the menu, and an entry's first
/// letter chooses the entry.
void BindMenu(Menu& menu, QMenuBar& bar);

/// Shows the record's caption in the title bar of `widget`.
void BindCaption(Window& window, QWidget& widget);

}  // namespace tessel
