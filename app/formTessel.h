#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/dialogGetDirectory.h"
#include "platform/controls.h"
#include "platform/host.h"
#include "volume/partitionTable.h"

namespace tessel {

/// One level of the path from the root to the listed directory.
struct DirLevel {
    std::string ShortName{};   ///< the entry's 8.3 name
    std::string LongName{};    ///< its long name, "" for none
    std::string FolderName{};  ///< the long name, or the short one where there is none
};

/// The main window. Its event handlers are the entry points for all actions of the user. Each runs
/// inside one outermost guard: an error that no command catches is shown in a message box, the busy
/// state ends, and the window stays usable.
struct formTessel {
    formTessel();
    formTessel(const formTessel&) = delete;
    formTessel& operator=(const formTessel&) = delete;

    // --- The controls (bounds in twips). ---------------------------------------------------------
    Window Form;
    Frame Frame1{"Frame1", "Display", {0, 0, 1695, 1215}};
    std::array<OptionButton, 4> optDisplay;
    Label lblVolumeID{.Name = "lblVolumeID", .Bounds = {1800, 120, 1575, 255}};
    Button cmdABORT{.Name = "cmdABORT", .Caption = "STOP", .Bounds = {3480, 120, 1095, 375}};
    Label lblSystemID{.Name = "lblSystemID", .Bounds = {4680, 120, 615, 255}};
    Button cmdDirectory{
        .Name = "cmdDirectory", .Caption = "Directory", .Bounds = {5400, 120, 855, 375}};
    Button cmdDisplayBootSector{
        .Name = "cmdDisplayBootSector", .Caption = "Boot Sector", .Bounds = {6360, 120, 1215, 375}};
    Button cmdFat0{.Name = "cmdFat0", .Caption = "FAT0", .Bounds = {7680, 120, 855, 375}};
    Button cmdRoot{.Name = "cmdRoot", .Caption = "Root", .Bounds = {8640, 120, 855, 375}};
    Label lblVersion{.Name = "lblVersion", .Bounds = {9840, 120, 1215, 255}};
    Label lblDirectory{.Name = "lblDirectory", .Bounds = {120, 1320, 1575, 255}};
    ListBox listDIR;
    DisplayBox rtfDisplay;
    CommonDialog CommonDialog1;

    std::array<MenuEntry, 9> FileEntries;  ///< mnuOpen to mnuExit, separators included
    std::array<MenuEntry, 1> OptionsEntries;
    Menu mnuFile;
    Menu mnuOptions;
    MenuEntry& mnuOpen = FileEntries[0];
    MenuEntry& mnuClose = FileEntries[1];
    MenuEntry& mnuSaveTxt = FileEntries[3];
    MenuEntry& mnuSaveFile = FileEntries[4];
    MenuEntry& mnuSaveDirectory = FileEntries[6];
    MenuEntry& mnuExit = FileEntries[8];
    MenuEntry& mnuOffset = OptionsEntries[0];

    // --- The window's state. ---------------------------------------------------------------------
    bool VolumeOpen = false;  ///< a volume is open and can be browsed
    Long FileCount = 0;       ///< files in the listed directory, counted when it was loaded
    Long DirDepth = 0;        ///< index of the listed directory in DirStack; 0 is the root
    std::array<DirLevel, 512> DirStack;  ///< level 0 is the root and is never written

    /// The folder chooser; null until its first use.
    std::unique_ptr<dialogGetDirectory> Chooser;

    // --- Called by the screen, besides the controls' events. -------------------------------------
    /// Call before the window is shown first: empties list and display, and disables all controls
    /// that need a volume.
    void Form_Load();
    /// Call when the program ends: stores the folder chooser's position.
    void Form_Unload();
    /// The lines that the Offset box lists: the whole file, and the volumes in the image that was
    /// last opened or refused in this run.
    std::vector<InputChoice> OffsetChoices() const;
    /// Whether Exit was chosen during a long operation and will run when that has ended.
    bool ExitIsPending() const { return ExitPending; }
    /// Opens an image that the user dropped on the window or that the desktop passed, as Open does
    /// after its dialog. `title` is its file name. During a long operation, and while a dialog
    /// waits for its answer, shows a message box instead.
    void DropImage(const std::string& path, const std::string& title);

    /// Closes drive slot `index` (0 to 3, any other raises 9) and returns the window to its state
    /// without an image.
    void CloseDrive(Integer index);
    /// Adds the files and directories of DirEntries to the list, in disk order, shows a volume
    /// label in lblVolumeID, and selects the first line.
    void ListDirectory();
    /// Asks the user for a host folder; returns "" after Cancel. With `dirType` "SAVEALL" (in any
    /// case) the chooser starts in the folder stored for Save Directory, and the result is stored,
    /// even if empty. The title is "Directory Path " followed by `dialogTitle`. The other three
    /// parameters are ignored.
    std::string GetDirName(const std::string& suggestedDirName, const std::string& openSave,
                           const std::string& dirType = "", Long extraFlags = 0,
                           const std::string& dialogTitle = "");

  private:
    using Handler = void (formTessel::*)();
    std::function<void()> Guarded(Handler handler);
    void RunGuarded(const std::function<void()>& handler);

    // The window itself, the busy state, and which controls are enabled (formTessel.cpp).
    void Form_Resize();
    void Form_CloseBox();
    void mnuExit_Click();
    void cmdABORT_Click();
    void StopAll();
    void SetBusy(bool flag);
    void EnableStop();
    void EnableControls(bool flag);
    void SetVolumeOpen(bool flag);
    void ClearDisplay();

    // Opening and closing an image (formTesselVolume.cpp).
    void Form_Initialize();
    void mnuFile_Click();
    void mnuOptions_Click();
    void mnuOpen_Click();
    void mnuClose_Click();
    void mnuOffset_Click();
    bool MayOpen() const;
    bool MaySaveFile();
    bool MaySaveDirectory();
    void OpenImage(const std::string& path, const std::string& title);
    bool OpenImageFile(const std::string& path);
    void ShowFatTypeReason();
    void RefuseVolume();
    void BrowseVolume();
    void ReportOpenError(const RuntimeError& error);
    void ShowOffset();

    // Display modes and navigation (formTesselBrowse.cpp).
    void listDIR_Click();
    void listDIR_DblClick();
    void optDisplay_Click();
    void cmdDirectory_Click();
    void cmdDisplayBootSector_Click();
    void cmdFat0_Click();
    void cmdRoot_Click();
    void OpenDirectory(Long cluster);
    void ClearList();
    void AddEntryLine(Long index);
    std::optional<Long> SelectedEntry();
    bool EnterDirectory(Long index);
    void ShowEntry(Long index);
    void ShowEntryInfo(Long index);
    void ShowFileView(Long index);
    void DumpEntry(Long index);

    // Saving (formTesselSave.cpp).
    void mnuSaveFile_Click();
    void mnuSaveTxt_Click();
    void mnuSaveDirectory_Click();
    bool SaveText();
    void SetSavingText(bool flag);
    std::string SuggestedName() const;

    PartitionTable LastTable{};  // of the image that was last opened or refused
    std::string LastTitle{};     // its file name

    int RunningHandlers = 0;    // more than 1 when a handler runs while another processes events
    bool ClosePending = false;  // Close was chosen while the image was in use
    bool ExitPending = false;   // Exit was chosen while the image was in use
    std::string LastDirName{};  // the folder last chosen through GetDirName in this run
    bool SaveAllRunning = false;
    bool WasBusy = false;           // the busy state has been left at least once
    bool SavingText = false;        // Save Display is running
    bool StopSaving = false;        // the running Save Display stops at its next part
    bool SavingWithinView = false;  // it was started while a view processed events
};

/// "MAJOR.MINOR.REVISION" of this program.
const char* ProgramVersion();

}  // namespace tessel
