#pragma once

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

/// The process's current folder, without a trailing separator except at a root.
std::string CurrentFolder();
/// Raises 76 when there is no such folder, 75 when it may not be entered.
void ChangeFolder(const std::string& path);
/// Raises 58 when something stands there, 76, 75 or 61 as the host says.
void CreateFolder(const std::string& path);
/// Whether a folder stands at `path`, links followed.
bool FolderExists(const std::string& path);
/// Whether a folder itself, and no link to one, stands at `path`.
bool IsRealFolder(const std::string& path);
/// Whether a folder stands at `path` whose content the host shows.
bool FolderCanBeListed(const std::string& path);
/// Whether the last name of `path` is itself a symbolic link.
bool IsLink(const std::string& path);

/// Whether a directory lookup with default attributes finds a file at `path`: a plain file (no
/// folder, device or pipe) that is neither hidden nor a system file (where there are no attributes,
/// a leading point hides). Links are followed.
bool VisibleFileExists(const std::string& path);
/// Deletes a file, or a link itself. Raises 53 when it is not there, 75 when the host refuses, 70
/// while somebody else holds it.
void DeleteFile(const std::string& path);

/// A calendar moment of local time.
struct LocalTime {
    int Year, Month, Day, Hour, Minute, Second;
};
/// Gives the file at `path` a modification time. False when the host refuses.
bool SetModificationTime(const std::string& path, const LocalTime& time);

/// The drives (where there are no drive letters: the folders of the mounted file systems), in the
/// order in which a list shows them; never empty.
std::vector<std::string> HostDrives();
/// The drive of HostDrives that `path` lies on; "" when there is none.
std::string DriveOf(const std::string& path);
/// The topmost folder of a drive.
std::string DriveRoot(const std::string& drive);

}  // namespace tessel
