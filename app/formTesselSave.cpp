#include <functional>
#include <new>
#include <utility>

#include "app/formTessel.h"
#include "app/mirroredFolders.h"
#include "app/textFile.h"
#include "dialogs/modFile.h"
#include "dialogs/settings.h"
#include "platform/hostFiles.h"
#include "util/modUtility.h"
#include "volume/errorReports.h"
#include "volume/modDisks.h"
#include "volume/saveTarget.h"

/// Saving to the host.
namespace tessel {
namespace {

/// Calls a function when its scope is left.
class ScopeGuard {
  public:
    explicit ScopeGuard(std::function<void()> atEnd) : AtEnd(std::move(atEnd)) {}
    ~ScopeGuard() { AtEnd(); }
    ScopeGuard(const ScopeGuard&) = delete;
    ScopeGuard& operator=(const ScopeGuard&) = delete;

  private:
    std::function<void()> AtEnd;
};

}  // namespace

std::string formTessel::SuggestedName() const {
    if (listDIR.ListIndex() < 0) return "";
    const Long index = listDIR.ItemData(listDIR.ListIndex());
    std::string longName = LongNameText(index);
    if (!longName.empty()) return longName;
    return Trimmed(DirEntries(index).Name) + "." + Trimmed(DirEntries(index).Ext);
}

void formTessel::mnuSaveFile_Click() {
    // The menu may have been opened before a view was complete.
    if (!MaySaveFile()) return;
    SetBusy(true);
    std::string kind;
    const std::string path = GetFileName(CommonDialog1, SuggestedName(), "Save", kind, 0, "DOS");
    // The result is not needed: the copy has already reported any error.
    if (!path.empty()) SaveEntryToFile(SelectedEntry().value_or(0), path);
    SetBusy(false);
}

void formTessel::mnuSaveTxt_Click() {
    if (SavingText) return;
    std::string kind = "TXT";
    const std::string path =
        GetFileName(CommonDialog1, SuggestedName(), "Save", kind, 0, "Display as Text");
    if (path.empty()) return;
    SaveErrors errors;
    try {
        CreateTarget(kTextFile, FolderHandle(FolderOf(path)), FileTitleOf(path));
    } catch (const RuntimeError& error) {
        return errors.Show(SaveStep::kCreate, error, path);
    }
    try {
        if (!SaveText())
            TheHost.MessageBox("The text was not saved completely:\r\n" + path, "Error");
    } catch (const RuntimeError& error) {
        errors.Show(SaveStep::kWriteText, error, path);
    } catch (const std::bad_alloc&) {
        errors.Show(SaveStep::kWriteText, {kOutOfMemory, kProjectName, ErrorText(kOutOfMemory)},
                    path);
    }
}

bool formTessel::SaveText() {
    // Events are processed while a long text is written, so a copy of the current text is saved.
    // The image that it is generated from stays open until then.
    TextDisplay text = rtfDisplay.Text;
    text.Changed = nullptr;
    StopSaving = false;
    SavingWithinView = Busy;
    SetSavingText(true);
    const ScopeGuard saving([this] { SetSavingText(false); });
    return WriteTextFile(text, StopSaving);
}

void formTessel::SetSavingText(bool flag) {
    SavingText = flag;
    EnableStop();
    mnuOpen.Enabled = !flag;
    mnuSaveTxt.Enabled = !flag;
}

void formTessel::mnuSaveDirectory_Click() {
    if (SaveAllRunning || !MaySaveDirectory() || listDIR.ListIndex() < 0) return;
    const std::string folder = GetDirName("", "SAVE", "SAVEALL", 0, "Save All");
    if (folder.empty()) return;

    SaveAllRunning = true;
    const ScopeGuard running([this] { SaveAllRunning = false; });
    ClearDisplay();
    SetBusy(true);
    MirroredFolders target(folder, StripExtension(Drives[1].ImageTitle));
    for (Long level = 1; level <= DirDepth; ++level) {
        target.Add(DirStack[static_cast<std::size_t>(level)].FolderName);
    }

    Long saved = 0;
    Long failed = 0;
    Progress progress(FileCount, true);
    for (Long row = 0; row < DirEntries.Rows(); ++row) {
        progress.Show(saved + failed);
        TheHost.DoEvents();
        if (!DirEntries(row).InUse) break;
        if (IsFile(row) && !IsDeleted(row)) {
            if (!target.EnterChosen()) break;
            const std::string longName = LongNameText(row);
            const bool ok = target.Save(row, longName.empty() ? EntryFileName(row) : longName);
            rtfDisplay.Text.Append((ok ? "Saved - " : "Failed - ") + target.Path() + "\r\n");
            ++(ok ? saved : failed);
        }
        if (StopRequested) break;
    }
    rtfDisplay.Text.Append("\r\n Total Files  - " + std::to_string(FileCount) + "  Saved - " +
                           std::to_string(saved) + "  Failed - " + std::to_string(failed));
    SetBusy(false);
}

std::string formTessel::GetDirName(const std::string& /*suggestedDirName*/,
                                   const std::string& /*openSave*/, const std::string& dirType,
                                   Long /*extraFlags*/, const std::string& dialogTitle) {
    if (LastDirName.empty()) LastDirName = CurrentFolder();
    const bool saveAll = UpperCase(dirType) == "SAVEALL";
    RefreshSettings();
    std::string start = saveAll ? ReadPath(kSaveAllFolderKey) : "";
    if (start.empty()) start = LastDirName;

    if (!Chooser) Chooser = std::make_unique<dialogGetDirectory>();
    Chooser->Form.Caption = "Directory Path " + dialogTitle;
    Chooser->DirName = start;
    Chooser->DriveName = start;
    Chooser->ShowGetDirectory();
    std::string answer = Chooser->DirName;

    if (!answer.empty()) LastDirName = answer;
    if (saveAll) WritePath(kSaveAllFolderKey, answer);
    return answer;
}

}  // namespace tessel
