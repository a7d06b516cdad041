#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollBar>
#include <QTest>
#include <limits>

#include "screen/display/view.h"

namespace tessel {
namespace {

constexpr std::int64_t kNumbered = 17;  // length of a numbered line

/// Lines such as "line 0000000042\r\n"; counts the bytes read.
GeneratedText NumberedLines(std::int64_t lines, std::int64_t& bytesRead) {
    GeneratedText text{lines * kNumbered, lines, {}, {}, {}};
    text.Read = [&bytesRead](TextOffset at, std::span<char> part) {
        bytesRead += std::ssize(part);
        std::string made;
        const auto skip = static_cast<std::size_t>(at % kNumbered);
        for (std::int64_t line = at / kNumbered; made.size() < skip + part.size(); ++line) {
            const std::string number = std::to_string(line);
            made += "line " + std::string(10 - number.size(), '0') + number + "\r\n";
        }
        made.copy(part.data(), part.size(), skip);
    };
    text.BreaksUpTo = [](TextOffset at) { return at / kNumbered; };
    text.AfterBreak = [](std::int64_t n) { return n * kNumbered; };
    return text;
}

class DisplayViewTest : public testing::Test {
  protected:
    DisplayViewTest() {
        Top.resize(700, 300);
        View.resize(700, 300);
        Top.show();
        View.setFocus();
        QCoreApplication::processEvents();
    }

    void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(&View, key, with);
    }
    QPoint At(TextOffset offset) {
        const QRect cell = View.CellRect(offset);
        return {cell.left() + 1, cell.center().y()};
    }
    void Drag(TextOffset from, TextOffset to) {
        QTest::mousePress(View.viewport(), Qt::LeftButton, {}, At(from));
        QTest::mouseMove(View.viewport(), At(to));
        QTest::mouseRelease(View.viewport(), Qt::LeftButton, {}, At(to));
    }
    /// The visible lines according to the record.
    std::string Expected() {
        const std::int64_t rows = View.VisibleLineCount() + 1;
        const std::int64_t count = std::min(rows, Box.Text.LineCount() - View.TopLine());
        std::string lines = Box.Text.Lines(View.TopLine(), count);
        std::erase(lines, '\r');
        if (View.TopLine() + count < Box.Text.LineCount()) lines.pop_back();
        return lines;
    }
    QLineEdit* Field() { return View.findChild<QLineEdit*>("findField"); }
    QString Find(const QString& text, Qt::KeyboardModifiers with = Qt::NoModifier) {
        Field()->setText(text);
        QTest::keyClick(Field(), Qt::Key_Return, with);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !View.Finder().IsSearching(); }, 20000));
        return View.Finder().Status();
    }

    DisplayBox Box;
    QWidget Top;
    DisplayView View{Box, &Top};
    std::int64_t BytesRead = 0;
};

TEST_F(DisplayViewTest, ShowsMoreLinesThanAScrollBarCounts) {
    Box.Text.Append("first\r\nsecond\n\r\n");
    Box.Text.Append(NumberedLines(3'000'000'000, BytesRead));
    EXPECT_EQ(View.VisibleText().toStdString(), Expected());
    View.ScrollToLine(2'999'000'001);
    View.verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(View.TopLine(), 2'999'000'002);
    EXPECT_EQ(View.VisibleText().toStdString(), Expected());
    const std::int64_t lastTop = Box.Text.LineCount() - View.VisibleLineCount();
    Key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(View.TopLine(), lastTop);
    View.verticalScrollBar()->setValue(0);
    EXPECT_EQ(View.TopLine(), 0);
    View.verticalScrollBar()->setValue(View.verticalScrollBar()->maximum());
    EXPECT_EQ(View.TopLine(), lastTop);
    EXPECT_TRUE(View.VisibleText().toStdString().ends_with("line 2999999999\n"));
    QTest::qWait(40);
    EXPECT_LT(BytesRead, 100'000);
}

TEST_F(DisplayViewTest, ShowsEachKindOfCharacterInItsCells) {
    for (int i = 0; i < 10; ++i) Box.Text.TabStops.push_back(9 * i);
    Box.Text.Replace(
        "\ta\t|\r\xC3\xBC\xFF"
        "e\x01\x7F\xE2\x80\xAE|\xC3");
    EXPECT_EQ(View.VisibleText().toStdString(),
              "        a       |\n\xC3\xBC\uFFFDe\uFFFD\uFFFD\uFFFD|\uFFFD");
    // A tab in a long line is one cell, so that nothing before it needs to be read.
    Box.Text.Replace(std::string(5000, 'x') + "\ty");
    Key(Qt::Key_End);
    EXPECT_TRUE(View.VisibleText().toStdString().ends_with("x y"))
        << View.VisibleText().toStdString();
}

TEST_F(DisplayViewTest, MouseSelectsAcrossPieces) {
    Box.Text.Append("one \xC3\xBC two\r\n");
    Box.Text.Append(NumberedLines(1000, BytesRead));
    Drag(4, 12 + kNumbered + 4);
    EXPECT_EQ(View.SelectedText(), "\xC3\xBC two\r\nline 0000000000\r\nline");
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "ü two\nline 0000000000\nline");
    // The right half of a character stands for the offset after it, never for one within it.
    const QRect cell = View.CellRect(4);
    QTest::mouseClick(View.viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      {cell.right(), cell.center().y()});
    EXPECT_EQ(View.Anchor(), 4);
    EXPECT_EQ(View.Caret(), 6);
    QTest::mouseDClick(View.viewport(), Qt::LeftButton, {}, At(8));
    EXPECT_EQ(View.SelectedText(), "two");
    QTest::mouseClick(View.viewport(), Qt::LeftButton, {}, At(8));
    EXPECT_EQ(View.SelectedText(), "one \xC3\xBC two\r\n");
}

TEST_F(DisplayViewTest, KeysMoveAndSelectByCharactersWordsAndLines) {
    Box.Text.Replace(
        "a\xC3\xBC"
        "b word\r\n\r\nlast");
    Key(Qt::Key_Right);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(View.SelectedText(), "\xC3\xBC");
    Key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(View.Caret(), 5);
    Key(Qt::Key_Right, Qt::ControlModifier);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(View.SelectedText(), "\r\n");
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_End);
    Key(Qt::Key_Down);
    EXPECT_EQ(View.Caret(), 11);
    Key(Qt::Key_Down);  // keeps the column if the line is long enough
    EXPECT_EQ(View.Caret(), Box.Text.Size());
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(View.Caret(), 13);
}

TEST_F(DisplayViewTest, RefusesToCopyMoreThanTheLimit) {
    Box.Text.Append(NumberedLines(100'000'000, BytesRead));
    QApplication::clipboard()->setText("before");
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    auto* box = Top.findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains("1.6 GB") && box->text().contains("64.0 MB"));
    box->close();
    EXPECT_EQ(QApplication::clipboard()->text(), "before");
    EXPECT_LT(BytesRead, 100'000);
}

TEST_F(DisplayViewTest, FindsAcrossStepsAndWrapsAround) {
    constexpr std::size_t position = TextSearch::kStep - 9;  // across the end of a step from 4 on
    Box.Text.Append("Mark here\r\n");
    std::string line(3 * TextSearch::kStep, 'x');
    Box.Text.Append(line.replace(position, 4, "maRK"));
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(View.Finder().isVisible());
    EXPECT_EQ(Find("mark"), "");
    EXPECT_EQ(View.SelectedText(), "Mark");
    EXPECT_EQ(Find("mark"), "");
    EXPECT_EQ(View.SelectedText(), "maRK");
    EXPECT_NE(View.VisibleText().toStdString().find("maRK"), std::string::npos);
    EXPECT_EQ(Find("mark"), "Continued from the top");
    EXPECT_EQ(View.SelectedText(), "Mark");
    EXPECT_EQ(Find("mark", Qt::ShiftModifier), "Continued from the end");
    EXPECT_EQ(View.SelectedText(), "maRK");
    EXPECT_EQ(Find("mark", Qt::ShiftModifier), "");
    EXPECT_EQ(View.SelectedText(), "Mark");
    EXPECT_EQ(Find("marker"), "No match");

    // A new text ends a running search.
    Field()->setText("nowhere");
    QTest::keyClick(Field(), Qt::Key_Return);
    EXPECT_TRUE(View.Finder().IsSearching());
    Box.Text.Replace("nowhere");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !View.Finder().IsSearching(); }, 5000));
    EXPECT_EQ(View.SelectedText(), "");
    QTest::keyClick(Field(), Qt::Key_Escape);
    EXPECT_FALSE(View.Finder().isVisible());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&View, &escape);
    EXPECT_FALSE(escape.isAccepted());  // the window handles it
}

TEST_F(DisplayViewTest, OneLineOf256MegabytesScrollsToItsEnd) {
    const std::int64_t size = 256 << 20;
    GeneratedText line{size, 0, {}, {}, {}};
    line.Read = [this](TextOffset, std::span<char> part) {
        BytesRead += std::ssize(part);
        std::fill(part.begin(), part.end(), 'x');
    };
    line.BreaksUpTo = line.AfterBreak = [](std::int64_t) { return 0; };
    Box.Text.Append(line);
    Key(Qt::Key_End);
    EXPECT_EQ(View.Caret(), size);
    EXPECT_EQ(View.LeftColumn() + std::ssize(View.VisibleText().toStdString()), size);
    EXPECT_LT(BytesRead, 1'000'000);
    Key(Qt::Key_Home);
    EXPECT_EQ(View.LeftColumn(), 0);
}

TEST_F(DisplayViewTest, FollowsGrowthAndResetsWithANewText) {
    Box.Text.Append(NumberedLines(5, BytesRead));
    View.Select(3, 8);
    Box.Text.GrowLast(500 * kNumbered, 500);
    EXPECT_EQ(View.VisibleText().toStdString(), Expected());
    EXPECT_EQ(View.SelectedText(), "e 000");
    View.ScrollToLine(400);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return View.verticalScrollBar()->maximum() == 501 - View.VisibleLineCount(); }));
    // The text is replaced by a shorter one while the mouse button is down.
    QTest::mousePress(View.viewport(), Qt::LeftButton, {}, QPoint(60, 60));
    Box.Text.Clear();
    QTest::mouseMove(View.viewport(), QPoint(90, 400));
    QTest::mouseRelease(View.viewport(), Qt::LeftButton, {}, QPoint(90, 400));
    EXPECT_EQ(View.VisibleText().toStdString(), "");
    EXPECT_EQ(View.TopLine(), 0);
    Box.Text.Replace("new");
    EXPECT_EQ(View.VisibleText().toStdString(), "new");
    EXPECT_EQ(View.Caret(), 0);
    for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(5, 200), QSize(200, 5)}) {
        View.resize(size);
        Key(Qt::Key_PageDown, Qt::ShiftModifier);
        View.viewport()->repaint();
    }
    EXPECT_EQ(View.Caret(), 0);
}

TEST_F(DisplayViewTest, ScreenReadersReadTheWholeText) {
    const std::string before = "\xC3\xBC \xF0\x9F\x98\x80\r\n";  // 9 bytes, 6 UTF-16 units
    Box.Text.Append(before);
    Box.Text.Append(NumberedLines(1000, BytesRead));
    auto* reader = QAccessible::queryAccessibleInterface(&View);
    ASSERT_NE(reader, nullptr);
    EXPECT_TRUE(reader->state().readOnly);
    auto* text = reader->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->characterCount(), 6 + 1000 * kNumbered);
    EXPECT_EQ(text->text(0, 11).toStdString(), before + "line ");
    const auto at500 = static_cast<int>(6 + 500 * kNumbered);
    EXPECT_EQ(text->text(at500, at500 + 15), "line 0000000500");
    text->setCursorPosition(at500 + 5);
    EXPECT_EQ(View.Caret(), 9 + 500 * kNumbered + 5);
    EXPECT_EQ(text->cursorPosition(), at500 + 5);
    int from = 0;
    int to = 0;
    EXPECT_EQ(text->textAtOffset(at500 + 5, QAccessible::WordBoundary, &from, &to), "0000000500");
    EXPECT_EQ(text->textBeforeOffset(at500, QAccessible::LineBoundary, &from, &to),
              "line 0000000499\r\n");
    EXPECT_EQ(to, at500);
    const int end = text->characterCount();
    EXPECT_EQ(text->textAtOffset(end, QAccessible::WordBoundary, &from, &to), "");
    EXPECT_EQ(to, end);
}

TEST_F(DisplayViewTest, ScreenReadersGetAPartOfATextBeyondTheirOffsets) {
    Box.Text.Append(NumberedLines(3'000'000'000, BytesRead));
    auto* text = QAccessible::queryAccessibleInterface(&View)->textInterface();
    EXPECT_EQ(text->characterCount(), std::numeric_limits<int>::max());
    // The caret's line is the same by every way to it, and a position set there leads back to it.
    for (const std::int64_t line : {std::int64_t{2'999'999'999}, std::int64_t{200'000'000}}) {
        const TextOffset start = line * kNumbered;
        View.Select(start, start + 4);
        int from = 0;
        int to = 0;
        text->selection(0, &from, &to);
        EXPECT_EQ(text->text(from, to), "line");
        const QString read =
            text->textAtOffset(text->cursorPosition(), QAccessible::LineBoundary, &from, &to);
        EXPECT_TRUE(read.trimmed().endsWith(QString::number(line))) << read.toStdString();
        text->setCursorPosition(from + 2);
        EXPECT_EQ(View.Caret(), start + 2);
    }
    EXPECT_LT(text->text(0, text->characterCount()).size(), 2'000'000) << "an answer has a limit";
    EXPECT_LT(BytesRead, 10'000'000);
}

}  // namespace
}  // namespace tessel
