#pragma once

#include <QFont>
#include <QPointer>
#include <QPushButton>
#include <QRect>
#include <QString>
#include <string>

#include "platform/controls.h"
#include "screen/optionView.h"

class QLineEdit;
class QMenuBar;

/// Shows the control records as widgets. A record must outlive the widget made for it. All widgets
/// stand where their records say, whatever font the desktop prefers.
namespace tessel {

QString ToQt(const std::string& text);

/// 15 twips are one logical pixel.
QRect ToPixels(const ControlBounds& place);

/// The font of captions, 8.25 points of the size that the places were drawn for; smaller when
/// `caption` would not fit into `room` logical pixels.
QFont CaptionFont(const QString& caption = {}, int room = 0);

/// Gives the keyboard back to the control that lost it by being disabled, once it is enabled again:
/// a person who holds an arrow key in the list stays in the list while views come and go.
class FocusRestorer {
  public:
    void SetEnabled(QWidget& widget, bool enabled);
    /// The keyboard goes to `widget` when it is enabled for the first time.
    void Expect(QWidget& widget) { Lost = &widget; }

  private:
    QPointer<QWidget> Lost;
    QPointer<QWidget> Fallback;  // where the toolkit put the keyboard then
};

/// A push button that also Enter presses while it has the keyboard.
class EnterButton : public QPushButton {
  public:
    using QPushButton::QPushButton;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

QWidget* BindFrame(const Frame& frame, QWidget* parent);
/// `meaning` tells a person who cannot see the window what the text is.
QWidget* BindLabel(Label& label, const QString& meaning, QWidget* parent);
EnterButton* BindButton(Button& button, QWidget* parent);
OptionView* BindOptionButton(OptionButton& option, QWidget* parent);
QLineEdit* BindTextBox(TextBox& box, const QString& meaning, QWidget* parent);
/// Captions carry no marks for the keyboard: Alt and a menu's first letter open it, and in it the
/// first letter of an entry chooses that.
void BindMenu(Menu& menu, QMenuBar& bar);

/// Shows a window's caption in the title bar of `widget`.
void BindCaption(Window& window, QWidget& widget);

}  // namespace tessel
