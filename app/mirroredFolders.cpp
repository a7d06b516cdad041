#include "app/mirroredFolders.h"

#include <algorithm>
#include <utility>

#include "platform/host.h"
#include "platform/hostFiles.h"
#include "volume/errorReports.h"
#include "volume/extraction.h"

namespace tessel {

MirroredFolders::MirroredFolders(std::string chosen, const std::string& base)
    : Chosen(std::move(chosen)) {
    Folders.push_back(JoinPath(Chosen, SafeName(base)));
}

void MirroredFolders::Add(const std::string& folderName) {
    Folders.push_back(JoinPath(Folders.back(), SafeName(folderName)));
}

bool MirroredFolders::ChosenFolderIsThere() {
    // Nothing to do for the next file when all folders still stand.
    Entered = Entered && std::all_of(Folders.begin(), Folders.end(), IsRealFolder);
    if (Entered) return true;
    try {
        ChangeFolder(Chosen);
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

std::string MirroredFolders::PathOf(const std::string& fileName) const {
    return JoinPath(Folders.back(), SafeName(fileName));
}

bool MirroredFolders::Enter() const {
    bool all = true;
    for (const std::string& folder : Folders) {
        try {
            ChangeFolder(folder);
        } catch (const RuntimeError& error) {
            // Any other failure than a missing folder passes the level over: the copy will tell.
            if (error.Number != kPathNotFound) {
                all = false;
                continue;
            }
            CreateFolder(folder);
            ChangeFolder(folder);
        }
    }
    return all;
}

bool MirroredFolders::HoldsLink() const {
    return std::any_of(Folders.begin(), Folders.end(), IsLink);
}

bool MirroredFolders::Save(Long row, const std::string& path) {
    if (!Entered && HoldsLink()) {
        // The link stands in the way of every file: telling of it once is enough.
        if (!std::exchange(LinkReported, true)) {
            const RuntimeError refused(kFileAlreadyExists, kProjectName,
                                       ErrorText(kFileAlreadyExists));
            TheHost.MessageBox(OpenErrorReport(refused, path), "Error");
        }
        return false;
    }
    try {
        if (!Entered) Entered = Enter();
    } catch (const RuntimeError&) {
        // Where a folder could not be created the copy fails, and tells of it.
    }
    try {
        return SaveEntryToFile(row, path);
    } catch (const RuntimeError&) {
        return false;
    }
}

}  // namespace tessel
