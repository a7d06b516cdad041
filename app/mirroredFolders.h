#pragma once

#include <string>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// The host folders that mirror a directory's place in its volume: one for the image, and one for
/// every level, below the folder that a person chose. Names come from the image, so each is made
/// safe, and a symbolic link among the folders is never entered: nothing is created outside.
class MirroredFolders {
  public:
    MirroredFolders(std::string chosen, const std::string& base);
    /// Adds a level below those so far.
    void Add(const std::string& folderName);

    /// Makes the chosen folder, or the innermost one once it was entered, the process's current
    /// one; false when the chosen folder is gone.
    bool ChosenFolderIsThere();
    /// The path of a file of this name in the innermost folder.
    std::string PathOf(const std::string& fileName) const;
    /// Creates the folders that are missing, enters them, and copies a row to `path`. False when
    /// that failed or was stopped.
    bool Save(Long row, const std::string& path);

  private:
    /// Whether every folder was entered; the process's current one is the innermost.
    bool Enter() const;
    bool HoldsLink() const;

    std::string Chosen;
    std::vector<std::string> Folders;  // full paths, outermost first
    bool LinkReported = false;
    bool Entered = false;
};

}  // namespace tessel
