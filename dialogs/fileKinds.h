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

/// The keyword of the kind that all drive slots share.
inline constexpr const char* kDriveSlotKeyword = "DRV";
/// The settings key of kinds without their own key.
inline constexpr const char* kElseKey = "ELSE";

/// Returns the kind of `keyword`, in any case. A keyword that is not in the table gives a new kind
/// whose extension is the keyword as written.
FileKind FileKindOf(const std::string& keyword);

/// Returns the slot, 1 to 16, of a drive-slot keyword in upper case ("DRV01" to "DRV12", "DRV013"
/// to "DRV016"), 0 for any other keyword.
int DriveSlotOf(const std::string& keyword);

/// Returns the settings key of a drive slot: "DRIVE" and two digits.
std::string DriveKey(int slot);

}  // namespace tessel
