#include "volume/extraction.h"

#include <new>
#include <optional>

#include "platform/hostFiles.h"
#include "platform/numberedFiles.h"
#include "volume/clusterChain.h"
#include "volume/directory.h"
#include "volume/saveTarget.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// Scope guard that closes the target.
struct TargetCloser {
    ~TargetCloser() { AbandonFile(kTargetFile); }
};

/// The entry's modification date and time, nullopt when a field is out of range.
std::optional<LocalTime> ModificationTime(const DirEntry& e) {
    const LocalTime t = {.Year = (e.ModifyDate >> 9) + 1980,
                         .Month = e.ModifyDate >> 5 & 15,
                         .Day = e.ModifyDate & 31,
                         .Hour = e.ModifyTime >> 11,
                         .Minute = e.ModifyTime >> 5 & 63,
                         .Second = (e.ModifyTime & 31) * 2};
    const bool leap = t.Year % 4 == 0 && (t.Year % 100 != 0 || t.Year % 400 == 0);
    const bool shortMonth = t.Month == 4 || t.Month == 6 || t.Month == 9 || t.Month == 11;
    const int days = t.Month == 2 ? (leap ? 29 : 28) : shortMonth ? 30 : 31;
    const bool valid = t.Month >= 1 && t.Month <= 12 && t.Day >= 1 && t.Day <= days &&
                       t.Hour < 24 && t.Minute < 60 && t.Second < 60;
    return valid ? std::optional(t) : std::nullopt;
}

RuntimeError ReadErrorOf(const ClusterChain& chain, std::int64_t offset) {
    try {
        RaiseReadError(chain, offset);
    } catch (const RuntimeError& error) {
        return error;
    }
}

}  // namespace

bool SaveEntryToFile(Long row, const std::string& path) {
    if (!Drives[1].IsOpen) return false;
    SaveErrors errors;
    try {
        CreateTarget(kTargetFile, FolderHandle(FolderOf(path)), FileTitleOf(path));
    } catch (const RuntimeError& error) {
        errors.Show(SaveStep::kCreate, error, path);
        return false;
    }
    return CopyEntry(row, path, errors);
}

bool CopyEntry(Long row, const std::string& path, SaveErrors& errors) {
    const TargetCloser closer;
    const DirEntry& e = DirEntries(row);
    std::int64_t written = 0;
    try {
        if (!IsFile(row) || e.FileSize != 0) {
            const ClusterChain chain(e.StartCluster);
            const WalkEnd end = CopyChain(chain, ContentLength(row, chain), kTargetFile, written);
            if (end == WalkEnd::kReadFailed) {
                errors.Show(SaveStep::kReadImage, ReadErrorOf(chain, written), path);
            }
            if (end != WalkEnd::kDone) return false;
        }
        const std::optional<LocalTime> modified = ModificationTime(e);
        if (modified) SetModificationTime(kTargetFile, *modified);
        CloseFile(kTargetFile);
        return true;
    } catch (const RuntimeError& error) {
        errors.Show(SaveStep::kWrite, error, path);
    } catch (const std::bad_alloc&) {
        errors.Show(SaveStep::kWrite, {kOutOfMemory, kProjectName, ErrorText(kOutOfMemory)}, path);
    }
    return false;
}

}  // namespace tessel
