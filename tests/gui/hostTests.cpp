#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QRadioButton>
#include <QSettings>
#include <QTest>
#include <QUrl>

#include "dialogs/modFile.h"
#include "screen/qtHost.h"
#include "tests/gui/screenTest.h"
#include "volume/modGlobals.h"
#include "volume/volumeState.h"

/// The window on a desktop: keyboard only, drops, long operations, screens, fonts, colours.
namespace tessel {
namespace {

using DesktopTest = ScreenTest;

TEST_F(DesktopTest, KeysAloneOpenMenusAndChooseModes) {
    const std::string path = Write("disk.img", SampleImage().File());
    AnswerFile(path);
    Key(Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
    QWidget& menu = *QApplication::activePopupWidget();
    QTest::keyClick(&menu, Qt::Key_O);
    QCoreApplication::processEvents();
    EXPECT_EQ(Title(), "FAT File System " + path);
    ActivateWindow();
    EXPECT_TRUE(List->hasFocus());

    // Two enabled entries begin with an S, which highlights them in turn.
    Key(Qt::Key_F, Qt::AltModifier);
    QTest::keyClicks(&menu, "ss");
    EXPECT_EQ(static_cast<QMenu&>(menu).activeAction()->text(), "Save Directory");
    QTest::keyClick(&menu, Qt::Key_Escape);
    ActivateWindow();
    Key(Qt::Key_Escape);  // closes the menu bar

    Key(Qt::Key_End);
    The("File info").setFocus();
    for (const auto& [key, mode] : {std::pair{Qt::Key_Up, "File info"},
                                    {Qt::Key_Down, "Display"},
                                    {Qt::Key_Right, "Dump"},
                                    {Qt::Key_Left, "Display"}}) {
        Key(key);
        EXPECT_TRUE(The(mode).hasFocus() && IsChosen(mode)) << mode;
    }
    Click(The("Boot Sector"));
    The("Dump").setFocus();
    Key(Qt::Key_Return);
    EXPECT_TRUE(DisplayText().starts_with("0"))
        << "Enter chooses a mode: " << DisplayText().substr(0, 40);
}

TEST_F(DesktopTest, ADroppedImageIsOpenedButNothingElse) {
    const auto drop = [this](const std::vector<std::string>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& path : paths) urls += QUrl::fromLocalFile(path.c_str());
        data.setUrls(urls);
        const QPoint at = Display->mapTo(Screen.get(), Display->rect().center());
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(Screen.get(), &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(Screen.get(), &event);
        QCoreApplication::processEvents();
        return true;
    };
    const std::string first = Write("first.img", SampleImage().File());
    const std::string second = Write("second #1.img", SampleImage().File());
    EXPECT_FALSE(drop({}) || drop({first, second}) || drop({At("")}));
    EXPECT_EQ(Title(), "Tessel");
    EXPECT_TRUE(drop({first}));
    EXPECT_EQ(Title(), "FAT File System " + first);
    EXPECT_TRUE(drop({second}));
    EXPECT_EQ(Title() + Drives[1].ImageTitle, "FAT File System " + second + "second #1.img");
    // A message says why nothing is opened during an operation and while a box is open.
    Busy = true;
    OnDialog<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(box.text().contains("until the running command has ended"))
            << box.text().toStdString();
        Busy = false;
        OnDialog<QMessageBox>([](QMessageBox& inner) {
            EXPECT_TRUE(inner.text().contains("while a message or a dialog waits"));
            inner.accept();
        });
        Form->DropImage(first, "first.img");
        box.accept();
    });
    EXPECT_TRUE(drop({first}));
    EXPECT_EQ(Title(), "FAT File System " + second);
    OnDialog<QMessageBox>([](QMessageBox& box) {
        EXPECT_TRUE(box.text().startsWith("Error # 53 ")) << box.text().toStdString();
        Key(Qt::Key_Return);
    });
    EXPECT_TRUE(drop({At("gone.img")}));
}

TEST_F(DesktopTest, LongOperationsShowTheirProgress) {
    auto& line = *Screen->findChild<QProgressBar*>();
    {
        Progress files(4, true);
        files.Show(1);
        EXPECT_FALSE(line.isVisible()) << "a short operation flickers";
        QTest::qWait(150);
        {
            Progress bytes(1000);
            bytes.Show(500);
            EXPECT_EQ(line.value(), 375) << "a file of four, and half of the next";
            Progress text(1000);
            text.Show(100);
            EXPECT_EQ(line.value(), 100) << "an unrelated operation";
        }
        EXPECT_TRUE(line.isVisible());
    }
    EXPECT_FALSE(line.isVisible());
}

TEST_F(DesktopTest, WorksWithBrokenSettingsAndSaysOnceThatItCannotStoreThem) {
    const std::string path = Write("disk.img", SampleImage().File());
    std::filesystem::create_directories(At("garbage/Tessel"));
    const std::string garbage("[Paths\n\0=\xFF\xFE\n=%%%\n[Other]\nkey=kept\n", 34);
    Write("garbage/Tessel/Tessel.conf", garbage);
    std::filesystem::create_directories(At("large/Tessel"));
    Write("large/Tessel/Tessel.conf", garbage + std::string(2 << 20, '\n'));
    std::filesystem::create_directories(At("folder/Tessel/Tessel.conf"));
    Write("file", std::string("x"));
    for (const std::string home : {"garbage", "large", "folder", "file/home"}) {
        SCOPED_TRACE(home);
        End();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(At(home)));
        FillHost();
        Start();
        std::filesystem::current_path(Folder);
        RecentPaths = {};
        AnswerFile(path);
        if (home != "garbage") {
            OnDialog<QMessageBox>([&](QMessageBox& box) {
                EXPECT_TRUE(box.text().startsWith("The settings cannot be stored."))
                    << box.text().toStdString();
                Key(Qt::Key_Return);
            });
        }
        Menu("File", "Open");
        EXPECT_EQ(List->model()->rowCount(), 4);
        std::filesystem::current_path("/");
        RecentPaths = {};
        OnDialog<QFileDialog>([&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.directory().path().toStdString(), Folder) << "remembered";
            Key(Qt::Key_Escape);
        });
        Menu("File", "Open");
    }
    const QSettings stored(QString::fromStdString(At("garbage/Tessel/Tessel.conf")),
                           QSettings::NativeFormat);
    EXPECT_EQ(stored.value("Other/key").toString(), "kept");
    EXPECT_EQ(stored.value("Paths/IMG").toString().toStdString(), Folder + "/");
    EXPECT_EQ(Tree("garbage"), "Tessel/\nTessel/Tessel.conf\n") << "the toolkit notes nothing";
    EXPECT_EQ(std::filesystem::file_size(At("large/Tessel/Tessel.conf")),
              garbage.size() + (2 << 20));
}

TEST_F(DesktopTest, AMessageFitsTheScreenAndCanBeCopiedWhole) {
    const std::string texts[] = {
        "short",
        "path\r\n/" + Times(400, std::string(9, 'W') + "/") + "end",
        Times(300, "line\r\n"),
        Times(200, "\xE2\x80\xA9paragraph"),
        Times(1500, "\xF0\x9F\x98\x80\xE6\x96\x87"),
        Times(60, std::string(230, 'x') + " \n"),
    };
    for (const std::string& text : texts) {
        OnDialog<QMessageBox>([&](QMessageBox& box) {
            const QRect room = box.screen()->availableGeometry();
            EXPECT_TRUE(room.contains(box.geometry())) << text.substr(0, 20);
            EXPECT_EQ(box.detailedText().isEmpty(), text == "short");
            Key(Qt::Key_C, Qt::ControlModifier);
            Key(Qt::Key_Return);
        });
        TheHost.MessageBox(text, "Error");
        QString copied = QGuiApplication::clipboard()->text();
        EXPECT_EQ(copied.size(), QString::fromStdString(text).replace("\r\n", "\n").size());
        EXPECT_FALSE(copied.contains(QChar(0x200B)));
    }
}

TEST_F(DesktopTest, EscInAMessageOfALongOperationPressesStop) {
    OpenImage(Write("disk.img", SampleImage().File()));
    std::filesystem::create_directories(At("out/disk/Read me first.txt"));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        TheHost.ShowModal = [this](Window& window) {
            Form->Chooser->dirDirBox.SetPath(At("out"));
            Form->Chooser->OKButton.Press();
            window.Visible = false;
        };
        OnDialog<QMessageBox>([key](QMessageBox&) { Key(key); });
        Form->mnuSaveDirectory.Press();
        EXPECT_TRUE(DisplayText().ends_with(key == Qt::Key_Escape ? "Saved - 0  Failed - 1"
                                                                  : "Saved - 1  Failed - 1"));
    }
}

std::vector<QColor> Pixels(QWidget& widget) {
    const QImage picture = widget.grab().toImage();
    std::vector<QColor> pixels;
    for (int i = 0; i < picture.width() * picture.height(); ++i) {
        pixels.push_back(picture.pixelColor(i % picture.width(), i / picture.width()));
    }
    return pixels;
}

bool ShowsBlue(QWidget& widget) {
    const std::vector<QColor> pixels = Pixels(widget);
    return std::any_of(pixels.begin(), pixels.end(),
                       [](const QColor& pixel) { return pixel.blue() > pixel.red() + 100; });
}

/// The difference between a widget's darkest and lightest pixel; 255 is black on white.
int Contrast(QWidget& widget) {
    std::vector<int> grays;
    for (const QColor& pixel : Pixels(widget)) grays.push_back(qGray(pixel.rgb()));
    const auto [darkest, lightest] = std::minmax_element(grays.begin(), grays.end());
    return *lightest - *darkest;
}

/// CMakeLists.txt runs this case at several scales, with a large font, and on a small screen, too.
TEST_F(DesktopTest, EverythingFitsAndNothingOverlaps) {
    const std::string name = std::string(200, 'w') + ".img";
    OpenImage(Write(name, SampleImage({.SystemId = "        "}).File()));
    const QRect screen = Screen->screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(Screen->geometry()));
    std::vector<QWidget*> all;
    for (QWidget* widget : Screen->findChildren<QWidget*>()) {
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const bool label = widget->accessibleDescription() != "" && widget->isVisible();
        if (widget->window() != Screen.get() || Display->isAncestorOf(widget)) continue;
        if (button != nullptr || label || widget == List || widget == Display) {
            all.push_back(widget);
        }
        if (button == nullptr) continue;
        const int mark = qobject_cast<const QRadioButton*>(button) != nullptr ? 16 : 0;
        const QString caption = button->text();
        EXPECT_LE(button->fontMetrics().horizontalAdvance(caption) + mark, button->width())
            << caption.toStdString();
        EXPECT_LE(button->fontMetrics().tightBoundingRect(caption).height(), button->height());
    }
    EXPECT_EQ(all.size(), 15U);
    EXPECT_GE(4 * The("Version").fontInfo().pixelSize(),
              3 * QFontInfo(QApplication::font()).pixelSize())
        << "captions follow the desktop's font";
    EXPECT_GE(Display->CellRect(0).width(), List->fontMetrics().horizontalAdvance('W'));
    const auto bounds = [this](const QWidget* widget) {
        return QRect(widget->mapTo(Screen.get(), QPoint()), widget->size());
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(Screen->rect().contains(bounds(all[i])));
        for (std::size_t j = 0; j < i; ++j) {
            // By design the list overlaps its neighbours' edges by one pixel.
            const QRect both = bounds(all[i]) & bounds(all[j]);
            EXPECT_LE(std::min(both.width(), both.height()), 1) << i << " and " << j;
        }
    }

    const QPalette before = QApplication::palette();
    QPalette dark(QColor(45, 45, 45));
    QApplication::setPalette(dark);
    for (const QPalette& palette : {before, dark}) {
        QApplication::setPalette(palette);
        EXPECT_GT(Contrast(The("Volume label")), 100);
        EXPECT_GT(Contrast(The("File system type")), 100) << "in blue";
        EXPECT_GT(Contrast(The("Boot Sector")), 100);
        EXPECT_GT(Contrast(*List), 100);
    }
    QApplication::setPalette(before);
    EXPECT_TRUE(ShowsBlue(The("File system type"))) << "the type is computed, not recorded";
    OpenImage(Write("disk.img", SampleImage().File()));
    EXPECT_FALSE(ShowsBlue(The("File system type")));
}

}  // namespace
}  // namespace tessel
