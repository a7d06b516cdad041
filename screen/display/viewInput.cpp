#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <algorithm>

#include "screen/display/accessible.h"
#include "screen/display/clipboardText.h"
#include "screen/display/view.h"
#include "util/numberText.h"

/// The display's user input: keys, wheel, mouse, clipboard, find bar.
namespace tessel {
namespace {

/// The largest selection, in bytes, that is offered as the primary selection.
constexpr std::int64_t kMaxPrimary = 1 << 20;
/// The largest selection, in bytes, that is put into the find bar.
constexpr std::int64_t kMaxQuery = 100;
constexpr int kColumnsPerNotch = 6;
constexpr int kNotch = 120;  // angle of a wheel notch, in eighths of a degree
constexpr int kZoomStep = 10;

/// The lines or columns that one timer event scrolls while the pointer is outside the viewport;
/// more the farther outside it is.
std::int64_t DragSteps(int position, int size, int cell) {
    const int over = position < 0 ? position : std::max(position - size + 1, 0);
    const std::int64_t steps = std::abs(over) / cell + 1;
    return over == 0 ? 0 : over < 0 ? -steps * steps : steps * steps;
}

}  // namespace

// --- Keys. --------------------------------------------------------------------------------------

void DisplayView::keyPressEvent(QKeyEvent* event) {
    Sync();
    if (RunsEditCommand(event) || RunViewCommand(event) || MovesCaret(event)) {
        event->accept();
    } else {
        event->ignore();  // such as Esc, which the window handles
    }
}

bool DisplayView::RunsEditCommand(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        Copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        Selection.Select(0, Box.Text.Size());
        SelectionMoved(false);
    } else {
        return false;
    }
    return true;
}

bool DisplayView::RunViewCommand(QKeyEvent* event) {
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->matches(QKeySequence::Find)) {
        ShowFind();
    } else if (event->key() == Qt::Key_F3) {
        if (Find->Query().isEmpty()) {
            ShowFind();
        } else {
            LayOutFindBar();
            Find->Search(event->modifiers().testFlag(Qt::ShiftModifier));
        }
    } else if (control && (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal)) {
        SetZoom(Font.Zoom() + kZoomStep);
    } else if (control && event->key() == Qt::Key_Minus) {
        SetZoom(Font.Zoom() - kZoomStep);
    } else if (control && event->key() == Qt::Key_0) {
        SetZoom(100);
    } else {
        return false;
    }
    return true;
}

bool DisplayView::MovesCaret(QKeyEvent* event) {
    using Move = DisplaySelection::Move;
    const auto others = Qt::ControlModifier | Qt::ShiftModifier | Qt::KeypadModifier;
    if (event->modifiers() & ~others) return false;
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    const int page = std::max(VisibleLineCount() - 1, 1);
    switch (event->key()) {
        case Qt::Key_Left:
            Selection.MoveCaret(control ? Move::kWordLeft : Move::kLeft, extend);
            break;
        case Qt::Key_Right:
            Selection.MoveCaret(control ? Move::kWordRight : Move::kRight, extend);
            break;
        case Qt::Key_Home:
            Selection.MoveCaret(control ? Move::kTextStart : Move::kLineStart, extend);
            break;
        case Qt::Key_End:
            Selection.MoveCaret(control ? Move::kTextEnd : Move::kLineEnd, extend);
            break;
        case Qt::Key_Up:
        case Qt::Key_Down: {
            const int step = event->key() == Qt::Key_Up ? -1 : 1;
            if (control) {
                Down.MoveTo(TopLine() + step);
                return true;
            }
            Selection.MoveLines(step, extend, Rules);
            break;
        }
        case Qt::Key_PageUp:
        case Qt::Key_PageDown: {
            const int step = event->key() == Qt::Key_PageUp ? -page : page;
            Down.MoveTo(TopLine() + step);
            Selection.MoveLines(step, extend, Rules);
            break;
        }
        default:
            return false;
    }
    SelectionMoved(true);
    return true;
}

// --- The selection. -----------------------------------------------------------------------------

void DisplayView::Select(TextOffset anchor, TextOffset caret) {
    Sync();
    Selection.Select(anchor, caret);
    EnsureVisible(Selection.Anchor());
    SelectionMoved(true);
}

void DisplayView::SelectionMoved(bool ensureVisible) {
    if (ensureVisible) EnsureVisible(Selection.Caret());
    if (hasFocus()) {
        CaretOn = true;
        if (Blink.isActive()) Blink.start();
    }
    viewport()->update();
    NotifySelection(*this);
}

void DisplayView::EnsureVisible(TextOffset at) {
    const std::int64_t column = ColumnOf(Box.Text, at, Rules);
    const int columns = VisibleColumnCount();
    // Columns first: their bar, when it appears, takes a line.
    Widest = std::max(Widest, column);
    UpdateBars();
    if (column < LeftColumn()) {
        Across.MoveTo(column < columns ? 0 : column - columns / 4);
    } else if (column >= LeftColumn() + columns) {
        Across.MoveTo(column - columns + columns / 4 + 1);
    }
    const std::int64_t line = Box.Text.LineAt(at);
    const int rows = VisibleLineCount();
    if (line < TopLine() - rows || line >= TopLine() + rows + rows) {
        Down.MoveTo(line - rows / 3);  // far away: with some lines around it
    } else if (line < TopLine()) {
        Down.MoveTo(line);
    } else if (line >= TopLine() + rows) {
        Down.MoveTo(line - rows + 1);
    }
}

std::string DisplayView::SelectedText() const {
    const TextRange range = Selection.Range();
    return Box.Text.Text(range.From, std::min(range.Size(), kMaxCopied));
}

void DisplayView::Copy() {
    Sync();
    if (Selection.IsEmpty()) return;
    const std::int64_t size = Selection.Range().Size();
    if (size <= kMaxCopied) {
        QApplication::clipboard()->setText(ClipboardText(Box.Text, Selection.Range()));
        return;
    }
    auto* box = new QMessageBox(
        QMessageBox::Information, QStringLiteral("Copy"),
        QStringLiteral("The selection is %1; at most %2 can be copied. To keep the whole text, use "
                       "Save Display.")
            .arg(QString::fromStdString(SizeText(size)),
                 QString::fromStdString(SizeText(kMaxCopied))),
        QMessageBox::Ok, window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    // Not modal to the program: an operation that is filling the display goes on.
    box->open();
}

void DisplayView::PutPrimarySelection() const {
    QClipboard* clipboard = QApplication::clipboard();
    const std::int64_t size = Selection.Range().Size();
    if (!clipboard->supportsSelection() || size == 0 || size > kMaxPrimary) return;
    clipboard->setText(ClipboardText(Box.Text, Selection.Range()), QClipboard::Selection);
}

// --- The mouse. ---------------------------------------------------------------------------------

void DisplayView::BeginDrag(QPoint point, DisplaySelection::Unit unit) {
    Selection.BeginDrag(OffsetAt(point, unit != DisplaySelection::Unit::kCharacter), unit);
    Dragging = true;
    DragPoint = point;
    SelectionMoved(false);
}

void DisplayView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    Sync();
    const QPoint point = event->position().toPoint();
    const bool third = SinceDouble.isValid() &&
                       SinceDouble.elapsed() < QApplication::doubleClickInterval() &&
                       (point - DragPoint).manhattanLength() < QApplication::startDragDistance();
    SinceDouble.invalidate();
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        Selection.ExtendTo(OffsetAt(point));
        Dragging = true;
        DragPoint = point;
        SelectionMoved(false);
        return;
    }
    BeginDrag(point, third ? DisplaySelection::Unit::kLine : DisplaySelection::Unit::kCharacter);
}

void DisplayView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    Sync();
    BeginDrag(event->position().toPoint(), DisplaySelection::Unit::kWord);
    SinceDouble.start();
}

void DisplayView::mouseMoveEvent(QMouseEvent* event) {
    Sync();
    if (!Dragging || !event->buttons().testFlag(Qt::LeftButton)) return;
    DragPoint = event->position().toPoint();
    if (!viewport()->rect().contains(DragPoint)) {
        if (!DragTimer.isActive()) DragTimer.start();
        return;
    }
    DragTimer.stop();
    ContinueDrag();
}

void DisplayView::ContinueDrag() {
    Sync();
    if (!Dragging) return;  // the text was replaced meanwhile
    const QRect area = viewport()->rect();
    Down.MoveTo(TopLine() + DragSteps(DragPoint.y(), area.height(), Font.LineHeight()));
    Across.MoveTo(LeftColumn() + DragSteps(DragPoint.x(), area.width(), Font.CellWidth()));
    const QPoint inside(std::clamp(DragPoint.x(), 0, std::max(area.right(), 0)),
                        std::clamp(DragPoint.y(), 0, std::max(area.bottom(), 0)));
    Selection.DragTo(OffsetAt(inside));
    SelectionMoved(false);
}

void DisplayView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    Sync();
    DragTimer.stop();
    if (Dragging) PutPrimarySelection();
    Dragging = false;
}

void DisplayView::wheelEvent(QWheelEvent* event) {
    Sync();
    event->accept();
    // X11 drivers report unusable pixel deltas.
    const bool pixels =
        !event->pixelDelta().isNull() && QGuiApplication::platformName() != QLatin1String("xcb");
    const bool zoom = event->modifiers().testFlag(Qt::ControlModifier);
    const QPoint delta = pixels && !zoom ? event->pixelDelta() : event->angleDelta();
    const bool turned = event->modifiers().testFlag(Qt::ShiftModifier) && delta.x() == 0;
    WheelRemainder += turned ? delta.transposed() : delta;
    const auto take = [](int& remainder, int part, int times) {
        const int whole = remainder * times / part;
        remainder -= whole * part / times;
        return whole;
    };
    if (zoom) {
        SetZoom(Font.Zoom() + take(WheelRemainder.ry(), kNotch, 1) * kZoomStep);
    } else if (pixels) {
        Down.MoveTo(TopLine() - take(WheelRemainder.ry(), Font.LineHeight(), 1));
        Across.MoveTo(LeftColumn() - take(WheelRemainder.rx(), Font.CellWidth(), 1));
    } else {
        const int lines = std::max(QApplication::wheelScrollLines(), 1);
        Down.MoveTo(TopLine() - take(WheelRemainder.ry(), kNotch, lines));
        Across.MoveTo(LeftColumn() - take(WheelRemainder.rx(), kNotch, kColumnsPerNotch));
    }
}

void DisplayView::contextMenuEvent(QContextMenuEvent* event) {
    Sync();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copy = menu->addAction(QStringLiteral("Copy"), this, [this] { Copy(); });
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(!Selection.IsEmpty());
    QAction* all = menu->addAction(QStringLiteral("Select All"), this, [this] {
        Selection.Select(0, Box.Text.Size());
        SelectionMoved(false);
    });
    all->setShortcut(QKeySequence::SelectAll);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Find"), this, [this] { ShowFind(); })
        ->setShortcut(QKeySequence::Find);
    menu->popup(event->globalPos());
}

// --- The find bar. ------------------------------------------------------------------------------

void DisplayView::ShowFind() {
    Sync();
    const std::int64_t size = Selection.Range().Size();
    const QString selected = size <= kMaxQuery ? QString::fromStdString(SelectedText()) : QString();
    LayOutFindBar();
    Find->Open(selected.contains(u'\n') || selected.contains(u'\r') ? QString() : selected);
}

void DisplayView::LayOutFindBar() {
    setViewportMargins(0, 0, 0, Find->sizeHint().height());
    Find->show();
}

void DisplayView::FindClosed() {
    setViewportMargins(0, 0, 0, 0);
    setFocus(Qt::OtherFocusReason);
}

}  // namespace tessel
