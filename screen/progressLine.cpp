#include "screen/progressLine.h"

#include <QPainter>

namespace tessel {
namespace {

constexpr int kDelay = 100;  // ms
constexpr int kSteps = 1000;

}  // namespace

ProgressLine::ProgressLine(QWidget* parent) : QProgressBar(parent) {
    setRange(0, kSteps);
    setTextVisible(false);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName("Progress");
    hide();
}

void ProgressLine::Follow(std::optional<double> fraction) {
    if (!fraction) {
        SinceBegin.invalidate();
        hide();
        return;
    }
    if (!SinceBegin.isValid()) SinceBegin.start();
    setValue(static_cast<int>(*fraction * kSteps));
    if (isHidden() && SinceBegin.elapsed() >= kDelay) {
        raise();
        show();
    }
}

void ProgressLine::paintEvent(QPaintEvent*) {
    // The frame of a style's progress bar needs more height than this line has.
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    painter.fillRect(0, 0, width() * value() / kSteps, height(),
                     palette().color(QPalette::Highlight));
}

}  // namespace tessel
