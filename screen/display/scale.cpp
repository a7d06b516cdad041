#include "screen/display/scale.h"

#include <QApplication>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

#include "platform/controls.h"

namespace tessel {
namespace {

/// Desktops' usual default fonts have up to this many points.
constexpr double kUsualPoints = 11;
constexpr double kMaxScale = 3;

}  // namespace

double DesktopScale() {
    static const double scale =
        std::clamp(QFontInfo(QApplication::font()).pointSizeF() / kUsualPoints, 1.0, kMaxScale);
    return scale;
}

int PixelsOf(int twips) {
    return static_cast<int>(std::lround(twips * DesktopScale() / kTwipsPerPixel));
}

int TwipsOf(int pixels) {
    return static_cast<int>(std::lround(pixels * kTwipsPerPixel / DesktopScale()));
}

}  // namespace tessel
