#include <functional>
#include <new>
#include <optional>

#include "app/formTessel.h"
#include "dialogs/modFile.h"
#include "platform/numberedFiles.h"
#include "reports/dumps.h"
#include "reports/fatTypeReason.h"
#include "reports/offsetLines.h"
#include "util/modUtility.h"
#include "volume/errorReports.h"
#include "volume/modDisks.h"

/// Opening and closing an image.
namespace tessel {
namespace {

constexpr const char* kPartitionTableHint =
    "This file begins with a partition table: Options > Offset lists its volumes. ";

/// Runs steps that must all run even if an earlier one fails, and keeps the first error.
class FirstError {
  public:
    void Try(const std::function<void()>& step) {
        try {
            step();
        } catch (const RuntimeError& error) {
            if (!First) First = error;
        } catch (const std::bad_alloc&) {
            if (!First) First.emplace(kOutOfMemory, kProjectName, ErrorText(kOutOfMemory));
        }
    }
    void RethrowFirst() const {
        if (First) throw RuntimeError(*First);
    }

  private:
    std::optional<RuntimeError> First;
};

}  // namespace

void formTessel::Form_Initialize() {
    lblVersion.Caption = std::string("V ") + ProgramVersion();
    PartitionOffset = 0;
}

void formTessel::mnuFile_Click() {
    mnuOpen.Enabled = !SavingText;
    mnuSaveTxt.Enabled = !SavingText;
    mnuSaveFile.Enabled = MaySaveFile();
    mnuSaveDirectory.Enabled = MaySaveDirectory();
}

bool formTessel::MaySaveFile() {
    return Drives[1].IsOpen && MayOpen() && IsFile(SelectedEntry().value_or(0));
}

bool formTessel::MaySaveDirectory() { return Drives[1].IsOpen && MayOpen() && CountFiles() > 0; }

void formTessel::mnuOptions_Click() { mnuOffset.Enabled = !Drives[1].IsOpen; }

bool formTessel::MayOpen() const { return !Busy && !SavingText; }

void formTessel::mnuOpen_Click() {
    if (!MayOpen()) return;
    Drives[1].FileNumber = kImageFile;
    std::string kind = "IMG";
    const std::string path = GetFileName(CommonDialog1, "", "OPEN", kind, 0, "FAT Raw File");
    if (!path.empty()) OpenImage(path, CommonDialog1.FileTitle);
}

void formTessel::DropImage(const std::string& path, const std::string& title) {
    // Since the drop, the window may have started an operation or opened a dialog.
    const bool working = !MayOpen();
    const bool waiting = RunningHandlers > 0;
    RunGuarded([=, this] {
        if (working || waiting) {
            const char* reason = working ? "until the running command has ended; STOP ends it"
                                         : "while a message or a dialog waits for an answer";
            TheHost.MessageBox(std::string("No file can be opened ") + reason + ".\r\n" + path,
                               "Error");
            return;
        }
        Drives[1].FileNumber = kImageFile;
        OpenImage(path, title);
    });
}

void formTessel::OpenImage(const std::string& path, const std::string& title) {
    if (Drives[1].IsOpen) CloseDrive(1);
    Drives[1].ImageTitle = title;
    Drives[1].ImagePath = path;
    Form.Caption = "FAT File System " + path;
    LastTable = {};
    LastTitle = title;
    if (!OpenImageFile(path)) return;

    ParseBootSector();
    lblVolumeID.Caption = Trimmed(BootSector.VolumeLabel);
    lblSystemID.Caption = Trimmed(BootSector.SystemId);
    const Long fatType = FatTypeOf(Drives[1].ClusterCount);
    SetFatType(fatType, lblSystemID);
    ShowFatTypeReason();
    if (fatType == 32) {
        TheHost.MessageBox("FAT32 is not supported", "Bad FAT type");
        rtfDisplay.Text.Replace(DumpBootSector());
        RefuseVolume();
        return;
    }
    ClearList();
    if (!HasBootSignature()) {
        rtfDisplay.Text.Replace(DumpBootSector());
        TheHost.MessageBox("No Boot Signature", "Bad Boot Sector");
        RefuseVolume();
        return;
    }
    BrowseVolume();
}

bool formTessel::OpenImageFile(const std::string& path) {
    try {
        OpenForReading(kImageFile, path);
        LastTable = ReadPartitionTable(kImageFile);
        SetDriveGeometry(1);
        Drives[1].IsOpen = true;
        lblVolumeID.Caption = "";
        lblSystemID.Caption = "";
        lblSystemID.Hint = "";
        lblDirectory.Caption = "";
        DirDepth = 0;
        // Without its first sector, no part of a volume can be shown.
        if (!ReadBootSector()) Raise(kDeviceIoError);
        return true;
    } catch (const RuntimeError& error) {
        ReportOpenError(error);
        return false;
    }
}

void formTessel::ShowFatTypeReason() {
    const bool table = PartitionOffset == 0 && !LastTable.StartsWithVolume;
    lblSystemID.Hint =
        (table && !LastTable.Volumes.empty() ? kPartitionTableHint : "") + FatTypeReason();
}

void formTessel::ReportOpenError(const RuntimeError& error) {
    TheHost.MessageBox(OpenErrorReport(error, Drives[1].ImagePath), "Error");
    CloseDrive(1);
}

void formTessel::RefuseVolume() {
    CloseFile(kImageFile);
    Drives[1].IsOpen = false;
    EnableControls(false);
}

void formTessel::BrowseVolume() {
    // A damaged volume is shown as far as it can be read: one bad area does not hide the others.
    FirstError errors;
    // Otherwise a volume without FATs would show the FAT of the previous image.
    Fat0Bytes.clear();
    Fat1Bytes.clear();
    RootDirBytes.clear();
    errors.Try([] { ReadRootDirectory(); });
    ClearDirEntries();
    errors.Try([this] { OpenDirectory(0); });
    SetVolumeOpen(true);
    if (BootSector.NumberOfFats >= 1) errors.Try([] { ReadFat0(); });
    if (BootSector.NumberOfFats >= 2) errors.Try([] { ReadFat1(); });
    RaiseEvent(listDIR.TakeFocus);
    errors.RethrowFirst();
}

void formTessel::mnuClose_Click() {
    if (Busy || SavingText) {
        StopAll();
        ClosePending = true;
    } else {
        CloseDrive(Drives[1].FileNumber);
    }
}

void formTessel::CloseDrive(Integer index) {
    if (index < 0 || index >= static_cast<Integer>(Drives.size())) Raise(kSubscriptOutOfRange);
    DriveRecord& drive = Drives[static_cast<std::size_t>(index)];
    lblVolumeID.Caption = "";
    lblSystemID.Caption = "";
    lblSystemID.Hint = "";
    lblDirectory.Caption = "";
    drive.ImagePath.clear();
    drive.ImageTitle.clear();
    drive.IsOpen = false;
    // The display may generate its text from the file, so clear it before closing.
    ClearDisplay();
    CloseFile(index);
    Form.Caption = "FAT File System";
    SetVolumeOpen(false);
}

std::vector<InputChoice> formTessel::OffsetChoices() const {
    return OffsetLines(LastTable, LastTitle);
}

void formTessel::mnuOffset_Click() {
    std::string text = std::to_string(PartitionOffset);
    for (;;) {
        text =
            TheHost.InputBox("Input Offset (0 to 2GB)", "Partition Offset", text, OffsetChoices());
        if (text.empty()) return;
        const Long value = ParseNumber(text);
        if (value != -1) {
            PartitionOffset = value;
            ShowOffset();
            return;
        }
    }
}

void formTessel::ShowOffset() {
    lblVolumeID.Hint = PartitionOffset == 0 ? ""
                                            : "Offset " + std::to_string(PartitionOffset) + " (&H" +
                                                  Hex8(PartitionOffset) +
                                                  "): where the volume begins in the image file";
}

}  // namespace tessel
