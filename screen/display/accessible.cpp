#include "screen/display/accessible.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <algorithm>

#include "screen/display/view.h"

namespace tessel {
namespace {

struct Part {
    int Start;
    int End;
};

/// Units of the same kind make a word.
int WordKind(QChar unit) {
    if (unit == u'\n') return 0;
    return unit.isSpace() ? 1 : unit.isLetterOrNumber() || unit == u'_' ? 2 : 3;
}

/// The character, word or line of `text` that holds `offset`; lines with their line break, and
/// lines for whatever else is asked for. Behind the last character there is an empty part.
Part PartAt(const QString& text, int offset, QAccessible::TextBoundaryType type) {
    const auto size = static_cast<int>(text.size());
    offset = std::clamp(offset, 0, size);
    if (type == QAccessible::NoBoundary) return {0, size};
    if (type == QAccessible::CharBoundary || type == QAccessible::WordBoundary) {
        if (offset == size) return {size, size};
        Part part{offset, offset + 1};
        if (type == QAccessible::CharBoundary) return part;
        const int kind = WordKind(text[offset]);
        while (part.Start > 0 && WordKind(text[part.Start - 1]) == kind) --part.Start;
        while (part.End < size && WordKind(text[part.End]) == kind) ++part.End;
        return part;
    }
    const auto start = offset == 0 ? 0 : text.lastIndexOf(u'\n', offset - 1) + 1;
    const auto end = text.indexOf(u'\n', offset);
    return {static_cast<int>(start), end < 0 ? size : static_cast<int>(end) + 1};
}

QString Cut(const QString& text, Part part, int* start, int* end) {
    *start = part.Start;
    *end = part.End;
    return text.mid(part.Start, part.End - part.Start);
}

class DisplayAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit DisplayAccessible(DisplayView* view)
        : QAccessibleWidget(view, QAccessible::EditableText), View(*view) {}

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
        if (kind == QAccessible::Value) return View.ReadVisibleText().Text;
        return QAccessibleWidget::text(kind);
    }

    int characterCount() const override {
        return static_cast<int>(View.ReadVisibleText().Text.size());
    }

    QString text(int start, int end) const override {
        return View.ReadVisibleText().Text.mid(start, end - start);
    }

    // The toolkit's own answers to these three never return for a place at the end of the text.
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                         int* end) const override {
        const QString text = View.ReadVisibleText().Text;
        return Cut(text, PartAt(text, offset, type), start, end);
    }

    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                             int* end) const override {
        const QString text = View.ReadVisibleText().Text;
        const Part here = PartAt(text, offset, type);
        const Part before = here.Start > 0 ? PartAt(text, here.Start - 1, type) : Part{0, 0};
        return Cut(text, before, start, end);
    }

    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                            int* end) const override {
        const QString text = View.ReadVisibleText().Text;
        const auto size = static_cast<int>(text.size());
        const int behind = PartAt(text, offset, type).End;
        return Cut(text, behind < size ? PartAt(text, behind, type) : Part{size, size}, start, end);
    }

    int cursorPosition() const override { return View.ReadVisibleText().UnitOf(View.Caret()); }

    void setCursorPosition(int position) override {
        const TextOffset at = PlaceOf(position);
        View.Select(at, at);
    }

    void selection(int index, int* start, int* end) const override {
        *start = *end = 0;
        if (index != 0) return;
        const VisibleText window = View.ReadVisibleText();
        *start = window.UnitOf(std::min(View.Anchor(), View.Caret()));
        *end = window.UnitOf(std::max(View.Anchor(), View.Caret()));
    }

    int selectionCount() const override { return View.Anchor() == View.Caret() ? 0 : 1; }

    void addSelection(int start, int end) override { View.Select(PlaceOf(start), PlaceOf(end)); }

    void setSelection(int index, int start, int end) override {
        if (index == 0) addSelection(start, end);
    }

    void removeSelection(int index) override {
        if (index == 0) View.Select(View.Caret(), View.Caret());
    }

    QRect characterRect(int offset) const override {
        const QRect cell = View.CellRect(PlaceOf(offset));
        return {View.viewport()->mapToGlobal(cell.topLeft()), cell.size()};
    }

    int offsetAtPoint(const QPoint& point) const override {
        const QPoint inside = View.viewport()->mapFromGlobal(point);
        if (!View.viewport()->rect().contains(inside)) return -1;
        return View.ReadVisibleText().UnitOf(View.OffsetAt(inside, true));
    }

    // What can be named is in sight.
    void scrollToSubstring(int, int) override {}

    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

  private:
    TextOffset PlaceOf(int unit) const {
        const VisibleText window = View.ReadVisibleText();
        const auto last = static_cast<int>(window.Offsets.size()) - 1;
        return window.Offsets[static_cast<std::size_t>(std::clamp(unit, 0, last))];
    }

    DisplayView& View;
};

QAccessibleInterface* MakeAccessible(const QString& className, QObject* object) {
    if (className != QLatin1String("tessel::DisplayView")) return nullptr;
    auto* view = qobject_cast<DisplayView*>(object);
    return view == nullptr ? nullptr : new DisplayAccessible(view);
}

}  // namespace

void InstallAccessibility() {
    // Installing the same factory again changes nothing.
    QAccessible::installFactory(MakeAccessible);
}

bool AccessibilityActive() { return QAccessible::isActive(); }

void NotifyVisibleLines(DisplayView& view) {
    if (!AccessibilityActive()) return;
    // The text last told is kept with the view that it was told of.
    constexpr const char* kTold = "toldText";
    const QString old = view.property(kTold).toString();
    const QString now = view.ReadVisibleText().Text;
    if (now == old) return;
    view.setProperty(kTold, now);
    QAccessibleTextUpdateEvent event(&view, 0, old, now);
    event.setCursorPosition(view.ReadVisibleText().UnitOf(view.Caret()));
    QAccessible::updateAccessibility(&event);
}

void NotifySelection(DisplayView& view) {
    if (!AccessibilityActive()) return;
    const VisibleText window = view.ReadVisibleText();
    const int caret = window.UnitOf(view.Caret());
    if (view.Anchor() == view.Caret()) {
        QAccessibleTextCursorEvent event(&view, caret);
        QAccessible::updateAccessibility(&event);
        return;
    }
    const int anchor = window.UnitOf(view.Anchor());
    QAccessibleTextSelectionEvent event(&view, std::min(anchor, caret), std::max(anchor, caret));
    event.setCursorPosition(caret);
    QAccessible::updateAccessibility(&event);
}

}  // namespace tessel
