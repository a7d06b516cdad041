#pragma once

#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// A kind of file that the file dialog can ask for.
struct FileKind {
    std::string Keyword{};  ///< upper case
    std::string Filter{};   ///< pairs of description and pattern, every item separated by "|"
    std::string DefaultExtension{};  ///< "" for none
    Long FilterIndex = 1;            ///< the preselected pair, from 1
    std::string KindDescription{};   ///< for the dialog's title
    std::string SettingsKey{};       ///< of the remembered folder
};

/// The keyword that every drive slot shares.
inline constexpr const char* kDriveSlotKeyword = "DRV";
/// The settings key of kinds that have none of their own.
inline constexpr const char* kElseKey = "ELSE";

/// The kind of a keyword, compared without case. A keyword that is not in the table gives a kind of
/// its own, with the keyword as the extension in the case in which it was written.
FileKind FileKindOf(const std::string& keyword);

/// The slot of a drive-slot keyword in upper case: "DRV01" to "DRV12", "DRV013" to "DRV016"; 0 for
/// any other.
int DriveSlotOf(const std::string& keyword);

/// The settings key of a drive slot: "DRIVE" and two digits.
std::string DriveKey(int slot);

}  // namespace tessel
