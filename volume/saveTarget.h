#pragma once

#include <string>

#include "platform/heldFolder.h"

/// The host file that a save writes to.
namespace tessel {

/// Creates the file `name` in `folder` and opens it for writing under `number`. A visible file of
/// that name is replaced, which the old one only notices once the new one is created. Raises what
/// RefuseTarget raises, and what creating, renaming and deleting files raise; nothing has changed
/// then.
void CreateTarget(int number, const HeldFolder& folder, const std::string& name);
/// As above, for a name that is known to be taken by what `entry` says.
void ReplaceTarget(int number, const HeldFolder& folder, const std::string& name,
                   const FolderEntry& entry);

/// Raises the error for which a save does not replace `entry`: 55 for the image of the window and
/// for a file that is being written, under whatever name or link; 58 for a hidden file, a link to
/// no file, a pipe or a device; 75 for a folder.
void RefuseTarget(const FolderEntry& entry);
/// Whether RefuseTarget raises nothing and something is there to replace.
bool MayReplace(const FolderEntry& entry);
/// Why a save would refuse `path` for what is there; "" when it would not.
std::string TargetRefusal(const std::string& path);

}  // namespace tessel
