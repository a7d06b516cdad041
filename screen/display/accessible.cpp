#include "screen/display/accessible.h"

#include <QAccessibleWidget>
#include <algorithm>
#include <limits>

#include "screen/display/text/lineLayout.h"
#include "screen/display/view.h"

namespace tessel {
namespace {

/// The text that one answer or event holds at most, in bytes. A bus that carries it has a limit.
constexpr std::int64_t kMaxAnswer = 1 << 20;
/// The part of the visible lines that an event holds at most, in bytes.
constexpr std::int64_t kMaxVisible = 1 << 15;

/// UTF-16 units in the part of a longer text that is offered at a time: offsets are of type int.
constexpr std::int64_t kWindow = std::numeric_limits<int>::max();
/// That part moves when the caret is closer to its end than this, in UTF-16 units.
constexpr std::int64_t kWindowMargin = 1 << 20;

/// The part of a text of `type` that contains `at`: a character, a word, or for any other type a
/// line with its line break. Of a long line it is a part of kLongLine bytes.
TextRange PartAt(const TextDisplay& text, TextOffset at, QAccessible::TextBoundaryType type) {
    at = CharacterStart(text, at);
    const bool character = type == QAccessible::CharBoundary;
    const bool word = type == QAccessible::WordBoundary;
    if (character || (word && at >= text.LineEnd(text.LineAt(at)))) {
        return {at, NextOffset(text, at)};
    }
    if (word) return WordAt(text, at);
    TextRange line = WholeLineAt(text, at);
    if (line.Size() > kLongLine) {
        TextOffset from = line.From + (at - line.From) / kLongLine * kLongLine;
        // A character that crosses the end of a part belongs to the next one.
        if (at >= CharacterStart(text, from + kLongLine)) from += kLongLine;
        line = {CharacterStart(text, from),
                CharacterStart(text, std::min(line.To, from + kLongLine))};
    }
    return line;
}

class DisplayAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit DisplayAccessible(DisplayView* view)
        : QAccessibleWidget(view, QAccessible::EditableText), View(*view), Text(view->Text()) {
        MoveWindow();
        Remember();
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? View.VisibleText() : QAccessibleWidget::text(kind);
    }

    int characterCount() const override { return UnitOf(Text.Size()); }

    QString text(int start, int end) const override {
        return Read({OffsetOf(start), OffsetOf(end)});
    }

    // The toolkit's implementations of these three do not terminate at the end of the text.
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                         int* end) const override {
        return Answer(Part(OffsetOf(offset), type), start, end);
    }

    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                             int* end) const override {
        const TextOffset from = Part(OffsetOf(offset), type).From;
        const TextOffset first = OffsetOf(0);
        const bool none = from <= first;
        return Answer(none ? TextRange{first, first} : Part(PreviousOffset(Text, from), type),
                      start, end);
    }

    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                            int* end) const override {
        return Answer(Part(Part(OffsetOf(offset), type).To, type), start, end);
    }

    int cursorPosition() const override { return UnitOf(View.Caret()); }

    void setCursorPosition(int position) override {
        const TextOffset at = OffsetOf(position);
        View.Select(at, at);
    }

    void selection(int index, int* start, int* end) const override {
        *start = *end = 0;
        if (index != 0) return;
        *start = UnitOf(std::min(View.Anchor(), View.Caret()));
        *end = UnitOf(std::max(View.Anchor(), View.Caret()));
    }

    int selectionCount() const override { return View.Anchor() == View.Caret() ? 0 : 1; }

    void addSelection(int start, int end) override { View.Select(OffsetOf(start), OffsetOf(end)); }

    void setSelection(int index, int start, int end) override {
        if (index == 0) addSelection(start, end);
    }

    void removeSelection(int index) override {
        if (index == 0) View.Select(View.Caret(), View.Caret());
    }

    QRect characterRect(int offset) const override {
        const QRect cell = View.CellRect(OffsetOf(offset));
        return {View.viewport()->mapToGlobal(cell.topLeft()), cell.size()};
    }

    int offsetAtPoint(const QPoint& point) const override {
        const QPoint inside = View.viewport()->mapFromGlobal(point);
        if (!View.viewport()->rect().contains(inside)) return -1;
        return UnitOf(View.OffsetAt(inside, true));
    }

    void scrollToSubstring(int start, int) override {
        View.ScrollToLine(Text.LineAt(OffsetOf(start)));
    }

    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    /// Reports a change of the text since the last call.
    void NotifyChange() {
        const bool replaced = Text.Generation() != SeenGeneration;
        const TextOffset added = replaced ? 0 : SeenSize;
        if (!replaced && Text.Size() == SeenSize) return;
        if (replaced) {
            WindowStart = 0;
            if (!Seen.isEmpty()) Notify(QAccessibleTextRemoveEvent(&View, SeenAt, Seen));
        }
        MoveWindow();
        Remember();
        const TextRange visible = Visible();
        if (added >= visible.To) return;
        const TextRange shown{std::max(added, visible.From), visible.To};
        Notify(QAccessibleTextInsertEvent(&View, UnitOf(shown.From), Read(shown)));
    }

    /// Reports that the caret or the selection has changed.
    void NotifySelection() {
        NotifyChange();
        const int seenAt = SeenAt;
        const QString seen = Seen;
        if (MoveWindow()) {
            // Every offset is another one now.
            Remember();
            Notify(QAccessibleTextRemoveEvent(&View, seenAt, seen));
            Notify(QAccessibleTextInsertEvent(&View, SeenAt, Seen));
        }
        if (selectionCount() == 0) {
            Notify(QAccessibleTextCursorEvent(&View, cursorPosition()));
            return;
        }
        int start = 0;
        int end = 0;
        selection(0, &start, &end);
        Notify(QAccessibleTextSelectionEvent(&View, start, end));
    }

  private:
    template <class Event>
    void Notify(Event&& event) const {
        event.setCursorPosition(cursorPosition());
        QAccessible::updateAccessibility(&event);
    }

    int UnitOf(TextOffset at) const {
        const std::int64_t unit = Text.Utf16Before(at) - WindowStart;
        return static_cast<int>(std::clamp<std::int64_t>(unit, 0, kWindow));
    }
    TextOffset OffsetOf(int unit) const {
        return Text.OffsetOfUtf16(WindowStart + std::clamp(unit, 0, characterCount()));
    }

    TextRange Part(TextOffset at, QAccessible::TextBoundaryType type) const {
        if (type == QAccessible::NoBoundary) return {OffsetOf(0), OffsetOf(characterCount())};
        return PartAt(Text, at, type);
    }
    QString Answer(TextRange range, int* start, int* end) const {
        *start = UnitOf(range.From);
        *end = UnitOf(range.To);
        return Read(range);
    }
    /// The text of a range; of a long one its first kMaxAnswer bytes.
    QString Read(TextRange range) const {
        return QString::fromStdString(Text.Text(range.From, std::min(range.Size(), kMaxAnswer)));
    }
    /// The visible lines, within the window; of long ones the beginning.
    TextRange Visible() const {
        const std::int64_t top = View.TopLine();
        const TextOffset from = std::max(Text.LineStart(top), OffsetOf(0));
        const TextOffset to = Text.LineStart(top + View.VisibleLineCount());
        return {from, std::clamp(to, from, from + kMaxVisible)};
    }

    /// Moves the window so that the caret is well within it; returns whether that changed it.
    bool MoveWindow() {
        const std::int64_t before = WindowStart;
        const std::int64_t size = Text.Utf16Before(Text.Size());
        const std::int64_t caret = Text.Utf16Before(View.Caret()) - WindowStart;
        if (size <= kWindow) {
            WindowStart = 0;
        } else if ((caret < kWindowMargin && WindowStart > 0) ||
                   (caret > kWindow - kWindowMargin && WindowStart + kWindow < size)) {
            const TextOffset start = Text.OffsetOfUtf16(WindowStart + caret - kWindow / 2);
            WindowStart = Text.Utf16Before(PartAt(Text, start, QAccessible::LineBoundary).From);
        }
        return WindowStart != before;
    }

    /// Remembers the text that the next event refers to.
    void Remember() {
        SeenGeneration = Text.Generation();
        SeenSize = Text.Size();
        const TextRange visible = Visible();
        SeenAt = UnitOf(visible.From);
        Seen = Read(visible);
    }

    DisplayView& View;
    const TextDisplay& Text;
    std::int64_t WindowStart = 0;  // UTF-16 units before the part of the text that is offered
    std::uint64_t SeenGeneration = 0;
    TextOffset SeenSize = 0;
    int SeenAt = 0;
    QString Seen;
};

QAccessibleInterface* MakeAccessible(const QString& className, QObject* object) {
    if (className != QLatin1String("tessel::DisplayView")) return nullptr;
    auto* view = qobject_cast<DisplayView*>(object);
    return view == nullptr ? nullptr : new DisplayAccessible(view);
}

DisplayAccessible& InterfaceOf(DisplayView& view) {
    return static_cast<DisplayAccessible&>(*QAccessible::queryAccessibleInterface(&view));
}

}  // namespace

void InstallAccessibility() {
    // Installing the same factory again has no effect.
    QAccessible::installFactory(MakeAccessible);
}

void NotifyText(DisplayView& view) { InterfaceOf(view).NotifyChange(); }

void NotifySelection(DisplayView& view) { InterfaceOf(view).NotifySelection(); }

}  // namespace tessel
