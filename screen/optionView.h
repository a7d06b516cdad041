#pragma once

#include <QRadioButton>

namespace tessel {

/// One of the buttons of a frame of which at most one is chosen; the record keeps to that, so each
/// button is a stop of its own on the way of the Tab key. Enter chooses it, the arrow keys the one
/// above or below.
class OptionView : public QRadioButton {
    Q_OBJECT

  public:
    OptionView(const QString& caption, QWidget* parent);

    static constexpr int kMarkPixels = 12;  ///< of the mark, in a button that is 13 high
    static constexpr int kMarkSpacing = 4;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace tessel
