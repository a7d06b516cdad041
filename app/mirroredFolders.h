#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/heldFolder.h"
#include "volume/errorReports.h"

namespace tessel {

/// The host folders that mirror a directory's place in its volume: one for the image, and one for
/// each level, below the folder that the user chose; and the files that one run saves in the
/// innermost. Names come from the image, so each is made safe. The folders stay open, and what is
/// created in them is created relative to them: nothing is created outside, whatever takes their
/// names meanwhile. Errors go to message boxes, one for each cause.
class MirroredFolders {
  public:
    MirroredFolders(std::string chosen, const std::string& base);
    /// Adds a level below the innermost one.
    void Add(const std::string& folderName);

    /// Opens the chosen folder and makes it the process's current one; once it is open, checks that
    /// its path still leads to it. False when not, after a box.
    bool EnterChosen();
    /// Creates the folders that are missing, makes the innermost the process's current one, and
    /// copies a row to a file of this name there. A file that was there before the run is replaced;
    /// one that the run created itself is not: the new one gets " (2)", " (3)", ... before its
    /// extension. False after an error and after STOP.
    bool Save(Long row, const std::string& fileName);
    /// The path of the file that Save last wrote, or tried to.
    const std::string& Path() const { return FilePath; }

  private:
    struct Level {
        explicit Level(HeldFolder folder) : Folder(std::move(folder)), Own(Folder.Identity()) {}
        HeldFolder Folder;
        FileIdentity Own;
    };

    void Enter();
    void CreateFile(const std::string& safeName);
    bool TryCreate(const std::string& name);
    void Replace(const std::string& name, const FolderEntry& entry);
    void Remember(const std::string& name);
    bool IsOfThisRun(const std::string& name, const FolderEntry& entry) const;
    void SetName(const std::string& name);

    std::vector<std::string> Names;  // of the levels below the chosen folder, outermost first
    std::vector<std::string> Paths;  // of the chosen folder and of the levels
    std::vector<Level> Open;         // as many of those as are open
    std::string FilePath;
    SaveErrors Errors{true};

    // What this run created, and by file the number that the next one of its name gets.
    std::set<FileIdentity> Created;
    std::set<std::string> CreatedNames;
    std::map<FileIdentity, std::int64_t> NextNumber;
};

}  // namespace tessel
