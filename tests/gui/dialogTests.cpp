#include <QAbstractItemView>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTreeWidget>

#include "dialogs/modFile.h"
#include "dialogs/settings.h"
#include "platform/hostFiles.h"
#include "screen/bindLists.h"
#include "screen/chooserScreen.h"
#include "screen/qtHost.h"
#include "tests/gui/screenTest.h"
#include "tests/tableBuilder.h"
#include "volume/modGlobals.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

namespace fs = std::filesystem;

class DialogTest : public ScreenTest {
  protected:
    /// Expects a message box with this title and plain text that ends with `text`, and presses
    /// `button`.
    void AnswerBox(const std::string& title, const std::string& text,
                   QMessageBox::StandardButton button) {
        OnDialog<QMessageBox>([=](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle().toStdString(), title);
            const auto* label = box.findChild<QLabel*>("qt_msgbox_label");
            const std::string shown = label->text().toStdString();
            EXPECT_TRUE(shown.ends_with(text)) << shown;
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            EXPECT_EQ(box.buttons().size(), button == QMessageBox::Ok ? 1 : 2);
            Click(*box.button(button));
        });
    }
    static QLineEdit& NameField(QFileDialog& dialog) {
        return *dialog.findChild<QLineEdit*>("fileNameEdit");
    }
    static std::string Folder(const QFileDialog& dialog) {
        return dialog.directory().path().toStdString();
    }
    /// The names that a file dialog lists, once there are `count`.
    static QString Listed(QFileDialog& dialog, int count) {
        const auto* view = dialog.findChild<QListView*>("listView");
        const auto rows = [view] { return view->model()->rowCount(view->rootIndex()); };
        EXPECT_TRUE(QTest::qWaitFor([&] { return rows() == count; })) << rows();
        QStringList names;
        for (int i = 0; i < rows(); ++i) {
            names += view->model()->index(i, 0, view->rootIndex()).data().toString();
        }
        names.sort();
        return names.join('|');
    }
    void OpenSample() { OpenImage(Write("disk.img", SampleImage().File())); }
};
const std::string kMissing = "\nThere is no such file. Please check its name.";
const std::string kReplace = "\nThis file already exists. Do you want to replace it?";

TEST_F(DialogTest, OpenOffersImagesAndTakesTypedNames) {
    const std::string title = "Open FAT Raw File File";
    fs::create_directories(At("a/b/c/inner"));
    Write("a/b/c/notes.txt", "x");
    for (const char* name : {"UPPER.IMG", "lower.img", "noextension", "inner/deep.dsk"}) {
        Write(std::string("a/b/c/") + name, SampleImage().File());
    }
    fs::current_path(At("a/b/c"));
    OnDialog<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), title);
        EXPECT_EQ(Folder(dialog), At("a/b/c"));
        auto* kinds = dialog.findChild<QComboBox*>("fileTypeCombo");
        EXPECT_EQ(kinds->count(), 5);
        EXPECT_EQ(kinds->currentText().toStdString(), "All Disk Image Files (*.img;*.dsk;*.raw)");
        EXPECT_EQ(Listed(dialog, 3), "UPPER.IMG|inner|lower.img");
        kinds->setFocus();
        Key(Qt::Key_End);
        EXPECT_EQ(Listed(dialog, 5), "UPPER.IMG|inner|lower.img|noextension|notes.txt");
        Key(Qt::Key_Escape);
    });
    Menu("File", "Open");
    // A file that does not exist is refused, and the dialog stays open.
    AnswerFile("<b>gone");
    AnswerBox(title, At("a/b/c/<b>gone.img") + kMissing, QMessageBox::Ok);
    AnswerFile("");
    Menu("File", "Open");
    EXPECT_EQ(Title(), "Tessel");

    // While a path is typed, the toolkit selects folders on the way, here with one-letter names.
    const std::pair<std::string, std::string> rows[] = {
        {"lower", "a/b/c/lower.img"},
        {"noextension", "a/b/c/noextension"},
        {"../c/inner/deep.dsk", "a/b/c/inner/deep.dsk"},
        {At("a/b/c/lower"), "a/b/c/lower.img"}};
    for (const auto& [typed, opened] : rows) {
        AnswerFile(typed);
        Menu("File", "Open");
        EXPECT_EQ(Title(), "FAT File System " + At(opened));
    }
    // The folder of images is remembered across runs.
    End();
    fs::current_path(At(""));
    RecentPaths = {};
    Start();
    OnDialog<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(Folder(dialog), At("a/b/c"));
        Listed(dialog, 3);
        auto* list = dialog.findChild<QTreeView*>("treeView");
        ASSERT_TRUE(list->isVisible());
        const QModelIndex line = list->model()->index(1, 0, list->rootIndex());
        EXPECT_EQ(line.data().toString(), "lower.img");
        Click(*list->viewport(), list->visualRect(line).center());
        Click(The("Open", &dialog));
    });
    Menu("File", "Open");
    EXPECT_EQ(Title(), "FAT File System " + At("a/b/c/lower.img"));
}

TEST_F(DialogTest, SavingSuggestsANameAndAsksBeforeItReplaces) {
    OpenSample();
    ClickLine(1);
    Write("Read me first.txt", "before");
    fs::create_directory(At("folder"));
    OnDialog<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Save DOS File");
        EXPECT_EQ(NameField(dialog).text(), "Read me first.txt");
        EXPECT_TRUE(Busy && !Hourglass()) << "the dialog waits for the user";
        Key(Qt::Key_Return);
    });
    AnswerBox("Save DOS File", At("Read me first.txt") + kReplace, QMessageBox::No);
    AnswerFile("");
    Menu("File", "Save File");
    EXPECT_EQ(Read("Read me first.txt"), "before");
    EXPECT_FALSE(Busy || Hourglass());
    EXPECT_TRUE(List->isEnabled() && List->hasFocus());

    OnDialog<QFileDialog>([](QFileDialog&) { Key(Qt::Key_Return); });
    AnswerBox("Save DOS File", At("Read me first.txt") + kReplace, QMessageBox::Yes);
    Menu("File", "Save File");
    EXPECT_EQ(Read("Read me first.txt"), "Hello\r\nWorld\r\n");
    AnswerFile("none/x");
    AnswerBox("Save DOS File", At("none/x") + "\nThere is no such folder. Please check its name.",
              QMessageBox::Ok);
    AnswerFile(At("folder/plain"));
    Menu("File", "Save File");
    EXPECT_EQ(Read("folder/plain"), "Hello\r\nWorld\r\n");

    Write("shown.txt", "before");
    AnswerFile("../shown");
    AnswerBox("Save Display as Text File", At("shown.txt") + kReplace, QMessageBox::Yes);
    Menu("File", "Save Display");
    EXPECT_EQ(Read("shown.txt"), DisplayText());
}

TEST_F(DialogTest, SavingRefusesAtOnceWhatIsNeverReplaced) {
    OpenSample();
    ClickLine(1);
    Write(".hidden", std::string("x"));
    fs::create_hard_link(At("disk.img"), At("hard"));
    fs::create_symlink(At("disk.img"), At("link"));
    fs::create_symlink(At("gone"), At("dangling"));
    ASSERT_TRUE(MakePipe(At("pipe")));
    const std::string before = Tree("");
    const std::string image = "This is the image itself, which is never written.";
    const std::pair<std::string, std::string> rows[] = {
        {"disk.img", image},
        {"hard", image},
        {"link", image},
        {".hidden", "A hidden file has this name."},
        {"pipe", "A pipe, a socket or a device has this name."},
        {"dangling", "A symbolic link that leads to no file has this name."}};
    for (const auto& [name, why] : rows) {
        AnswerFile(name);
        AnswerBox("Save DOS File", At(name) + '\n' + why + " Please choose another one.",
                  QMessageBox::Ok);
        AnswerFile("");
        Menu("File", "Save File");
    }
    EXPECT_EQ(Tree(""), before);
}

TEST_F(DialogTest, ASuggestedNameStaysInTheFolder) {
    const std::pair<const char16_t*, std::string> names[] = {
        {u"../../evil", ".._.._evil"}, {u"/tmp/evil", "_tmp_evil"}, {u"..", "__"},
        {u"a\".b\"c", "a_.b_c"},       {u"<u>&x\n", "<u>&x_"},      {u"~", "_"},
        {u"~root", "_root"},           {u"~$x.doc", "~$x.doc"}};
    Image image;
    for (const auto& name : names) image.AddFile(0, {.Name = "X", .LongName = name.first}, "x");
    fs::create_directories(At("in/side"));
    fs::current_path(At("in/side"));
    OpenImage(Write("evil.img", image.File()));
    WritePath("ELSE", At("in/side/"));
    for (const auto& [name, saved] : names) {
        Key(Qt::Key_Down);
        OnDialog<QFileDialog>([&, saved = saved](QFileDialog& dialog) {
            EXPECT_EQ(NameField(dialog).text().toStdString(), saved);
            Click(The("Save", &dialog));
        });
        Menu("File", "Save File");
        EXPECT_EQ(Tree("in"), "side/\nside/" + saved + '\n');
        fs::remove(At("in/side/") + saved);
    }
}

TEST_F(DialogTest, BoxesShowAnyTextUnchangedAndAskForTheOffset) {
    const std::string name = "<u>a<br>&lt;.img";
    if (MakePipe(At(name))) {  // a host that allows no such name cannot show it
        AnswerFile(name);
        AnswerBox("Error", "even if you open the file as R/O\n" + At(name), QMessageBox::Ok);
        Menu("File", "Open");
    }

    const auto ask = [this](const char* before, const char* typed) {
        OnDialog<QInputDialog>([=](QInputDialog& dialog) {
            EXPECT_EQ(dialog.labelText(), "Input Offset (0 to 2GB)");
            EXPECT_EQ(dialog.textValue(), before);
            Type(typed);  // replaces the text, which is selected
            Key(*typed == '\0' ? Qt::Key_Escape : Qt::Key_Return);
        });
    };
    ask("0", " 1x");
    ask("1x", "1k");
    Menu("Options", "Offset");
    ask("1024", "");
    Menu("Options", "Offset");
    EXPECT_EQ(PartitionOffset, 1024);
}

TEST_F(DialogTest, TheOffsetBoxOffersVolumesToKeysAndMouse) {
    images::Bytes disk(30000);
    images::PutMbr(disk, 0, {{0, 0x83, 40, 9}, {0, 1, 10, 9}, {0, 1, 30, 9}});
    for (const std::size_t sector : {10U, 30U}) images::PutVolume(disk, sector, "LABEL      ");
    OpenImage(Write("disk.img", disk));
    const QWidget& type = The("File system type");
    const QString hint =
        "This file begins with a partition table: Options > Offset lists its volumes.";
    EXPECT_TRUE(type.accessibleDescription().startsWith("File system type. " + hint));
    EXPECT_TRUE(type.toolTip().contains(hint.toHtmlEscaped()));
    Menu("File", "Close");
    EXPECT_EQ(type.accessibleDescription() + type.toolTip(), "File system type");

    OnDialog<QInputDialog>([](QInputDialog& dialog) {
        auto& box = *dialog.findChild<QComboBox*>();
        EXPECT_EQ(box.lineEdit()->selectedText(), "0");
        EXPECT_GE(dialog.width(), TitleWidth(dialog));
        const std::pair<Qt::Key, const char*> keys[] = {
            {Qt::Key_Down, "5120"}, {Qt::Key_Down, "15360"}, {Qt::Key_Down, "15360"},
            {Qt::Key_Up, "5120"},   {Qt::Key_Up, "0"},       {Qt::Key_1, "01"}};
        for (const auto& [key, text] : keys) {
            Key(key);
            EXPECT_EQ(dialog.textValue().toStdString(), text);
        }
        Key(Qt::Key_Down, Qt::AltModifier);
        QAbstractItemView& list = *box.view();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(list.window()));
        QStringList lines;
        for (int i = 0; i < box.count(); ++i) lines += list.model()->index(i, 0).data().toString();
        EXPECT_EQ(lines.join('|'),
                  "0   whole file|5120   FAT12   4.5 KB   LABEL|15360   FAT12   4.5 KB   LABEL|"
                  "20480   Linux, not supported   4.5 KB");
        for (const int line : {3, 2}) {
            Click(*list.viewport(), list.visualRect(list.model()->index(line, 0)).center());
            EXPECT_EQ(dialog.textValue().toStdString(), line == 3 ? "01" : "15360");
            EXPECT_EQ(list.isVisible(), line == 3) << "a disabled line cannot be chosen";
        }
        Key(Qt::Key_Return);
    });
    Menu("Options", "Offset");
    EXPECT_EQ(PartitionOffset, 15360);
}

class ChooserTest : public DialogTest {
  protected:
    ChooserTest() {
        for (const char* name : {"out/a/one", "out/a/two", "out/z"})
            fs::create_directories(At(name));
        fs::current_path(At("out"));
        OpenSample();
    }
    /// Chooses Save Directory, calls `act` in the chooser, and closes it by `button`, or by its
    /// close box if that is empty.
    void Choose(const char* button, const std::function<void(ChooserScreen&)>& act) {
        OnDialog<ChooserScreen>([=, this](ChooserScreen& screen) {
            Folders = static_cast<FolderView*>(screen.findChild<QTreeWidget*>());
            Line = screen.findChild<QLineEdit*>();
            act(screen);
            if (*button != '\0') {
                Click(The(button, &screen));
            } else {
                screen.windowHandle()->close();
            }
            EXPECT_FALSE(screen.isVisible());
        });
        Menu("File", "Save Directory");
        EXPECT_FALSE(Busy);
    }
    void Enter(const QString& name) {
        const auto rows = Folders->findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(rows.size(), 1) << name.toStdString();
        Click(*Folders->viewport(), Folders->visualItemRect(rows[0]).center(), true);
    }
    /// The chooser's folder, relative to "out" if it is below that; "?" if list, text line and
    /// record disagree.
    std::string CurrentFolder() const {
        const std::string path = Form->Chooser->dirDirBox.Path();
        const std::string row = Folders->currentItem()->text(0).toStdString();
        if (Line->text().toStdString() != path || !path.ends_with(row)) return "?";
        return path.starts_with(At("out")) ? path.substr(At("out").size()) : path;
    }
    FolderView* Folders = nullptr;
    QLineEdit* Line = nullptr;
};

TEST_F(ChooserTest, HasItsDesignedLayoutAndReturnsTheListsFolder) {
    Choose("OK", [this](ChooserScreen& screen) {
        EXPECT_EQ(screen.windowTitle(), "Directory Path Save All");
        EXPECT_EQ(screen.minimumSize(), QSize(496, 340));
        EXPECT_EQ(screen.maximumSize(), QSize(496, 340));
        EXPECT_FALSE(screen.windowFlags() & Qt::WindowMinMaxButtonsHint);
        const std::pair<QWidget*, QRect> controls[] = {
            {&The("OK", &screen), {408, 32, 81, 25}},
            {&The("Cancel", &screen), {408, 88, 81, 25}},
            {screen.findChild<QComboBox*>(), {8, 16, 385, 21}},
            {Folders, {8, 40, 385, 246}},
            {Line, {8, 296, 481, 25}}};
        for (const auto& [widget, bounds] : controls) {
            EXPECT_EQ(widget->geometry(), bounds);
            EXPECT_TRUE(widget->hasFocus()) << "the tab order";
            if (widget != Line) Key(Qt::Key_Tab);
        }
        EXPECT_EQ(CurrentFolder(), "");
        Type("/nowhere");
        Key(Qt::Key_Return);
        EXPECT_TRUE(screen.isVisible()) << "no button is the default";
        Key(Qt::Key_Escape);
        EXPECT_TRUE(screen.isVisible()) << "nor is Cancel";
    });
    EXPECT_EQ(Read("out/disk/Read me first.txt"), "Hello\r\nWorld\r\n");
    fs::remove_all(At("out/disk"));

    Choose("Cancel", [this](ChooserScreen&) {
        EXPECT_EQ(CurrentFolder(), "") << "the previous folder";
        Enter("a");
    });
    EXPECT_EQ(Tree("out"), "a/\na/one/\na/two/\nz/\n");
    // The close box returns the start folder as if it were chosen.
    Choose("", [this](ChooserScreen&) { Enter("a"); });
    EXPECT_TRUE(fs::exists(At("out/disk/BIG.BIN")));
}

TEST_F(ChooserTest, SaysWhatOkTakesAndMakesNewFolders) {
    Choose("Cancel", [this](ChooserScreen& screen) {
        const auto* bubble = screen.findChild<QLabel*>();
        EXPECT_FALSE(bubble->isVisible());
        Line->setFocus();
        Type("x");
        EXPECT_TRUE(bubble->isVisible());
        EXPECT_TRUE(bubble->text().startsWith("OK takes "));
        EXPECT_EQ(Line->accessibleDescription().toStdString(),
                  "OK takes " + At("out") + ", the one opened above");
        Key(Qt::Key_Backspace);
        EXPECT_FALSE(bubble->isVisible());
        EXPECT_EQ(Line->accessibleDescription(), "");

        OnDialog<QInputDialog>([](QInputDialog&) {
            Type("new one");
            Key(Qt::Key_Return);
        });
        Key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(CurrentFolder(), "/new one");
        for (const char* name : {"../up", "..", ""}) {
            OnDialog<QInputDialog>([name](QInputDialog&) {
                Type(name);
                Key(Qt::Key_Return);
            });
            if (*name != '\0') OnDialog<QMessageBox>([](QMessageBox&) { Key(Qt::Key_Return); });
            Folders->AskNewFolder();
            EXPECT_EQ(CurrentFolder(), "/new one");
        }
    });
    EXPECT_EQ(Tree("out"), "a/\na/one/\na/two/\nnew one/\nz/\n");
}

TEST_F(ChooserTest, KeysAndMouseNavigateTheHostsFolders) {
    fs::create_directory(At("out/locked"));
    fs::permissions(At("out/locked"), fs::perms::none);
    Choose("Cancel", [this](ChooserScreen& screen) {
        Folders->setFocus();
        // A folder that is only highlighted is not the current one.
        const std::pair<Qt::Key, const char*> keys[] = {
            {Qt::Key_Down, "?"}, {Qt::Key_Return, "/a"},    {Qt::Key_Down, "?"},
            {Qt::Key_Down, "?"}, {Qt::Key_Enter, "/a/two"}, {Qt::Key_Up, "?"},
            {Qt::Key_Up, "?"},   {Qt::Key_Return, ""}};
        for (const auto& [key, folder] : keys) {
            Key(key);
            EXPECT_EQ(CurrentFolder(), folder);
        }
        for (const char* name : {"z", "out", "a", "one", "a"}) Enter(name);
        EXPECT_EQ(CurrentFolder(), "/a");
        fs::remove(At("out/a/one"));
        Enter("one");
        EXPECT_EQ(CurrentFolder(), "/a") << "a folder that no longer exists";
        EXPECT_EQ(Folders->currentItem()->childCount(), 1);
        Enter("out");
        if (!FolderCanBeListed(At("out/locked"))) {  // except by root may read any folder
            Enter("locked");
            EXPECT_EQ(Line->text().toStdString(), At("out"));
            EXPECT_EQ(Form->Chooser->dirDirBox.Path(), At("out"));
        }

        auto* drives = screen.findChild<QComboBox*>();
        const std::vector<std::string> shown = HostDrives();
        ASSERT_EQ(drives->count(), std::ssize(shown));
        EXPECT_EQ(drives->currentText().toStdString(), DriveOf(At("out")));
        drives->setFocus();
        std::string there = At("out");
        for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home}) {
            const std::string& drive = key == Qt::Key_End ? shown.back() : shown.front();
            if (drive != DriveOf(there) && FolderCanBeListed(drive)) there = drive;
            Key(key);
            EXPECT_EQ(Form->Chooser->dirDirBox.Path(), there);
            EXPECT_EQ(Line->text().toStdString(), there);
            EXPECT_EQ(drives->currentText().toStdString(), DriveOf(there));
        }
    });
    fs::permissions(At("out/locked"), fs::perms::owner_all);
}

TEST_F(ChooserTest, OpensAtItsLastPosition) {
    Choose("Cancel", [&](ChooserScreen& screen) {
        EXPECT_EQ(screen.pos(), QPoint(200, 200));
        screen.move(120, 90);
        EXPECT_TRUE(QTest::qWaitFor([&] { return Form->Chooser->Form.Left == 1800; }));
    });
    EXPECT_EQ(Form->Chooser->Form.Top, 1350);
    Form->Chooser->Form.Left = 9e9F;  // as on a screen that is no longer there
    Choose("Cancel", [](ChooserScreen& screen) {
        const QRect area = screen.screen()->availableGeometry();
        EXPECT_TRUE(area.contains(QRect(screen.pos(), screen.size())));
        EXPECT_EQ(screen.y(), 90);
    });
}

}  // namespace
}  // namespace tessel
