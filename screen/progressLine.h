#pragma once

#include <QElapsedTimer>
#include <QProgressBar>
#include <optional>

namespace tessel {

/// A thin line that fills while something long runs. It appears once that has taken a moment, so
/// that nothing flickers while a person walks through small files.
class ProgressLine : public QProgressBar {
  public:
    explicit ProgressLine(QWidget* parent);
    /// The share that is done, 0 to 1; nothing when the work has ended.
    void Follow(std::optional<double> share);

    static constexpr int kHeight = 3;  // logical pixels

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QElapsedTimer SinceBegin;
};

}  // namespace tessel
