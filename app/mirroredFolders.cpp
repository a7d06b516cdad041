#include "app/mirroredFolders.h"

#include "platform/host.h"
#include "platform/hostFiles.h"
#include "volume/extraction.h"
#include "volume/failureReports.h"

namespace tessel {

MirroredFolders::MirroredFolders(std::string chosen, const std::string& base)
    : Chosen(std::move(chosen)) {
    Folders.push_back(JoinPath(Chosen, SafeName(base)));
}

void MirroredFolders::Add(const std::string& folderName) {
    Folders.push_back(JoinPath(Folders.back(), SafeName(folderName)));
}

bool MirroredFolders::ChosenFolderIsThere() const {
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

void MirroredFolders::Enter() const {
    for (const std::string& folder : Folders) {
        if (IsLink(folder)) Raise(kPathFileAccessError);
        try {
            ChangeFolder(folder);
        } catch (const RuntimeError& error) {
            // Any other failure than a missing folder passes the level over: the copy will tell.
            if (error.Number != kPathNotFound) continue;
            CreateFolder(folder);
            ChangeFolder(folder);
        }
    }
}

bool MirroredFolders::Save(Long row, const std::string& path) const {
    try {
        Enter();
        return SaveEntryToFile(row, path);
    } catch (const RuntimeError& error) {
        TheHost.MessageBox(OpenFailureReport(error, path), "Error");
        return false;
    }
}

}  // namespace tessel
