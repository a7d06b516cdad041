#include "screen/messageBox.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

#include "screen/qtHost.h"

namespace tessel {
namespace {

/// A message box that knows its text before it was cut.
class Box : public QMessageBox {
  public:
    Box(QString whole, bool* closedByEsc)
        : QMessageBox(DialogOwner()), Whole(std::move(whole)), ClosedByEsc(closedByEsc) {}

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Copy)) return QGuiApplication::clipboard()->setText(Whole);
        if (event->key() == Qt::Key_Escape && ClosedByEsc != nullptr) *ClosedByEsc = true;
        QMessageBox::keyPressEvent(event);
    }

  private:
    QString Whole;
    bool* ClosedByEsc;
};

/// Puts a zero-width space into long words, such as paths, where they may be broken.
QString BreakLongWords(QString text) {
    constexpr QChar kMayBreak(0x200B);
    constexpr int kLongWord = 60;
    int word = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        word = text[i].isSpace() ? 0 : word + 1;
        if (word > kLongWord && !text[i].isLowSurrogate()) {
            text.insert(i, kMayBreak);
            word = 0;
        }
    }
    return text;
}

/// At most `most` characters of a line: its middle becomes an ellipsis.
QString CutLine(const QString& line, qsizetype most) {
    if (line.size() <= most) return line;
    qsizetype head = most / 2;
    qsizetype tail = line.size() - (most - head);
    if (line[head].isLowSurrogate()) --head;
    if (line[tail].isLowSurrogate()) ++tail;
    return line.left(head) + QChar(0x2026) + line.mid(tail);
}

/// At most `mostLines` lines of at most `most` characters.
QString Cut(const QString& text, qsizetype most, qsizetype mostLines) {
    QStringList lines = text.split('\n');
    if (lines.size() > mostLines) {
        const qsizetype head = mostLines / 2;
        lines = lines.mid(0, head) + QStringList{QChar(0x2026)} +
                lines.mid(lines.size() - (mostLines - head));
    }
    for (QString& line : lines) line = CutLine(line, most);
    return lines.join('\n');
}

/// The text, cut as far as it takes to fit a box on the screen.
QString Fitting(const QString& text, const QWidget& box) {
    // A box wraps long texts at half the screen or 500 pixels; frame, margins and buttons need the
    // rest.
    const QSize room = box.screen()->availableSize();
    const int width = std::min(room.width() / 2, 500) - 100;
    const int height = room.height() - 200;
    struct Step {
        qsizetype Characters, Lines;
    };
    QString shown;
    for (const Step step : {Step{500, 24}, {300, 24}, {200, 18}, {120, 14}, {60, 12}, {30, 10}}) {
        shown = Cut(text, step.Characters, step.Lines);
        const QRect all(0, 0, width, 1 << 20);
        const QRect needed =
            box.fontMetrics().boundingRect(all, Qt::TextWordWrap, BreakLongWords(shown));
        if (needed.height() <= height) break;
    }
    return shown;
}

}  // namespace

QMessageBox::StandardButton ShowBox(const QString& title, const QString& text,
                                    QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton defaultButton, bool* closedByEsc) {
    const NormalPointerScope pause;
    // What a label also takes for the end of a line, a box has to count as one.
    QString whole = text;
    whole.replace("\r\n", "\n");
    for (const char16_t end : {u'\r', u'\v', u'\f', u'\u0085', u'\u2028', u'\u2029'}) {
        whole.replace(QChar(end), '\n');
    }
    Box box(whole, closedByEsc);
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    const QString shown = Fitting(whole, box);
    box.setText(BreakLongWords(shown));
    if (shown != whole) box.setDetailedText(whole);
    box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addItem(new QSpacerItem(TitleWidth(box), 0), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace tessel
