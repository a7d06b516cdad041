#pragma once

#include <string>

#include "platform/folderHandle.h"

/// The host file that a save writes to.
namespace tessel {

/// Creates the file `name` in `folder` and opens it for writing under `number`. A visible file with
/// that name is replaced, but only after the new one could be created. Raises the errors of
/// RefuseTarget, and those of creating and renaming a file; the old file is then unchanged.
void CreateTarget(int number, const FolderHandle& folder, const std::string& name);
/// As CreateTarget, for a name that is known to exist as `entry`.
void ReplaceTarget(int number, const FolderHandle& folder, const std::string& name,
                   const FolderEntry& entry);

/// Raises an error if a save must not replace `entry`: 55 for the window's image and for a file
/// that is being written, under any name or link; 58 for a hidden file, a link that leads to no
/// file, a pipe or a device; 75 for a folder.
void RefuseTarget(const FolderEntry& entry);
/// Whether `entry` is a file that a save may replace.
bool MayReplace(const FolderEntry& entry);
/// Returns the cause for which a save would refuse to replace the entry at `path`, "" for none.
std::string TargetRefusal(const std::string& path);

}  // namespace tessel
