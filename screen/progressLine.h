#pragma once

#include <QElapsedTimer>
#include <QProgressBar>
#include <optional>

namespace tessel {

/// A thin line that fills while a long operation runs. It appears after a short delay, so that
/// nothing flickers while the user browses small files.
class ProgressLine : public QProgressBar {
  public:
    explicit ProgressLine(QWidget* parent);
    /// Shows the share that is done, 0 to 1; hides the line when `share` is empty.
    void Follow(std::optional<double> share);

    static constexpr int kHeight = 3;  // logical pixels

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QElapsedTimer SinceBegin;
};

}  // namespace tessel
