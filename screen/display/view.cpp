#include "screen/display/view.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <algorithm>

#include "screen/display/accessible.h"

namespace tessel {
namespace {

/// The space between the frame and the text, in logical pixels.
constexpr int kMargin = 3;
/// The minimum interval between updates while the text grows, in milliseconds.
constexpr int kFollowPause = 16;
constexpr int kCaretWidth = 1;
/// The limit for distances from the visible area, in cells, so that pixels fit into an int.
constexpr std::int64_t kMaxDistance = 100'000;

int FloorDivide(int value, int by) { return value >= 0 ? value / by : -((by - 1 - value) / by); }

}  // namespace

DisplayView::DisplayView(DisplayBox& box, QWidget* parent)
    : QAbstractScrollArea(parent),
      Box(box),
      Down(verticalScrollBar(), [this] { InvalidateLayout(); }),
      Across(horizontalScrollBar(), [this] { InvalidateLayout(); }),
      Selection(box.Text),
      Find(new FindBar(
          box.Text,
          {[this] {
               Sync();
               return Selection.Range();
           },
           [this](TextRange hit) { Select(hit.From, hit.To); }, [this] { FindClosed(); }},
          this)),
      SeenGeneration(box.Text.Generation()) {
    InstallAccessibility();
    setAccessibleName(QStringLiteral("Display text"));
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    Find->hide();

    FollowTimer.setSingleShot(true);
    connect(&FollowTimer, &QTimer::timeout, this, [this] { Follow(); });
    connect(&Blink, &QTimer::timeout, this, [this] { ShowCaret(!CaretOn); });
    DragTimer.setInterval(30);
    connect(&DragTimer, &QTimer::timeout, this, [this] { ContinueDrag(); });
    Box.Text.Changed = [this] { FollowSoon(); };
    Box.Placeholder.Observe([this](const std::string& text) {
        setAccessibleDescription(QString::fromStdString(text));
        viewport()->update();
    });
    Sync();
}

DisplayView::~DisplayView() {
    Box.Text.Changed = nullptr;
    Box.Placeholder.Observe(nullptr);
}

// --- Following the text. ------------------------------------------------------------------------

void DisplayView::FollowSoon() {
    Stale = true;
    // A replaced text must not be painted until the timer fires.
    if (Box.Text.Generation() != SeenGeneration) InvalidateLayout();
    if (FollowTimer.isActive()) return;
    // A single change is shown at once, a series of changes at the update interval.
    const qint64 passed = SinceFollow.isValid() ? SinceFollow.elapsed() : kFollowPause;
    FollowTimer.start(static_cast<int>(std::clamp<qint64>(kFollowPause - passed, 0, kFollowPause)));
}

void DisplayView::Follow() {
    SinceFollow.start();
    Sync();
    VisibleLayout();
    UpdateBars();
    NotifyText(*this);
}

void DisplayView::Sync() {
    if (!Stale) return;
    Stale = false;
    Rules = Font.Rules(Box.Text.TabStops);
    const std::int64_t lines = Box.Text.LineCount();
    const bool replaced = Box.Text.Generation() != SeenGeneration;
    if (replaced) {
        SeenGeneration = Box.Text.Generation();
        Selection.Select(0, 0);
        Dragging = false;
        DragTimer.stop();
        Find->CancelSearch();
        Widest = 0;
        Down.MoveTo(0);
        Across.MoveTo(0);
    }
    Selection.Clamp();
    // Text that is appended below the visible lines changes only the scroll bar.
    const bool below =
        !replaced && lines >= SeenLines && !Lines.empty() && Lines.back().Line < SeenLines - 1;
    SeenLines = lines;
    if (!below) InvalidateLayout();
    UpdateBars();
}

void DisplayView::UpdateBars() {
    const int rows = VisibleLineCount();
    const int columns = VisibleColumnCount();
    Down.SetRange(SeenLines - rows, rows);
    // One more column, so that the caret after the widest line is visible.
    Across.SetRange(Widest < columns ? 0 : Widest + 1 - columns, columns);
}

const std::vector<LineLayout>& DisplayView::VisibleLayout() {
    if (Lines.empty()) {
        Lines = LayLines(Box.Text, TopLine(), VisibleLineCount() + 1, LeftColumn(),
                         VisibleColumnCount() + 1, Rules);
        const std::int64_t before = Widest;
        for (const LineLayout& line : Lines) Widest = std::max(Widest, line.Columns);
        // Not immediately: this may be a paint event, and a new scroll bar resizes the viewport.
        if (Widest != before && !FollowTimer.isActive()) FollowTimer.start(0);
    }
    return Lines;
}

void DisplayView::InvalidateLayout() {
    Lines.clear();
    viewport()->update();
}

QString DisplayView::VisibleText() {
    Sync();
    QString text;
    const std::int64_t left = LeftColumn();
    const std::int64_t right = left + VisibleColumnCount() + 1;
    for (const LineLayout& line : VisibleLayout()) {
        if (line.Line != Lines.front().Line) text += u'\n';
        for (const DisplayCell& cell : line.Cells) {
            if (cell.Code == U' ') {
                const std::int64_t from = std::max(cell.Column, left);
                const std::int64_t to = std::min(cell.Column + cell.Columns, right);
                text += QString(to - from, u' ');
            } else {
                text += QString::fromUcs4(&cell.Code, 1);
            }
        }
    }
    return text;
}

// --- Geometry. ----------------------------------------------------------------------------------

int DisplayView::VisibleLineCount() const {
    return std::max(1, (viewport()->height() - 2 * kMargin) / Font.LineHeight());
}

int DisplayView::VisibleColumnCount() const {
    return std::max(1, (viewport()->width() - 2 * kMargin) / Font.CellWidth());
}

int DisplayView::LeftOf(std::int64_t column) const {
    const auto cells = std::clamp<std::int64_t>(column - LeftColumn(), -kMaxDistance, kMaxDistance);
    return kMargin + static_cast<int>(cells) * Font.CellWidth();
}

int DisplayView::TopOf(std::int64_t line) const {
    const auto lines = std::clamp<std::int64_t>(line - TopLine(), -kMaxDistance, kMaxDistance);
    return kMargin + static_cast<int>(lines) * Font.LineHeight();
}

QRect DisplayView::CellRect(TextOffset at) {
    Sync();
    const int x = LeftOf(ColumnOf(Box.Text, at, Rules));
    return {x, TopOf(Box.Text.LineAt(at)), Font.CellWidth(), Font.LineHeight()};
}

TextOffset DisplayView::OffsetAt(QPoint point, bool inside) {
    Sync();
    const int row = FloorDivide(point.y() - kMargin, Font.LineHeight());
    const int half = inside ? 2 * FloorDivide(point.x() - kMargin, Font.CellWidth())
                            : FloorDivide(2 * (point.x() - kMargin), Font.CellWidth());
    return OffsetInLine(Box.Text, TopLine() + row, 2 * LeftColumn() + half, Rules);
}

void DisplayView::ScrollToLine(std::int64_t line) {
    Sync();
    Down.MoveTo(line);
}

void DisplayView::ScrollToColumn(std::int64_t column) {
    Sync();
    VisibleLayout();
    UpdateBars();
    Across.MoveTo(column);
}

void DisplayView::SetZoom(int percent) {
    const int before = Font.Zoom();
    Font.SetZoom(percent);
    if (Font.Zoom() == before) return;
    UpdateBars();
    InvalidateLayout();
}

void DisplayView::resizeEvent(QResizeEvent*) {
    const QRect text = viewport()->geometry();
    Find->setGeometry(text.left(), text.bottom() + 1, text.width(), Find->sizeHint().height());
    UpdateBars();
    InvalidateLayout();
}

void DisplayView::scrollContentsBy(int, int) {
    Down.FollowBar();
    Across.FollowBar();
}

// --- Painting. ----------------------------------------------------------------------------------

void DisplayView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const bool focused = hasFocus() || Find->isAncestorOf(QApplication::focusWidget());
    const auto group = !isEnabled() ? QPalette::Disabled
                       : focused    ? QPalette::Active
                                    : QPalette::Inactive;
    painter.fillRect(event->rect(), palette().color(group, QPalette::Base));
    for (const LineLayout& line : VisibleLayout()) {
        const int top = TopOf(line.Line);
        if (top > event->rect().bottom()) break;
        if (top + Font.LineHeight() <= event->rect().top()) continue;
        PaintLine(painter, line, group);
    }
    if (Box.Text.Size() == 0) {
        painter.setFont(QApplication::font());
        painter.setPen(palette().color(group, QPalette::PlaceholderText));
        const QRect area = viewport()->rect().marginsRemoved(QMargins(12, 12, 12, 12));
        painter.drawText(area, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                         QString::fromStdString(Box.Placeholder));
    }
    if (CaretOn) painter.fillRect(CaretRect(), palette().color(group, QPalette::Text));
    if (hasFocus()) {
        painter.setPen(palette().color(group, QPalette::Highlight));
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void DisplayView::PaintLine(QPainter& painter, const LineLayout& line, QPalette::ColorGroup group) {
    const int top = TopOf(line.Line);
    const auto selected = Selection.Range();
    const std::span<const DisplayCell> cells = line.Cells;
    const auto cellAt = [&](TextOffset at) {
        const auto found =
            std::lower_bound(cells.begin(), cells.end(), at,
                             [](const DisplayCell& c, TextOffset a) { return c.At < a; });
        return static_cast<std::size_t>(found - cells.begin());
    };
    const std::size_t first = cellAt(selected.From);
    const std::size_t end = cellAt(selected.To);
    const QColor highlight = palette().color(group, QPalette::Highlight);
    if (first < end) {
        const int x = LeftOf(cells[first].Column);
        const int right = LeftOf(cells[end - 1].Column + cells[end - 1].Columns);
        painter.fillRect(x, top, right - x, Font.LineHeight(), highlight);
    }
    if (selected.From <= line.End && line.End < selected.To) {  // the line break
        painter.fillRect(LeftOf(line.Columns), top, Font.CellWidth() / 2, Font.LineHeight(),
                         highlight);
    }
    painter.setPen(palette().color(group, QPalette::Text));
    Font.Paint(painter, cells.first(first), LeftColumn(), kMargin, top);
    Font.Paint(painter, cells.subspan(end), LeftColumn(), kMargin, top);
    painter.setPen(palette().color(group, QPalette::HighlightedText));
    Font.Paint(painter, cells.subspan(first, end - first), LeftColumn(), kMargin, top);
}

QRect DisplayView::CaretRect() {
    const TextOffset caret = Selection.Caret();
    const int x = LeftOf(ColumnOf(Box.Text, caret, Rules));
    // Between two characters, not over one.
    return {x - 1, TopOf(Box.Text.LineAt(caret)), kCaretWidth, Font.LineHeight()};
}

void DisplayView::ShowCaret(bool on) {
    CaretOn = on;
    viewport()->update(CaretRect());
}

void DisplayView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    viewport()->update();
}

void DisplayView::focusInEvent(QFocusEvent*) {
    const int flash = QGuiApplication::styleHints()->cursorFlashTime() / 2;
    if (flash > 0) Blink.start(flash);
    CaretOn = true;
    viewport()->update();
}

void DisplayView::focusOutEvent(QFocusEvent*) {
    Blink.stop();
    CaretOn = false;
    viewport()->update();
}

}  // namespace tessel
