#pragma once

#include <QFont>
#include <QHash>
#include <QRawFont>
#include <array>
#include <span>

#include "screen/display/text/lineLayout.h"

class QPainter;

namespace tessel {

/// The display's fixed-pitch font. It paints every character in its own cell, regardless of the
/// glyph's advance.
class DisplayFont {
  public:
    static constexpr int kMinZoom = 50;
    static constexpr int kMaxZoom = 400;

    DisplayFont();

    /// Sets the size to `percent` of 8.25 points, clamped to kMinZoom and kMaxZoom.
    void SetZoom(int percent);
    int Zoom() const { return Percent; }
    const QFont& Font() const { return Face; }

    int CellWidth() const { return Width; }    ///< logical pixels, at least 1
    int LineHeight() const { return Height; }  ///< logical pixels, at least 1

    /// The layout rules for tab stops in twips. They are valid at every zoom and refer to this
    /// font.
    LayoutRules Rules(const std::vector<int>& tabStops);

    /// Paints cells of one line in the painter's pen colour. `x` is the left edge of column `left`,
    /// `y` the top of the line, both in logical pixels.
    void Paint(QPainter& painter, std::span<const DisplayCell> cells, std::int64_t left, int x,
               int y) const;

  private:
    int ColumnsOf(char32_t code);

    QFont Face;
    QRawFont Glyphs;
    std::array<quint32, 128> GlyphOf{};  // glyphs of ASCII characters; 0 if the font has none
    QHash<char32_t, int> Wide;           // measured columns of characters beyond ASCII
    int Percent = 100;
    int BaseWidth = 1;  // cell width at 100 %
    int Width = 1;
    int Height = 1;
    int Ascent = 1;
};

}  // namespace tessel
