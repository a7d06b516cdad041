#pragma once

#include <string>

/// The keys of the stored settings, and functions to read and write them.
namespace tessel {

inline constexpr const char* kPathsSection = "Paths";      // remembered folders
inline constexpr const char* kSaveAllSection = "SaveALL";  // the folder chooser's position
inline constexpr const char* kSaveAllFolderKey =
    "SAVEALL";  // in Paths: the folder of Save Directory
inline constexpr const char* kTopKey = "Top";
inline constexpr const char* kLeftKey = "Left";

/// Reads the host's store again. Call it when a dialog is about to be shown.
void RefreshSettings();

/// Returns the folder stored in the section Paths, "" when none is stored.
std::string ReadPath(const std::string& key);
void WritePath(const std::string& key, const std::string& folder);

/// Returns a stored window position in twips, `fallback` when it is missing or not a number. The
/// text has a decimal point in every locale.
float ReadPosition(const char* key, float fallback);
void WritePosition(const char* key, float value);

}  // namespace tessel
