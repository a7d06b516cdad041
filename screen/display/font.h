#pragma once

#include <QFont>
#include <QHash>
#include <QRawFont>
#include <array>
#include <span>

#include "screen/display/text/lineLayout.h"

class QPainter;

namespace tessel {

/// The display's fixed-pitch font, and painting with it: every character stands in its own cell,
/// whatever advance its font would give it.
class DisplayFont {
  public:
    static constexpr int kLeastZoom = 50;
    static constexpr int kMostZoom = 400;

    DisplayFont();

    /// `percent` of 8.25 points, held within kLeastZoom and kMostZoom.
    void SetZoom(int percent);
    int Zoom() const { return Percent; }
    const QFont& Font() const { return Face; }

    int CellWidth() const { return Width; }    ///< logical pixels, at least 1
    int LineHeight() const { return Height; }  ///< logical pixels, at least 1

    /// The rules of layout for tab stops in twips. They hold at every zoom, and as long as this
    /// font lives.
    LayoutRules Rules(const std::vector<int>& tabStops);

    /// Paints cells of one line in the painter's pen colour. `x` is where column `left` begins, `y`
    /// the top of the line.
    void Paint(QPainter& painter, std::span<const DisplayCell> cells, std::int64_t left, int x,
               int y) const;

  private:
    int ColumnsOf(char32_t code);

    QFont Face;
    QRawFont Glyphs;
    std::array<quint32, 128> GlyphOf{};  // of ASCII; 0 when the font has none
    QHash<char32_t, int> Wide;           // columns of what is not ASCII, as measured
    int Percent = 100;
    int BaseWidth = 1;  // of a cell at 100 %
    int Width = 1;
    int Height = 1;
    int Ascent = 1;
};

}  // namespace tessel
