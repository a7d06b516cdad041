#pragma once

#include <string>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// The host folders that mirror a directory's path in its volume: below the folder that the user
/// chose, one for the image and one for each level. Names come from the image, so each is made
/// safe, and a symbolic link among the folders is never entered: nothing is created outside.
class MirroredFolders {
  public:
    MirroredFolders(std::string chosen, const std::string& base);
    /// Adds a level below the innermost one.
    void Add(const std::string& folderName);

    /// Makes the chosen folder the process's current one, unless all mirrored folders are already
    /// entered and exist. Returns false when the chosen folder no longer exists.
    bool ChosenFolderIsThere();
    /// The path in the innermost folder of a file of this name, made safe.
    std::string PathOf(const std::string& fileName) const;
    /// Creates the missing folders, enters them, and copies the file of directory row `row` to
    /// `path`. Returns false, and raises nothing, when that fails or is stopped.
    bool Save(Long row, const std::string& path);

  private:
    /// Creates the missing folders and makes the innermost the process's current one. Returns
    /// whether every folder was entered; raises what creating a folder raises.
    bool Enter() const;
    bool ContainsLink() const;

    std::string Chosen;
    std::vector<std::string> Folders;  // full paths, outermost first
    bool LinkReported = false;
    bool Entered = false;
};

}  // namespace tessel
