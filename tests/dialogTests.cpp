#include "dialogs/dialogGetDirectory.h"
#include "dialogs/modFile.h"
#include "dialogs/settings.h"
#include "platform/hostFiles.h"
#include "tests/fixture.h"

/// The file dialog, the folder chooser, and their settings.
namespace tessel {
namespace {

using Texts = std::map<std::string, std::string>;

class DialogTest : public TesselTest {
  protected:
    DialogTest() {
        const auto show = [this](const char* how) {
            return [this, how](CommonDialog& dialog) {
                Shown = dialog;
                How = how;
                if (Error != 0) throw RuntimeError(Error, "desktop", "It failed");
                dialog.FileName = Answer;
            };
        };
        TheHost.ShowOpen = show("open");
        TheHost.ShowSave = show("save");
        TheHost.MessageBox = [this](const std::string& text, const std::string& title) {
            Box = title + "|" + text;
        };
        TheHost.Settings.Read = [this](const std::string& section, const std::string& key,
                                       const std::string& fallback) {
            const auto value = Stored.find(section + "/" + key);
            return value == Stored.end() ? fallback : value->second;
        };
        TheHost.Settings.Write = [this](const std::string& section, const std::string& key,
                                        const std::string& text) {
            Stored[section + "/" + key] = text;
        };
    }
    std::string Ask(std::string kind, const std::string& purpose = "OPEN",
                    const std::string& title = "Default", Long flags = 0) {
        How.clear();
        std::string path = GetFileName(Dialog, "sug", purpose, kind, flags, title);
        Kind = kind;
        return path;
    }

    CommonDialog Dialog, Shown;
    std::string Answer = "/a/b.img", How, Box, Kind;
    int Error = 0;
    Texts Stored;
};

TEST_F(DialogTest, TheKindSelectsTheFilter) {
    // One row for each sort of kind: keyword, filter, extension, description, key.
    const std::string all = "|All Files (*.*)|*.*";
    const std::array<std::string, 5> rows[] = {
        {"", "All Files (*.*)|*.*", "", "", "ELSE"},
        {"TXT", "Text File (*.txt)|*.txt" + all, "txt", "Text", "TXT"},
        {"ULOAD", "All Files (*.*)|*.*", "", "\"Upload to Host System\"", "ULoad"},
        {"img",
         "All Disk Image Files (*.img;*.dsk;*.raw)|*.img;*.dsk;*.raw|Image File (*.img)|*.img|"
         "Disk File (*.dsk)|*.dsk|RAW File (*.raw)|*.raw" +
             all,
         "img", "Raw Disk Image", "IMG"},
        {"log", "File (*.log)|*.log" + all, "log", "", "ELSE"},
        {"drv00", "File (*.drv00)|*.drv00" + all, "drv00", "", "ELSE"}};
    for (const auto& [kind, filter, extension, description, key] : rows) {
        Stored = {{"Paths/" + key, "/kept/"}};
        RecentPaths = {};
        EXPECT_EQ(Ask(kind), "/a/b.img");
        EXPECT_EQ(Shown.Filter, filter);
        EXPECT_EQ(Shown.DefaultExt, extension) << kind;
        EXPECT_EQ(Shown.FilterIndex, 1) << kind;
        EXPECT_EQ(Shown.Title, "Open " + description + " File");
        EXPECT_EQ(Shown.InitDir, "/kept/") << kind;
        EXPECT_EQ(Stored, (Texts{{"Paths/" + key, "/a/"}})) << kind;
    }
}

TEST_F(DialogTest, ThePurposeSelectsTitleAndFlags) {
    struct Row {
        std::string Purpose, Title, ShownTitle, How;
        Long Flags;
    };
    const Row rows[] = {{"open", "", "Open  File", "open", 2101248},
                        {"SaveAs", "Default", "Save Text File As", "save", 2131974},
                        {"Load", "x", "", "", 0}};
    for (const Row& row : rows) {
        Dialog = Shown = {};
        EXPECT_EQ(Ask("txt", row.Purpose, row.Title, 0x40), row.How.empty() ? "sug" : Answer);
        EXPECT_EQ(How, row.How);
        EXPECT_EQ(Shown.Title, row.ShownTitle);
        EXPECT_EQ(Shown.Flags, row.How.empty() ? 0 : row.Flags | 0x40);
        EXPECT_EQ(Shown.FileName, row.How.empty() ? "" : "sug");
        EXPECT_TRUE(Dialog.CancelError);
    }
    EXPECT_EQ(RecentPaths.LastFolder, "") << "the answer has no folder";
}

TEST_F(DialogTest, FoldersAreRemembered) {
    const auto startOf = [this](const std::string& kind, const std::string& answer) {
        Answer = answer;
        Ask(kind);
        return Shown.InitDir;
    };
    EXPECT_EQ(startOf("IMG", "/i/x.img"), Folder) << "the current folder, without a separator";
    EXPECT_EQ(startOf("TXT", "/t/x.txt"), "/i/") << "the last folder of this run";
    EXPECT_EQ(startOf("IMG", "/i/x.img"), "/i/");
    EXPECT_EQ(startOf("drv05", "/five/x"), "/i/");
    EXPECT_EQ(Kind, "DRV");
    EXPECT_EQ(startOf("DRV12", "/twelve/x"), "/five/");
    EXPECT_EQ(startOf("DRV013", "/thirteen/x"), "/twelve/");
    EXPECT_EQ(startOf("DRV05", "/five/y"), "/five/");
    EXPECT_EQ(startOf("", "name"), "/five/");
    RecentPaths = {};
    EXPECT_EQ(startOf("TXT", "/"), "/t/") << "in a later run";
    EXPECT_EQ(startOf("log", "/l/x"), "/") << "ELSE is not stored yet, and the root was the last";
    const Texts stored = {{"Paths/IMG", "/i/"},
                          {"Paths/TXT", "/"},
                          {"Paths/DRIVE05", "/five/"},
                          {"Paths/DRIVE12", "/twelve/"},
                          {"Paths/DRIVE13", "/thirteen/"},
                          {"Paths/ELSE", "/l/"}};
    EXPECT_EQ(Stored, stored);
    // Cancel, and an error in the dialog: nothing is chosen or remembered.
    for (const int error : {32755, 7}) {
        Error = error;
        EXPECT_EQ(Ask("IMG"), "");
        EXPECT_FALSE(Dialog.CancelError);
        EXPECT_EQ(RecentPaths.LastFolder, "/l/");
        EXPECT_EQ(Box, error == 7 ? "Error|desktop generated  Error # 7\r\nIt failed" : "");
    }
    EXPECT_EQ(Stored, stored);
    Error = 0;
    TheHost.Settings.Write = [](const auto&, const auto&, const auto&) {
        Raise(kPathFileAccessError);
    };
    EXPECT_EQ(ErrorOf([this] { Ask("IMG"); }), 75) << "left to the caller";
}

TEST_F(DialogTest, TheChooserReturnsTheListedFolder) {
    std::filesystem::create_directories(At("in/sub"));
    const std::string root = DriveRoot(DriveOf(Folder));
    dialogGetDirectory chooser;
    struct Row {
        std::string Dir, Drive;  // to start with
        std::string Does, Listed, Answer;
        int Value;
        bool Cancel;
    };
    const std::string in = At("in"), sub = At("in/sub"), gone = At("gone");
    const Row rows[] = {
        {in, "nowhere", "ok", root, root, 1, false},  {in, in, "ok", in, in, 1, false},
        {gone, gone, "ok", Folder, Folder, 1, false}, {in, in, "close", in, in, 0, false},
        {in, in, "cancel", in, "", 0, true},          {sub, sub, "close", sub, sub, 0, true},
        {in, "nowhere", "ok", sub, sub, 1, false},    {in, in, "sub", in, sub, 1, false},
        {in, in, "drive", in, root, 1, false},        {in, in, "bad", in, in, 1, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Dir + " " + row.Does);
        TheHost.ShowModal = [&](Window& window) {
            EXPECT_TRUE(window.Visible);
            EXPECT_EQ(chooser.dirDirBox.Path(), row.Listed);
            EXPECT_EQ(chooser.txtDirName.Text.Get(), row.Listed);
            chooser.txtDirName.Text = "/typed";
            if (row.Does == "sub") chooser.dirDirBox.SetPath(sub);
            if (row.Does == "bad") {
                EXPECT_EQ(ErrorOf([&] { chooser.dirDirBox.SetPath(gone); }), 76);
                EXPECT_EQ(ErrorOf([&] { chooser.driveDriveBox.SetDrive("nowhere"); }), 76);
            }
            if (row.Does == "drive") RaiseEvent(chooser.driveDriveBox.Change);
            (row.Does == "close"    ? chooser.Form.CloseBox
             : row.Does == "cancel" ? chooser.CancelButton.Click
                                    : chooser.OKButton.Click)();
            EXPECT_FALSE(window.Visible);
        };
        chooser.DirName = row.Dir;
        chooser.DriveName = row.Drive;
        chooser.ShowGetDirectory();
        EXPECT_EQ(chooser.DirName, row.Answer);
        EXPECT_EQ(chooser.DriveName, row.Does == "cancel"  ? ""
                                     : row.Does == "close" ? row.Drive
                                                           : DriveOf(Folder));
        EXPECT_EQ(chooser.ReturnValue, row.Value);
        EXPECT_EQ(chooser.Cancel, row.Cancel);
    }
}

TEST_F(DialogTest, TheChooserRestoresItsPosition) {
    for (const char* text : {"abc", "", "1,5", "12 ", "nan", "inf", "1e99"}) {
        Stored = {{"SaveALL/Top", text}, {"SaveALL/Left", "-7.5"}};
        const dialogGetDirectory chooser;
        EXPECT_EQ(chooser.Form.Top, 3000) << text;
        EXPECT_EQ(chooser.Form.Left, -7.5);
    }
    dialogGetDirectory chooser;
    chooser.Form.Left = 0.1F;
    chooser.Form_Unload();
    chooser.Form.Left = 5;
    chooser.Form.Normal = false;
    chooser.Form_Unload();
    EXPECT_EQ(dialogGetDirectory().Form.Left, 0.1F) << Stored["SaveALL/Left"];
}

TEST_F(WindowTest, TheChoosersPositionAndFolderAreStored) {
    Settings.Load(At("settings"));
    std::filesystem::create_directory(At("out"));
    Open(SampleImage());
    Run("folder @/out\nmenu Save Directory");
    Window->Form.Chooser->Form.Top = 4321;
    Restart();
    Settings.Load(At("settings"));
    EXPECT_EQ(Settings.Read("Paths", "IMG", "?"), At(""));
    EXPECT_EQ(Settings.Read("Paths", "SAVEALL", "?"), At("out"));
    EXPECT_EQ(Settings.Read("SaveALL", "Left", "?"), "3000");
    EXPECT_EQ(Settings.Read("SaveALL", "Top", "?"), "4321");
    EXPECT_FALSE(Window->Form.Chooser) << "created at its first use";
    EXPECT_EQ(Window->Form.GetDirName("", "", "saveall", 0, "Save All"), "");
    EXPECT_EQ(Window->Form.Chooser->Form.Top, 4321);
    EXPECT_EQ(Settings.Read("Paths", "SAVEALL", "?"), "") << "Cancel clears it";
}

}  // namespace
}  // namespace tessel
