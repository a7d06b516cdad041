#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/runtimeError.h"

/// The host's file system: paths are UTF-8 text with the host's own separator.
namespace tessel {

/// The character between a folder and a name.
char FolderSeparator();
/// Everything of `path` up to and including its last separator; "" when it holds none.
std::string FolderOf(const std::string& path);
/// What follows the last separator of `path`.
std::string FileTitleOf(const std::string& path);
/// `folder`, a separator where it does not end in one, and `name`.
std::string JoinPath(const std::string& folder, const std::string& name);

/// `name` as the host can and should take it as the name of one file or folder: a separator, a
/// control character, and whatever else the host refuses or reads as something else (".", "..", on
/// Windows also a device name and a trailing blank or point) becomes "_"; never empty; cut to 255
/// bytes, at a whole character and keeping a short extension.
std::string SafeName(const std::string& name);
/// A safe name with " (NUMBER)" before its extension, cut so that it stays within 255 bytes.
std::string NumberedName(const std::string& safeName, std::int64_t number);

/// The process's current folder, without a trailing separator except at a root.
std::string CurrentFolder();
/// Whether a folder stands at `path`, links followed.
bool FolderExists(const std::string& path);
/// Whether a folder stands at `path` whose content the host shows.
bool FolderCanBeListed(const std::string& path);
/// The drives (where there are no drive letters: the folders of the mounted file systems), in the
/// order in which a list shows them; never empty.
std::vector<std::string> HostDrives();
/// The drive of HostDrives that `path` lies on; "" when there is none.
std::string DriveOf(const std::string& path);
/// The topmost folder of a drive.
std::string DriveRoot(const std::string& drive);

}  // namespace tessel
