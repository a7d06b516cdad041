#include "volume/saveTarget.h"

#include "platform/hostFiles.h"
#include "platform/numberedFiles.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// Creates a file under an unused name, and returns the name.
std::string CreateTemporary(int number, const FolderHandle& folder) {
    constexpr int kMaxTries = 100;
    for (int i = 1;; ++i) {
        std::string name = "tessel-" + std::to_string(i) + ".tmp";
        try {
            folder.CreateFile(number, name);
            return name;
        } catch (const RuntimeError& error) {
            if (error.Number != kFileAlreadyExists || i == kMaxTries) throw;
        }
    }
}

}  // namespace

void CreateTarget(int number, const FolderHandle& folder, const std::string& name) {
    try {
        folder.CreateFile(number, name);
    } catch (const RuntimeError& error) {
        if (error.Number != kFileAlreadyExists) throw;
        ReplaceTarget(number, folder, name, folder.Look(name));
    }
}

void ReplaceTarget(int number, const FolderHandle& folder, const std::string& name,
                   const FolderEntry& entry) {
    RefuseTarget(entry);
    const std::string temporary = CreateTemporary(number, folder);
    try {
        folder.Rename(temporary, name);
    } catch (const RuntimeError&) {
        AbandonFile(number);
        try {
            folder.DeleteFile(temporary);
        } catch (const RuntimeError&) {
            // The first error says more.
        }
        throw;
    }
}

void RefuseTarget(const FolderEntry& entry) {
    if (entry.Kind == EntryKind::kNothing) return;
    // A refused image is closed, but it is still the one that the window names.
    const std::string& image = Drives[1].ImagePath;
    if ((FileIsOpen(kImageFile) && IdentityOf(kImageFile) == entry.Target) ||
        (!image.empty() && IdentityAt(image) == entry.Target)) {
        Raise(kFileAlreadyOpen, "This is the image itself, which is never written.");
    }
    if (IsOpenFile(entry.Target)) Raise(kFileAlreadyOpen, "This file is in use by Tessel.");
    switch (entry.Kind) {
        case EntryKind::kHiddenFile:
            Raise(kFileAlreadyExists, "A hidden file has this name.");
        case EntryKind::kLink:
            Raise(kFileAlreadyExists, "A symbolic link that leads to no file has this name.");
        case EntryKind::kFolder:
            Raise(kPathFileAccessError, "A folder has this name.");
        case EntryKind::kOther:
            Raise(kFileAlreadyExists, "A pipe, a socket or a device has this name.");
        case EntryKind::kNothing:
        case EntryKind::kFile:
            break;
    }
}

bool MayReplace(const FolderEntry& entry) {
    try {
        RefuseTarget(entry);
        return entry.Kind == EntryKind::kFile;
    } catch (const RuntimeError&) {
        return false;
    }
}

std::string TargetRefusal(const std::string& path) {
    try {
        RefuseTarget(FolderHandle(FolderOf(path)).Look(FileTitleOf(path)));
        return "";
    } catch (const RuntimeError& error) {
        return error.Cause;
    }
}

}  // namespace tessel
