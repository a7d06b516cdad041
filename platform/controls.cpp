#include "platform/controls.h"

#include "platform/hostFiles.h"

namespace tessel {

void OptionButton::Choose() {
    if (Value) return;
    for (OptionButton& other : Group) {
        if (&other != this) other.Value = false;
    }
    Value = true;
    RaiseEvent(Click);
}

void OptionButton::Press() {
    if (!Enabled) return;
    if (Value) {
        RaiseEvent(Click);
    } else {
        Choose();
    }
}

void ListBox::Clear() {
    Items.clear();
    Selected = -1;
    RaiseEvent(LinesChanged);
}

void ListBox::AddItem(std::string text, Long itemData) {
    Items.push_back({std::move(text), itemData});
    RaiseEvent(LinesChanged);
}

const ListBox::Item& ListBox::ItemAt(int line) const {
    if (line < 0 || line >= Count()) Raise(kSubscriptOutOfRange);
    return Items[static_cast<std::size_t>(line)];
}

void ListBox::Select(int line) {
    if (line < -1 || line >= Count()) Raise(kSubscriptOutOfRange);
    if (line == Selected) return;
    Selected = line;
    RaiseEvent(SelectionChanged);
    if (line >= 0) RaiseEvent(Click);
}

void ListBox::ClickLine(int line) {
    if (!Enabled) return;
    if (line >= 0 && line == Selected) {
        RaiseEvent(Click);
    } else {
        Select(line);
    }
}

void ListBox::DoubleClickLine(int line) {
    if (!Enabled) return;
    ClickLine(line);
    // The click handler may have disabled the list.
    if (Enabled) RaiseEvent(DblClick);
}

void DriveList::SetDrive(const std::string& path) {
    const std::string drive = DriveOf(path);
    if (drive.empty()) Raise(kPathNotFound);
    if (drive == Chosen) return;
    const std::string before = Chosen;
    Chosen = drive;
    try {
        RaiseEvent(Change);
    } catch (const RuntimeError&) {
        // The drive cannot be read: select the previous one again.
        Chosen = before;
        RaiseEvent(DriveChanged);
        throw;
    }
    RaiseEvent(DriveChanged);
}

void FolderList::SetPath(const std::string& path) {
    if (!FolderCanBeListed(path)) Raise(kPathNotFound);
    if (path == Chosen) return;
    Chosen = path;
    RaiseEvent(PathChanged);
    RaiseEvent(Change);
}

}  // namespace tessel
