#pragma once

#include <string>

/// The names of the remembered values, and how they are read and written through the host's store.
namespace tessel {

inline constexpr const char* kPathsSection = "Paths";      // remembered folders
inline constexpr const char* kSaveAllSection = "SaveALL";  // the folder chooser's position
inline constexpr const char* kSaveAllFolderKey =
    "SAVEALL";  // in Paths: the folder of Save Directory
inline constexpr const char* kTopKey = "Top";
inline constexpr const char* kLeftKey = "Left";

/// The stored text, "" when nothing is stored.
std::string ReadPath(const std::string& key);
void WritePath(const std::string& key, const std::string& folder);

/// A stored position in twips, `fallback` when it is absent or no number. The text has a point
/// whatever the locale.
float ReadPosition(const char* key, float fallback);
void WritePosition(const char* key, float value);

}  // namespace tessel
