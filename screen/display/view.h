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

/// Shows a display record with text of any size: paints the visible lines, scrolls, selects, copies
/// and searches. It reads only the parts of the text that these need.
class DisplayView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    /// Follows the text of `box`, which must outlive the view. The owner sets the view's geometry.
    DisplayView(DisplayBox& box, QWidget* parent);
    ~DisplayView() override;

    std::int64_t TopLine() const { return Down.Position(); }
    std::int64_t LeftColumn() const { return Across.Position(); }
    /// The number of fully visible lines or columns, at least 1.
    int VisibleLineCount() const;
    int VisibleColumnCount() const;
    void ScrollToLine(std::int64_t line);
    void ScrollToColumn(std::int64_t column);
    /// Sets the font size in percent, see DisplayFont::SetZoom.
    void SetZoom(int percent);

    const TextDisplay& Text() const { return Box.Text; }
    /// The visible text as painted: lines separated by LF, a blank for each cell of a tab.
    QString VisibleText();

    TextOffset Anchor() const { return Selection.Anchor(); }
    TextOffset Caret() const { return Selection.Caret(); }
    /// Selects from `anchor` to `caret` and scrolls to the caret.
    void Select(TextOffset anchor, TextOffset caret);
    /// The selected bytes, at most kMaxCopied.
    std::string SelectedText() const;
    /// Puts the selection on the clipboard; shows a message if it is larger than kMaxCopied bytes.
    void Copy();
    static constexpr std::int64_t kMaxCopied = 64 << 20;

    /// Carries out a key of the view (find, find next, zoom), also one that another control of the
    /// window did not use. Returns false for any other key.
    bool RunViewCommand(QKeyEvent* event);
    /// Opens the find bar and puts a short selection into it.
    void ShowFind();
    FindBar& Finder() { return *Find; }

    /// The offset nearest to a point of the viewport, or with `inside` that of the cell at the
    /// point.
    TextOffset OffsetAt(QPoint point, bool inside = false);
    /// The bounds of the character at an offset, in the viewport.
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

    // User input.
    bool RunsEditCommand(QKeyEvent* event);
    bool MovesCaret(QKeyEvent* event);
    void SelectionMoved(bool ensureVisible);
    void EnsureVisible(TextOffset at);
    void BeginDrag(QPoint point, DisplaySelection::Unit unit);
    void ContinueDrag();
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

    std::vector<LineLayout> Lines;  // the visible lines; empty if they must be laid out again
    std::int64_t Widest = 0;        // columns of the widest line laid out so far

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
    QPoint WheelRemainder;      // wheel movement that has not made a whole line yet
};

}  // namespace tessel
