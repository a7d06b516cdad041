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
    /// Shows which fraction is done, 0 to 1; hides the line for nullopt.
    void Follow(std::optional<double> fraction);

    static constexpr int kHeight = 3;  // logical pixels

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QElapsedTimer SinceBegin;
};

}  // namespace tessel
