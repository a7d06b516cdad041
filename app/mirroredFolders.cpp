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
    // Nothing to do for the next file while all folders still exist.
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
            // Any error except a missing folder skips the level: the copy will report it.
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

bool MirroredFolders::ContainsLink() const {
    return std::any_of(Folders.begin(), Folders.end(), IsLink);
}

bool MirroredFolders::Save(Long row, const std::string& path) {
    if (!Entered && ContainsLink()) {
        // The link is in the way of every file: one report is enough.
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
        // Without its folder the copy fails and reports the error.
    }
    try {
        return SaveEntryToFile(row, path);
    } catch (const RuntimeError&) {
        return false;
    }
}

}  // namespace tessel
