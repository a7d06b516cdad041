#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QRadioButton>
#include <QSettings>
#include <QTest>
#include <QUrl>
#include <cmath>

#include "tests/gui/screenTest.h"
#include "volume/modGlobals.h"
#include "volume/volumeState.h"

/// The window as part of a desktop: keys alone, drops, long work, any screen and colours.
namespace tessel {
namespace {

using DeskTest = ScreenTest;

TEST_F(DeskTest, KeysAloneOpenMenusAndChooseModes) {
    const std::string path = Write("disk.img", SampleImage().File());
    AnswerFile(path);
    Key(Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
    QWidget& menu = *QApplication::activePopupWidget();
    QTest::keyClick(&menu, Qt::Key_O);
    QCoreApplication::processEvents();
    EXPECT_EQ(Title(), "FAT File System " + path);
    Screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Screen.get()));
    EXPECT_TRUE(List->hasFocus());

    // Two entries that are enabled begin with an S; one is chosen by Enter.
    Upon<QDialog>([this](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Directory Path Save All");
        Click(The("Cancel", &dialog));
    });
    Key(Qt::Key_F, Qt::AltModifier);
    QTest::keyClicks(&menu, "ss");
    QTest::keyClick(&menu, Qt::Key_Return);
    QCoreApplication::processEvents();
    Screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Screen.get()));

    Key(Qt::Key_End);
    The("File info").setFocus();
    for (const auto& [key, mode] : {std::pair{Qt::Key_Up, "File info"},
                                    {Qt::Key_Down, "Display"},
                                    {Qt::Key_Right, "Dump"},
                                    {Qt::Key_Down, "Dump"},
                                    {Qt::Key_Left, "Display"}}) {
        Key(key);
        EXPECT_TRUE(The(mode).hasFocus() && IsChosen(mode)) << mode;
    }
    Click(The("Boot Sector"));
    The("Dump").setFocus();
    Key(Qt::Key_Return);
    EXPECT_TRUE(Told().starts_with("0")) << "Enter works a mode: " << Told().substr(0, 40);
}

TEST_F(DeskTest, ADroppedImageIsOpenedButNothingElse) {
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
    EXPECT_EQ(LabelText("Volume label"), "{MYDISK     } ");
    EXPECT_TRUE(drop({second}));
    EXPECT_EQ(Title() + Drives[1].ImageTitle, "FAT File System " + second + "second #1.img");
    Busy = true;
    EXPECT_FALSE(drop({first}));
    Busy = false;
    Upon<QMessageBox>([](QMessageBox& box) {
        EXPECT_TRUE(box.text().startsWith("Error # 53 ")) << box.text().toStdString();
        Key(Qt::Key_Return);
    });
    EXPECT_TRUE(drop({At("gone.img")}));
}

TEST_F(DeskTest, LongWorkShowsHowFarItIsAndThenNothing) {
    auto& line = *Screen->findChild<QProgressBar*>();
    EXPECT_FALSE(line.isVisible());
    {
        Progress files(4, true);
        files.Show(1);
        EXPECT_FALSE(line.isVisible()) << "short work flickers";
        QTest::qWait(150);
        {
            Progress bytes(1000);
            bytes.Show(500);
            EXPECT_EQ(line.value(), 375) << "a file of four, and half of the next";
            Progress text(1000);
            text.Show(100);
            EXPECT_EQ(line.value(), 100) << "what has nothing to do with it";
        }
        EXPECT_TRUE(line.isVisible());
        EXPECT_EQ(line.geometry(),
                  QRect(Display->geometry().topLeft(), QSize(Display->width(), 3)));
    }
    EXPECT_FALSE(line.isVisible());
}

TEST_F(DeskTest, BrokenSettingsAreNoReasonNotToStart) {
    const std::string path = Write("disk.img", SampleImage().File());
    End();
    // Garbage, a folder in the file's place, a home that is a file.
    for (const std::string home : {"garbage", "folder", "file/home"}) {
        if (home == "garbage") {
            std::filesystem::create_directories(At("garbage/Tessel"));
            Write("garbage/Tessel/Tessel.conf", std::string("[Paths\n\0=\xFF\xFE\n=%%%\n", 17));
        } else if (home == "folder") {
            std::filesystem::create_directories(At("folder/Tessel/Tessel.conf"));
        } else {
            Write("file", std::string("x"));
        }
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(At(home)));
        Start();
        OpenImage(path);
        EXPECT_EQ(List->model()->rowCount(), 4) << home;
        End();
    }
    Start();
}

double Luminance(const QColor& colour) {
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// How well the ink of a widget can be told from its ground: 1 not at all, 21 black on white.
double Contrast(QWidget& widget) {
    const QImage picture = widget.grab().toImage();
    double darkest = 1;
    double lightest = 0;
    for (int i = 0; i < picture.width() * picture.height(); ++i) {
        const double l = Luminance(picture.pixelColor(i % picture.width(), i / picture.width()));
        darkest = std::min(darkest, l);
        lightest = std::max(lightest, l);
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

/// Run at several scales and on a small screen, too.
TEST_F(DeskTest, EverythingFitsAndNothingOverlaps) {
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
    EXPECT_GE(Display->CellRect(0).width(), List->fontMetrics().horizontalAdvance('W'));
    const auto place = [this](const QWidget* widget) {
        return QRect(widget->mapTo(Screen.get(), QPoint()), widget->size());
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(Screen->rect().contains(place(all[i])));
        for (std::size_t j = 0; j < i; ++j) {
            // As designed, the list lies one pixel over its neighbours' edges.
            const QRect both = place(all[i]) & place(all[j]);
            EXPECT_LE(std::min(both.width(), both.height()), 1) << i << " and " << j;
        }
    }

    const QPalette before = QApplication::palette();
    QPalette dark(QColor(45, 45, 45));
    QApplication::setPalette(dark);
    for (const QPalette& palette : {before, dark}) {
        QApplication::setPalette(palette);
        EXPECT_GT(Contrast(The("Volume label")), 7);
        EXPECT_GT(Contrast(The("File system type")), 4.5) << "in blue";
        EXPECT_GT(Contrast(The("Boot Sector")), 4.5);
        EXPECT_GT(Contrast(*List), 7);
    }
    QApplication::setPalette(before);
}

}  // namespace
}  // namespace tessel
