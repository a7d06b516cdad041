#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QTimer>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "screen/display/findBar.h"
#include "screen/display/font.h"
#include "screen/display/scrollAxis.h"
#include "screen/display/text/lineLayout.h"
#include "screen/display/text/textSelection.h"

namespace tessel {

/// The text that is in sight, as painted: lines parted by LF, a blank for each cell of a tab.
struct VisibleText {
    QString Text;
    /// For each 16-bit unit of Text the place that it stands for, and one more for the end.
    std::vector<TextOffset> Offsets;
    /// The first unit of Text whose place is `at` or behind it.
    int UnitOf(TextOffset at) const;
};

/// Shows a display record: paints the lines in sight of a text of any size, scrolls, selects,
/// copies and searches. It never reads more of the text than that takes.
class DisplayView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    /// Follows `box`, which must outlive the view. Where it stands is the window's business.
    DisplayView(DisplayBox& box, QWidget* parent);
    ~DisplayView() override;

    std::int64_t TopLine() const { return Down.Position(); }
    std::int64_t LeftColumn() const { return Across.Position(); }
    /// How many lines and columns are wholly in sight; at least 1.
    int VisibleLineCount() const;
    int VisibleColumnCount() const;
    void ScrollToLine(std::int64_t line);
    void ScrollToColumn(std::int64_t column);
    /// `percent` of the font's own size.
    void SetZoom(int percent);

    VisibleText ReadVisibleText();
    std::string VisibleString() { return ReadVisibleText().Text.toStdString(); }

    TextOffset Anchor() const { return Selection.Anchor(); }
    TextOffset Caret() const { return Selection.Caret(); }
    /// Selects from `anchor` to `caret` and brings the caret into sight.
    void Select(TextOffset anchor, TextOffset caret);
    /// The selected bytes, at most kMostCopied of them.
    std::string SelectedText() const;
    /// Puts the selection on the clipboard; tells the person when it is larger than kMostCopied.
    void Copy();
    static constexpr std::int64_t kMostCopied = 64 << 20;

    /// Opens the find line, with the selection in it when that is short.
    void ShowFind();
    FindBar& Finder() { return *Find; }

    /// The place nearest to a point of the viewport, or the one of the cell that it lies `inside`.
    TextOffset OffsetAt(QPoint point, bool inside = false);
    /// Where the character at a place stands in the viewport.
    QRect CellRect(TextOffset at);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    // Following the text.
    void FollowSoon();
    void Follow();
    void Sync();
    void UpdateBars();
    const std::vector<LineLayout>& VisibleLayout();
    void InvalidateLayout();

    // Painting.
    void PaintLine(QPainter& painter, const LineLayout& line, QPalette::ColorGroup group);
    int LeftOf(std::int64_t column) const;
    int TopOf(std::int64_t line) const;
    QRect CaretRect();
    void ShowCaret(bool on);

    // A person's hand.
    bool RunsCommand(QKeyEvent* event);
    bool MovesCaret(QKeyEvent* event);
    void SelectionMoved(bool ensureVisible);
    void EnsureVisible(TextOffset at);
    void BeginDrag(QPoint point, DisplaySelection::Unit unit);
    void DragOn();
    void PutPrimarySelection() const;
    void LayOutFindBar();
    void FindClosed();

    DisplayBox& Box;
    DisplayFont Font;
    LayoutRules Rules;
    ScrollAxis Down;
    ScrollAxis Across;
    DisplaySelection Selection;
    FindBar* Find;

    std::vector<LineLayout> Lines;  // in sight; empty when they must be laid out anew
    std::int64_t Widest = 0;        // of the lines seen so far, in columns

    bool Stale = true;  // the text has changed since the last Sync
    std::uint64_t SeenGeneration = 0;
    std::int64_t SeenLines = 0;
    QTimer FollowTimer;
    QElapsedTimer SinceFollow;

    bool CaretOn = false;
    QTimer Blink;

    bool Dragging = false;
    QPoint DragPoint;
    QTimer DragTimer;
    QElapsedTimer SinceDouble;  // since a double click, at DragPoint
    QPoint WheelRest;           // what of the wheel's way has not made a whole line yet
};

}  // namespace tessel
