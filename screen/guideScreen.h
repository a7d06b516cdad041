#pragma once

#include <QTextBrowser>

namespace tessel {

/// The user guide with its pictures, in a second window. Both are part of the
/// program, so no other program and no installed file is needed to read it.
class GuideScreen : public QTextBrowser {
  public:
    GuideScreen();
    /// Shows the window where it was left, or the beginning of the guide, and brings it to the
    /// front.
    void Show();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace tessel
