#include <QAccessible>
#include <QClipboard>
#include <QFontInfo>
#include <QGroupBox>
#include <QTest>
#include <QTextBlock>
#include <numeric>

#include "tests/gui/screenTest.h"
#include "volume/modGlobals.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

class MainScreenTest : public ScreenTest {
  protected:
    /// The selected line, or -1 if the record, the view and the display disagree about it.
    int Line() {
        const int line = Form->listDIR.ListIndex();
        const QModelIndex shown = List->currentIndex();
        const bool selected = shown.row() == line && List->selectionModel()->isSelected(shown);
        return selected && DisplayText().starts_with(Form->listDIR.Text(line)) ? line : -1;
    }
    /// Opens a FAT16 volume of nearly 2 GB, a sparse file on the host, that one file fills, and
    /// chooses Dump.
    void OpenBigImage() {
        Layout layout = Layout::Fat16(65002, 64);
        const int sectors = std::exchange(layout.LargeSectors, 1024);  // the rest is zeros
        Image image(layout);
        std::vector<int> chain(65000);
        std::iota(chain.begin(), chain.end(), 2);
        image.Link(chain);
        image.Add(0, {.Name = "BIG.BIN", .Cluster = 2, .Size = std::int64_t{65000} * 32768});
        image.Poke(32, std::string(reinterpret_cast<const char*>(&sectors), sizeof sectors));
        const std::string path = Write("big.img", image.File());
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(sectors) * 512);
        OpenImage(path);
        Click(The("Dump"));
    }
    /// Expects a part of the big file's dump in the display, and the window not busy.
    void ExpectStopped() {
        const std::int64_t lines = Form->rtfDisplay.Text.LineCount();
        EXPECT_TRUE(lines > 1000 && lines < std::int64_t{65000} * 2048) << lines;
        EXPECT_EQ(Form->rtfDisplay.Text.Lines(0, 1).substr(0, 30),
                  "0002-00000000 (0002-0000000) 0");
        EXPECT_FALSE(Busy || Hourglass() || The("STOP").isEnabled());
        EXPECT_TRUE(List->hasFocus());
    }
};

TEST_F(MainScreenTest, HasItsDesignedLayout) {
    const QWidget* inside = Screen->centralWidget();
    EXPECT_EQ(inside->size(), QSize(806, 369));
    EXPECT_EQ(Title(), "Tessel");
    EXPECT_EQ(LabelText("Version"), "V 1.0.0");
    const auto* frame = Screen->findChild<QGroupBox*>();
    EXPECT_EQ(frame->title(), "Display");
    const auto bounds = [&](const QWidget& widget) {
        const QPoint at = widget.mapTo(inside, QPoint());
        return QRect(at, widget.size());
    };
    EXPECT_EQ(bounds(*frame), QRect(0, 0, 113, 81));
    EXPECT_EQ(bounds(*List), QRect(0, 104, 121, 265));
    EXPECT_EQ(bounds(*Display), QRect(120, 40, 686, 329));
    EXPECT_FALSE(List->isEnabled());
    const std::pair<const char*, QRect> controls[] = {{"File info", {16, 16, 73, 13}},
                                                      {"Display", {16, 32, 57, 13}},
                                                      {"Dump", {16, 48, 49, 13}},
                                                      {"SuperBlock", {16, 64, 81, 13}},
                                                      {"Volume label", {120, 8, 105, 17}},
                                                      {"STOP", {232, 8, 73, 25}},
                                                      {"File system type", {312, 8, 41, 17}},
                                                      {"Directory", {360, 8, 57, 25}},
                                                      {"Boot Sector", {424, 8, 81, 25}},
                                                      {"FAT0", {512, 8, 57, 25}},
                                                      {"Root", {576, 8, 57, 25}},
                                                      {"Version", {656, 8, 81, 17}},
                                                      {"Current directory", {8, 88, 105, 17}}};
    for (const auto& [name, designed] : controls) EXPECT_EQ(bounds(The(name)), designed) << name;
    EXPECT_FALSE(The("Root").isEnabled() || The("SuperBlock").isEnabled());
    EXPECT_TRUE(IsChosen("File info"));
    EXPECT_EQ(Menu("Options"), "Offset\n");

    EXPECT_EQ(List->font().pointSizeF(), 8.25);
    const std::string family = QFontInfo(List->font()).family().toStdString();
    EXPECT_TRUE(family == "Courier New" || family == "Liberation Mono") << family;
    Form->rtfDisplay.Text.Replace("iW");
    EXPECT_TRUE(ScreenShowsText());
    for (const int i : {0, 1}) {
        EXPECT_EQ(Display->CellRect(i).width(), List->fontMetrics().horizontalAdvance('W'));
    }
}

TEST_F(MainScreenTest, TabReachesTheControlsAndEnterPressesThem) {
    OpenImage(Write("disk.img", SampleImage().File()));
    std::string order;
    for (int i = 0; i < 11; ++i, Key(Qt::Key_Tab)) {
        const auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        order += List->hasFocus()      ? "list"
                 : Display->hasFocus() ? "display"
                 : button != nullptr   ? button->text().toStdString()
                                       : "?";
        order += ", ";
    }
    EXPECT_EQ(order,
              "list, display, STOP, Boot Sector, FAT0, Root, Dump, Display, File info, "
              "Directory, list, ");
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    Key(Qt::Key_Return);
    EXPECT_NE(DisplayText().find("{MYDISK"), std::string::npos)
        << "Enter presses a button: Directory";
}

TEST_F(MainScreenTest, F1ShowsTheGuideWithItsPictures) {
    Key(Qt::Key_F1);
    GuideScreen* guide = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (guide == nullptr) guide = dynamic_cast<GuideScreen*>(window);
    }
    ASSERT_NE(guide, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(guide));
    int pictures = 0;
    const QTextDocument& text = *guide->document();
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (!format.isImageFormat()) continue;
            const QUrl name = format.toImageFormat().name();
            EXPECT_FALSE(text.resource(QTextDocument::ImageResource, name).isNull())
                << name.toString().toStdString();
            ++pictures;
        }
    }
    EXPECT_GT(pictures, 10);
    Key(Qt::Key_Escape);
    EXPECT_FALSE(guide->isVisible());
    ActivateWindow();
}

TEST_F(MainScreenTest, ScreenReadersFindEveryControlByItsName) {
    OpenImage(Write("disk.img", SampleImage().File()));
    QStringList names = {Screen->findChild<QGroupBox*>()->accessibleName()};
    for (QWidget* widget : Screen->findChildren<QWidget*>()) {
        if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
        names += QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    }
    names.sort();
    EXPECT_EQ(names.join(", ").toStdString(),
              "Boot Sector, Directory, Directory list, Display, Display mode, Display text, Dump, "
              "FAT0, File info, Root, STOP, SuperBlock");
    QAccessibleInterface& dump = *QAccessible::queryAccessibleInterface(&The("Dump"));
    EXPECT_EQ(dump.role(), QAccessible::RadioButton);
    dump.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(IsChosen("Dump") && dump.state().checked);
}

TEST_F(MainScreenTest, MouseAndKeysNavigateTheListAndItsFolders) {
    Image image = SampleImage();
    for (int i = 10; i < 50; ++i) image.AddFile(0, {.Name = "F" + std::to_string(i)}, "x");
    OpenImage(Write("disk.img", image.File()));
    EXPECT_TRUE(List->hasFocus());
    EXPECT_EQ(Display->VisibleText().toStdString(), "")
        << "the first line is selected but not shown";
    const int last = Form->listDIR.Count() - 1;
    const std::pair<Qt::Key, int> moves[] = {
        {Qt::Key_Space, 0}, {Qt::Key_Down, 1}, {Qt::Key_Up, 0}, {Qt::Key_End, last}};
    for (const auto& [key, line] : moves) {
        Key(key);
        EXPECT_EQ(Line(), line);
    }
    EXPECT_TRUE(List->viewport()->rect().contains(LineAt(last))) << "scrolled to the line";
    Type("f33");
    EXPECT_EQ(DisplayText().substr(0, 5), " F33 ");
    Key(Qt::Key_Home);
    ClickLine(3);
    EXPECT_EQ(Line(), 3);
    const auto at = [&](int line) { return List->viewport()->mapTo(Screen.get(), LineAt(line)); };
    QTest::mousePress(Screen->windowHandle(), Qt::LeftButton, {}, at(1));
    QTest::mouseMove(Screen->windowHandle(), at(4));
    QTest::mouseRelease(Screen->windowHandle(), Qt::LeftButton, {}, at(4));
    EXPECT_EQ(Line(), 4) << "a drag moves the selection";

    ClickLine(1, true);
    EXPECT_EQ(LabelText("Current directory"), "") << "a file";
    const QVariant more = List->model()->index(1, 0).data(Qt::AccessibleDescriptionRole);
    EXPECT_EQ(more.toString().toStdString(), "Read me first.txt, file, 14 bytes");
    EXPECT_EQ(Line(), 1);
    ClickLine(2, true);
    EXPECT_EQ(List->model()->rowCount(), 5);
    EXPECT_EQ(Line(), 0);
    ClickLine(1, true);
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
        EXPECT_EQ(LabelText("Current directory"), "");
        Key(Qt::Key_Down);
        Key(Qt::Key_Down);
        Key(enter);
        EXPECT_EQ(LabelText("Current directory"), "SUBFOL~1");
        Key(Qt::Key_Down);
        Key(enter);
    }
}

TEST_F(MainScreenTest, ModesAndButtonsFillAReadOnlyDisplay) {
    OpenImage(Write("disk.img", SampleImage().File()));
    Click(The("Dump"));
    EXPECT_TRUE(DisplayText().starts_with(" Raw Root Directory")) << DisplayText().substr(0, 40);
    EXPECT_TRUE(The("Dump").hasFocus()) << "as before it was disabled for the dump";
    ClickLine(1);
    EXPECT_TRUE(Same(DisplayText(), ChainDump({2}, "Hello\r\nWorld\r\n")));
    EXPECT_TRUE(ScreenShowsText());
    EXPECT_TRUE(List->hasFocus());
    Click(The("Display"));
    EXPECT_TRUE(IsChosen("Display") && !IsChosen("Dump"));
    ClickLine(1);

    Click(*Display->viewport());
    QApplication::clipboard()->setText("pasted");
    Type("xyz ");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Delete}) Key(key);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_V, Qt::Key_X}) Key(key, Qt::ControlModifier);
    EXPECT_EQ(DisplayText(), "Hello\r\nWorld\r\n");
    EXPECT_TRUE(ScreenShowsText());

    for (const auto& [caption, text] : {std::pair{"Boot Sector", " Raw Boot Sector 0"},
                                        {"FAT0", "0000 (0000) 0FF0 0FFF"},
                                        {"Root", " Raw Root Directory"},
                                        {"Directory", "Read me first.txt"}}) {
        Click(The(caption));
        EXPECT_NE(DisplayText().find(text), std::string::npos) << caption;
        EXPECT_TRUE(ScreenShowsText());
    }
    Click(The("Display"));
    EXPECT_TRUE(IsChosen("Display"));
    EXPECT_EQ(DisplayText(), "Hello\r\nWorld\r\n") << "again, over a report";
    Click(The("SuperBlock"));
    EXPECT_FALSE(IsChosen("SuperBlock"));
}

TEST_F(MainScreenTest, StopEndsALongDumpByMouseAndByKey) {
    OpenBigImage();
    const QPoint line = List->viewport()->mapTo(Screen.get(), LineAt(1));
    WhileBusy([&] {
        QTest::mouseRelease(Screen->windowHandle(), Qt::LeftButton, {}, line);
        EXPECT_TRUE(Hourglass());
        EXPECT_TRUE(List->hasFocus());
        Key(Qt::Key_Home);
        EXPECT_TRUE(Busy && Form->listDIR.ListIndex() == 1) << "the list ignores keys meanwhile";
        EXPECT_TRUE(QTest::qWaitFor([this] { return !The("Root").isEnabled(); }));
        EXPECT_EQ(Menu("File"),
                  "Open\nClose\n\nSave Display\n-Save File\n\n-Save Directory\n\nExit\n");
        EXPECT_TRUE(ScreenShowsText());
        Click(The("STOP"));
    });
    QTest::mousePress(Screen->windowHandle(), Qt::LeftButton, {}, line);
    ExpectStopped();
    Key(Qt::Key_Home);
    EXPECT_TRUE(DisplayText().starts_with(" Raw Root Directory"));
    WhileBusy([] { Key(Qt::Key_Escape); });
    Key(Qt::Key_Down);
    ExpectStopped();
}

TEST_F(MainScreenTest, TheCloseBoxWhileBusyWaitsForTheOperation) {
    OpenBigImage();
    int ends = 0;
    TheHost.EndProgram = [&ends, end = TheHost.EndProgram] {
        ++ends;
        EXPECT_FALSE(Busy || Hourglass());
        end();
    };
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, [] { QCoreApplication::exit(1); });
    late.start(30000);
    const auto close = [this] { Screen->windowHandle()->close(); };
    WhileBusy([&] {
        close();
        EXPECT_TRUE(Busy && Screen->isVisible() && ends == 0);
    });
    QTimer::singleShot(0, List, [this] { ClickLine(1); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(ends, 1);
    QTimer::singleShot(0, List, [this] { Menu("File", "Exit"); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(ends, 2);
}

TEST_F(MainScreenTest, ListAndDisplayFollowTheWindowsSize) {
    const QWidget* inside = Screen->centralWidget();
    const int bar = Screen->height() - inside->height();
    const QRect stop = The("STOP").geometry();
    // The window's and the display's size, and the list's height. Either keeps its size if the
    // window is too small for it.
    using Row = std::tuple<QSize, QSize, int>;
    for (const auto& [window, display, list] : {Row{{1000, 700}, {880, 660}, 596},
                                                {{200, 90}, {80, 50}, 596},
                                                {{121, 105}, {1, 65}, 1},
                                                {{120, 400}, {1, 65}, 1},
                                                {{806, 369}, {686, 329}, 265}}) {
        Screen->resize(window + QSize(0, bar));
        EXPECT_TRUE(QTest::qWaitFor([&, size = window] { return inside->size() == size; }));
        EXPECT_EQ(Display->geometry(), QRect(QPoint(120, 40), display));
        EXPECT_EQ(List->geometry(), QRect(0, 104, 121, list));
    }
    EXPECT_EQ(The("STOP").geometry(), stop);
}

}  // namespace
}  // namespace tessel
