#include "dialogs/modFile.h"

#include "dialogs/settings.h"
#include "platform/hostFiles.h"
#include "util/numberText.h"

namespace tessel {

RecentPathsRecord RecentPaths;

namespace {

/// The remembered folder of a kind: a field of RecentPaths and its settings key.
struct Remembered {
    std::string& Folder;
    std::string Key;
};

Remembered RememberedOf(const FileKind& kind, int slot) {
    if (kind.Keyword == kDriveSlotKeyword) {
        return {RecentPaths.DriveFolders[static_cast<std::size_t>(slot)], DriveKey(slot)};
    }
    std::size_t i = 0;
    while (kind.SettingsKey != kKindKeys[i]) ++i;
    return {RecentPaths.KindFolders[i], kind.SettingsKey};
}

void ReadRecentPaths(int slot) {
    if (RecentPaths.LastFolder.empty()) RecentPaths.LastFolder = CurrentFolder();
    std::string& drive = RecentPaths.DriveFolders[static_cast<std::size_t>(slot)];
    drive = ReadPath(DriveKey(slot));
    if (drive.empty()) drive = RecentPaths.LastFolder;
    for (std::size_t i = 0; i < kKindKeys.size(); ++i) {
        RecentPaths.KindFolders[i] = ReadPath(kKindKeys[i]);
    }
}

/// Sets title and flags for the purpose and shows the dialog; does nothing for an unknown purpose.
void ShowFor(const std::string& purpose, CommonDialog& dialog, const std::string& description,
             Long extraFlags) {
    if (purpose == "OPEN") {
        dialog.Title = "Open " + description + " File";
        dialog.Flags = extraFlags | kFileMustExist | kLongNames;
        TheHost.ShowOpen(dialog);
    } else if (purpose == "SAVE" || purpose == "SAVEAS") {
        dialog.Title = "Save " + description + " File" + (purpose == "SAVEAS" ? " As" : "");
        dialog.Flags = extraFlags | kOverwritePrompt | kHideReadOnly | kPathMustExist |
                       kNoReadOnlyReturn | kLongNames;
        TheHost.ShowSave(dialog);
    }
}

}  // namespace

std::string GetFileName(CommonDialog& dialog, const std::string& suggestedFileName,
                        const std::string& openSave, std::string& fileType, Long extraFlags,
                        const std::string& dialogTitle) {
    const int slot = DriveSlotOf(UpperCase(fileType));
    if (slot != 0) fileType = kDriveSlotKeyword;
    RefreshSettings();
    ReadRecentPaths(slot);

    const FileKind kind = FileKindOf(fileType);
    const Remembered remembered = RememberedOf(kind, slot);
    dialog.InitDir = remembered.Folder.empty() ? RecentPaths.LastFolder : remembered.Folder;
    dialog.Filter = kind.Filter;
    dialog.FilterIndex = kind.FilterIndex;
    dialog.DefaultExt = kind.DefaultExtension;
    dialog.CancelError = true;
    dialog.FileName = suggestedFileName;
    try {
        ShowFor(UpperCase(openSave), dialog,
                dialogTitle == "Default" ? kind.KindDescription : dialogTitle, extraFlags);
    } catch (const RuntimeError& error) {
        dialog.CancelError = false;
        if (error.Number != kCancelled) {
            TheHost.MessageBox(error.Source + " generated  Error # " +
                                   std::to_string(error.Number) + "\r\n" + error.Description,
                               "Error");
        }
        return "";
    }

    remembered.Folder = FolderOf(dialog.FileName);
    WritePath(remembered.Key, remembered.Folder);
    RecentPaths.LastFolder = remembered.Folder;
    return dialog.FileName;
}

}  // namespace tessel
