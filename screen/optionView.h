#pragma once

#include <QRadioButton>

namespace tessel {

/// One of a frame's option buttons. The record ensures that at most one is chosen, so the Tab key
/// reaches each button. Enter chooses the button, the arrow keys choose the one above or below.
class OptionView : public QRadioButton {
    Q_OBJECT

  public:
    OptionView(const QString& caption, QWidget* parent);

    static constexpr int kMarkPixels = 12;  ///< size of the mark; a button is 13 high
    static constexpr int kMarkSpacing = 4;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace tessel
