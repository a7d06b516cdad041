#pragma once

#include <array>
#include <string>

#include "dialogs/fileKinds.h"  // IWYU pragma: export
#include "platform/host.h"

namespace tessel {

/// The remembered folders, each with its trailing separator; "" when none is known.
struct RecentPathsRecord {
    /// The folder of the last file chosen in this run; before the first choice the process's
    /// current folder, without a trailing separator. Never stored.
    std::string LastFolder;
    std::array<std::string, 30> KindFolders;   ///< in the order of kKindKeys
    std::array<std::string, 17> DriveFolders;  ///< by drive slot
};

/// The settings keys of KindFolders.
inline constexpr std::array<const char*, 30> kKindKeys = {
    "BIN", "COM", "DEF", "DAS", "CLR",  "RWE",   "Save", "Load", "ULoad", "DLoad",
    "IMG", "IMD", "FMT", "PRN", "IOM",  "IOP",   "PIO",  "CAS",  "DAD",   "TAB",
    "FKY", "KBD", "IRS", "IDA", "VTXT", "VDUMP", "VREC", "TXT",  "RTF",   "ELSE"};

extern RecentPathsRecord RecentPaths;

/// Shows `dialog`, starting in the folder remembered for the kind of file, and remembers the folder
/// of the chosen file. `openSave` is "OPEN", "SAVE" or "SAVEAS" in any case; for any other text no
/// dialog is shown and the suggested name counts as chosen. `fileType` is the keyword of a kind;
/// the keyword of a drive slot is replaced by "DRV" in the caller's variable. `dialogTitle`
/// replaces the kind's description in the title, unless it is "Default". Returns the chosen path,
/// or "" after Cancel and after an error of the dialog, which is shown in a message box. Raises the
/// errors of the settings.
std::string GetFileName(CommonDialog& dialog, const std::string& suggestedFileName,
                        const std::string& openSave, std::string& fileType, Long extraFlags,
                        const std::string& dialogTitle);

}  // namespace tessel
