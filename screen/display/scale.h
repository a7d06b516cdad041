#pragma once

namespace tessel {

/// The factor by which windows are larger than designed: 1, or more where the desktop's default
/// font is larger than usual. Controls, lists and the display are all scaled by it. It is read from
/// the application's font once, at the first call.
double DesktopScale();

/// A length in logical pixels, and back in twips (at a scale of 1, 15 twips are one pixel).
int PixelsOf(int twips);
int TwipsOf(int pixels);

}  // namespace tessel
