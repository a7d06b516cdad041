#include "screen/display/font.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "screen/display/scale.h"

namespace tessel {
namespace {

constexpr double kPoints = 8.25;

QFont FixedFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Liberation Mono has the widths of Courier New.
    for (const auto* family : {"Courier New", "Liberation Mono"}) {
        if (QFontDatabase::hasFamily(QLatin1String(family))) {
            font = QFont(QLatin1String(family));
            break;
        }
    }
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setKerning(false);
    return font;
}

}  // namespace

DisplayFont::DisplayFont() : Face(FixedFont()) {
    SetZoom(100);
    BaseWidth = Width;
}

void DisplayFont::SetZoom(int percent) {
    Percent = std::clamp(percent, kMinZoom, kMaxZoom);
    Face.setPointSizeF(kPoints * DesktopScale() * Percent / 100);
    Glyphs = QRawFont::fromFont(Face);
    const QFontMetricsF metrics(Face);
    // Whole pixels, so that all columns look alike. Without a fixed-pitch font the widest character
    // counts.
    const double widest =
        std::max(metrics.horizontalAdvance(u'0'), metrics.horizontalAdvance(u'W'));
    Width = std::max(1, static_cast<int>(std::lround(widest)));
    Height = std::max(1, static_cast<int>(std::ceil(metrics.height())));
    Ascent = static_cast<int>(std::lround(metrics.ascent()));
    GlyphOf.fill(0);
    for (char16_t code = u'!'; code < 0x7F; ++code) {
        const auto found = Glyphs.glyphIndexesForString(QString(QChar(code)));
        if (found.size() == 1) GlyphOf[code] = found[0];
    }
}

LayoutRules DisplayFont::Rules(const std::vector<int>& tabStops) {
    LayoutRules rules;
    const int cell = TwipsOf(BaseWidth);
    // Stops narrower than one character would not separate anything.
    for (const int twips : tabStops) {
        if (twips >= cell) rules.TabColumns.push_back((twips + cell - 1) / cell);
    }
    std::sort(rules.TabColumns.begin(), rules.TabColumns.end());
    rules.ColumnsOf = [this](char32_t code) { return ColumnsOf(code); };
    return rules;
}

int DisplayFont::ColumnsOf(char32_t code) {
    const auto known = Wide.constFind(code);
    if (known != Wide.constEnd()) return *known;
    QFont base = Face;
    base.setPointSizeF(kPoints * DesktopScale());
    const double advance = QFontMetricsF(base).horizontalAdvance(QString::fromUcs4(&code, 1));
    const int columns = advance > 1.5 * BaseWidth ? 2 : 1;
    Wide.insert(code, columns);
    return columns;
}

void DisplayFont::Paint(QPainter& painter, std::span<const DisplayCell> cells, std::int64_t left,
                        int x, int y) const {
    QList<quint32> indexes;
    QList<QPointF> positions;
    indexes.reserve(std::ssize(cells));
    positions.reserve(std::ssize(cells));
    for (const DisplayCell& cell : cells) {
        if (cell.Code == U' ') continue;
        const QPointF point(x + static_cast<int>(cell.Column - left) * Width, y + Ascent);
        if (cell.Code < GlyphOf.size() && GlyphOf[cell.Code] != 0) {
            indexes.append(GlyphOf[cell.Code]);
            positions.append(point);
        } else {
            painter.setFont(Face);
            painter.drawText(point, QString::fromUcs4(&cell.Code, 1));
        }
    }
    if (indexes.isEmpty()) return;
    QGlyphRun run;
    run.setRawFont(Glyphs);
    run.setGlyphIndexes(indexes);
    run.setPositions(positions);
    painter.drawGlyphRun(QPointF(0, 0), run);
}

}  // namespace tessel
