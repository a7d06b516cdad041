#include "app/formTessel.h"
#include "reports/directoryLines.h"
#include "reports/dumps.h"
#include "util/modUtility.h"
#include "volume/modDisks.h"

/// Display modes and navigation.
namespace tessel {

void formTessel::OpenDirectory(Long cluster) {
    optDisplay[0].Choose();
    ClearDirEntries();
    ClearList();
    const auto list = [this] {
        FileCount = CountFiles();
        AttachLongNames();
        ListDirectory();
    };
    try {
        if (cluster != 0) {
            LoadSubDirectory(cluster);
        } else {
            LoadRootDirectory();
        }
    } catch (const RuntimeError&) {
        list();  // the entries that could be read
        throw;
    }
    list();
}

void formTessel::ListDirectory() {
    for (Long row = 0; row < DirEntryCount && DirEntries(row).InUse; ++row) {
        if ((IsFile(row) || IsDirectory(row)) && !IsDeleted(row)) AddEntryLine(row);
        if (IsVolumeLabel(row)) lblVolumeID.Caption = ListLine(row, false);
    }
    if (listDIR.Count() > 0) {
        listDIR.Select(0);
    } else {
        ClearDisplay();  // choosing the mode may have shown the directory's own entry again
    }
}

void formTessel::ClearList() { listDIR.Clear(); }

void formTessel::AddEntryLine(Long index) { listDIR.AddItem(ListLine(index, false), index); }

std::optional<Long> formTessel::SelectedEntry() {
    if (listDIR.Count() == 0) return std::nullopt;
    if (listDIR.ListIndex() < 0) listDIR.Select(0);
    return listDIR.ItemData(listDIR.ListIndex());
}

void formTessel::listDIR_Click() {
    if (!VolumeOpen) return;
    const std::optional<Long> index = SelectedEntry();
    ClearDisplay();
    if (index) ShowEntry(*index);
}

void formTessel::listDIR_DblClick() {
    if (!VolumeOpen) return;
    const std::optional<Long> index = SelectedEntry();
    if (!index || !IsDirectory(*index) || !EnterDirectory(*index)) return;
    ClearDisplay();
    OpenDirectory(DirEntries(*index).StartCluster);
    if (const std::optional<Long> first = SelectedEntry()) ShowEntry(*first);
}

bool formTessel::EnterDirectory(Long index) {
    const std::string name = EntryFileName(index);
    const std::string trimmed = Trimmed(name);
    if (trimmed == "..") {
        if (DirDepth == 0) {
            TheHost.MessageBox("There is no directory above the root", "Error");
            return false;
        }
        --DirDepth;
    } else if (trimmed != ".") {
        if (DirDepth + 1 == static_cast<Long>(DirStack.size())) {
            TheHost.MessageBox(
                "The directory is too deep: the limit is " + std::to_string(DirDepth) + " levels",
                "Error");
            return false;
        }
        ++DirDepth;
        const std::string longName = LongNameText(index);
        DirStack[static_cast<std::size_t>(DirDepth)] = {name, longName,
                                                        longName.empty() ? name : longName};
    }
    lblDirectory.Caption = DirStack[static_cast<std::size_t>(DirDepth)].ShortName;
    return true;
}

void formTessel::optDisplay_Click() {
    if (const std::optional<Long> index = SelectedEntry()) {
        ShowEntry(*index);
    } else {
        ClearDisplay();
    }
}

void formTessel::ShowEntry(Long index) {
    rtfDisplay.Text.Replace(std::to_string(listDIR.ListIndex()) + " " + std::to_string(index));
    if (optDisplay[0].Value) {
        ShowEntryInfo(index);
    } else if (optDisplay[1].Value) {
        if (IsDirectory(index)) {
            ShowEntryInfo(index);
        } else if (IsFile(index)) {
            ShowFileView(index);
        }
    } else if (optDisplay[2].Value) {
        DumpEntry(index);
    }
}

void formTessel::ShowEntryInfo(Long index) { rtfDisplay.Text.Replace(ListLine(index, true)); }

void formTessel::ShowFileView(Long index) {
    SetBusy(true);
    ShowFileText(index, rtfDisplay.Text);
    SetBusy(false);
}

void formTessel::DumpEntry(Long index) {
    SetBusy(true);
    if (IsDirectory(index) && DirEntries(index).StartCluster == 0) {
        DumpRootDirectory(rtfDisplay.Text);
    } else {
        ShowFileDump(index, rtfDisplay.Text);
    }
    SetBusy(false);
}

void formTessel::cmdDirectory_Click() {
    if (!Busy) rtfDisplay.Text.Replace(DirectoryText());
}

void formTessel::cmdDisplayBootSector_Click() {
    if (!Busy) rtfDisplay.Text.Replace(BootSectorInfo() + DumpBootSector());
}

void formTessel::cmdFat0_Click() { rtfDisplay.Text.Replace(DumpFat0()); }

void formTessel::cmdRoot_Click() { DumpRootDirectory(rtfDisplay.Text); }

}  // namespace tessel
