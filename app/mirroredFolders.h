#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/folderHandle.h"
#include "volume/errorReports.h"

namespace tessel {

/// The host folders that mirror a directory's path in its volume (below the folder that the user
/// chose, one for the image and one for each level), and the files that one run saves in the
/// innermost one. Names come from the image, so each is made safe. The folders stay open and
/// entries are created relative to them: nothing is created outside, even if their names change
/// meanwhile. Errors are shown in message boxes, one per cause.
class MirroredFolders {
  public:
    MirroredFolders(std::string chosen, const std::string& base);
    /// Adds a level below the innermost one.
    void Add(const std::string& folderName);

    /// On the first call, opens the chosen folder and makes it the process's current one. Then
    /// checks that its path still leads to it. Returns false, after a message box, on an error.
    bool EnterChosen();
    /// Creates the missing folders, makes the innermost the process's current one, and copies the
    /// file of directory row `row` to a file named `fileName` there. Replaces a file that existed
    /// before the run, but not one that the run created: the new file then gets " (2)", " (3)", ...
    /// before its extension. Returns false after an error and after STOP.
    bool Save(Long row, const std::string& fileName);
    /// The path of the file that Save last wrote, or tried to.
    const std::string& Path() const { return FilePath; }

  private:
    struct Level {
        explicit Level(FolderHandle folder) : Folder(std::move(folder)), Own(Folder.Identity()) {}
        FolderHandle Folder;
        FileIdentity Own;
    };

    void Enter();
    void CreateFile(const std::string& safeName);
    bool TryCreate(const std::string& name);
    void Replace(const std::string& name, const FolderEntry& entry);
    void Record(const std::string& name);
    bool IsOfThisRun(const std::string& name, const FolderEntry& entry) const;
    void SetName(const std::string& name);

    std::vector<std::string> Names;  // of the levels below the chosen folder, outermost first
    std::vector<std::string> Paths;  // of the chosen folder and of the levels
    std::vector<Level> Open;         // those that are open, outermost first
    std::string FilePath;
    SaveErrors Errors{true};

    // The files that this run created, and by file the number for the next one with its name.
    std::set<FileIdentity> Created;
    std::set<std::string> CreatedNames;
    std::map<FileIdentity, std::int64_t> NextNumber;
};

}  // namespace tessel
