#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/runtimeError.h"

/// The host's file system: paths are UTF-8 text with the host's separator.
namespace tessel {

/// The character between a folder and a name.
char FolderSeparator();
/// The part of `path` up to and including its last separator; "" when it has none.
std::string FolderOf(const std::string& path);
/// The part of `path` after its last separator.
std::string FileTitleOf(const std::string& path);
/// `folder` and `name`, with a separator between them unless `folder` ends in one or is "".
std::string JoinPath(const std::string& folder, const std::string& name);

/// `name` made safe as the name of one file or folder on this host. Separators, control characters
/// and everything else that the host rejects or interprets (".", "..", on Windows also device names
/// and trailing blanks or dots) become "_". Never empty; at most 255 bytes, cut at the boundary of
/// a character and keeping a short extension.
std::string SafeName(const std::string& name);
/// `safeName` with " (NUMBER)" before its extension, cut to at most 255 bytes.
std::string NumberedName(const std::string& safeName, std::int64_t number);

/// The process's current folder, without a trailing separator except at a root.
std::string CurrentFolder();
/// Whether `path` is a folder, following links.
bool FolderExists(const std::string& path);
/// Whether `path` is a folder whose entries the user may list.
bool FolderCanBeListed(const std::string& path);
/// The host's drives (on hosts without drive letters, the mount points of its file systems), in
/// display order; never empty.
std::vector<std::string> HostDrives();
/// The drive that holds `path`; "" when there is none.
std::string DriveOf(const std::string& path);
/// The root folder of a drive.
std::string DriveRoot(const std::string& drive);

}  // namespace tessel
