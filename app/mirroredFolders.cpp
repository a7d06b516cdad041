#include "app/mirroredFolders.h"

#include <algorithm>
#include <utility>

#include "platform/hostFiles.h"
#include "platform/numberedFiles.h"
#include "volume/extraction.h"
#include "volume/saveTarget.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// Opens the folder `name` in `parent`, and creates it first if nothing has its name.
FolderHandle OpenOrCreate(const FolderHandle& parent, const std::string& name) {
    try {
        return {parent, name};
    } catch (const RuntimeError& error) {
        if (error.Number != kPathNotFound) throw;
    }
    try {
        parent.CreateFolder(name);
    } catch (const RuntimeError& error) {
        // Another program has just created it.
        if (error.Number != kFileAlreadyExists) throw;
    }
    return {parent, name};
}

}  // namespace

MirroredFolders::MirroredFolders(std::string chosen, const std::string& base)
    : Paths{std::move(chosen)} {
    Add(base);
}

void MirroredFolders::Add(const std::string& folderName) {
    Names.push_back(SafeName(folderName));
    Paths.push_back(JoinPath(Paths.back(), Names.back()));
}

bool MirroredFolders::EnterChosen() {
    const std::string& chosen = Paths.front();
    try {
        if (Open.empty()) {
            Open.emplace_back(FolderHandle(chosen));
            Open.back().Folder.MakeCurrent();
        }
        const auto there = IdentityAt(chosen);
        if (!there) Raise(kPathNotFound, "The folder no longer exists.");
        if (*there != Open.front().Own) Raise(kPathNotFound, "Another folder has replaced it.");
        return true;
    } catch (const RuntimeError& error) {
        Errors.Show(SaveStep::kEnterFolder, error, chosen);
        return false;
    }
}

bool MirroredFolders::Save(Long row, const std::string& fileName) {
    const std::string name = SafeName(fileName);
    SetName(name);
    try {
        Enter();
        CreateFile(name);
    } catch (const RuntimeError& error) {
        Errors.Show(SaveStep::kCreate, error, FilePath);
        return false;
    }
    return CopyEntry(row, FilePath, Errors);
}

void MirroredFolders::Enter() {
    // Reopens the levels from the first whose name now leads to something else.
    std::size_t valid = 1;
    while (valid < Open.size()) {
        const FolderEntry entry = Open[valid - 1].Folder.Look(Names[valid - 1]);
        if (entry.Kind != EntryKind::kFolder || entry.Identity != Open[valid].Own) break;
        ++valid;
    }
    if (valid == Paths.size()) return;
    Open.erase(Open.begin() + static_cast<std::ptrdiff_t>(valid), Open.end());
    while (Open.size() < Paths.size()) {
        FolderHandle folder = OpenOrCreate(Open.back().Folder, Names[Open.size() - 1]);
        folder.MakeCurrent();
        Open.emplace_back(std::move(folder));
    }
}

void MirroredFolders::CreateFile(const std::string& safeName) {
    if (TryCreate(safeName)) return;
    const FolderEntry first = Open.back().Folder.Look(safeName);
    if (!IsOfThisRun(safeName, first)) return Replace(safeName, first);

    // An image can contain thousands of files with the same name, or with names that become the
    // same host name: each starts at the number after the last one used, and the steps soon grow.
    constexpr int kSteadySteps = 8;
    constexpr int kMaxSteps = 40;
    std::int64_t& number = NextNumber.try_emplace(first.Identity, 2).first->second;
    for (int step = 0; step < kMaxSteps; ++step) {
        const std::string name = NumberedName(safeName, number);
        number += std::int64_t{1} << std::max(step - kSteadySteps, 0);
        SetName(name);
        if (TryCreate(name)) return;
        const FolderEntry entry = Open.back().Folder.Look(name);
        if (!IsOfThisRun(name, entry) && MayReplace(entry)) return Replace(name, entry);
    }
    Raise(kFileAlreadyExists, "All alternative names for this file are taken.");
}

bool MirroredFolders::TryCreate(const std::string& name) {
    try {
        Open.back().Folder.CreateFile(kTargetFile, name);
    } catch (const RuntimeError& error) {
        if (error.Number == kFileAlreadyExists) return false;
        throw;
    }
    Record(name);
    return true;
}

void MirroredFolders::Replace(const std::string& name, const FolderEntry& entry) {
    ReplaceTarget(kTargetFile, Open.back().Folder, name, entry);
    Record(name);
}

void MirroredFolders::Record(const std::string& name) {
    // On some file systems, FAT among them, an identity changes when the kernel drops the file from
    // its cache; names are compared too.
    CreatedNames.insert(name);
    try {
        Created.insert(IdentityOf(kTargetFile));
    } catch (const RuntimeError&) {
        AbandonFile(kTargetFile);
        throw;
    }
}

bool MirroredFolders::IsOfThisRun(const std::string& name, const FolderEntry& entry) const {
    return Created.contains(entry.Identity) || CreatedNames.contains(name);
}

void MirroredFolders::SetName(const std::string& name) { FilePath = JoinPath(Paths.back(), name); }

}  // namespace tessel
