#include "volume/extraction.h"

#include <optional>

#include "platform/host.h"
#include "platform/hostFiles.h"
#include "platform/numberedFiles.h"
#include "volume/clusterChain.h"
#include "volume/directory.h"
#include "volume/errorReports.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

void Report(const std::string& text) { TheHost.MessageBox(text, "Error"); }

/// Closes the target when the copy ends, however it ends.
struct TargetCloser {
    ~TargetCloser() {
        try {
            CloseFile(kTargetFile);
        } catch (const RuntimeError&) {
            return;  // on the way out of another failure; the normal end closes by itself
        }
    }
};

/// The entry's modification date and time, when every field of it is in range.
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

/// Copies the chain into the open target. Raises what a failing write raises.
WalkEnd CopyChain(Long row, const ClusterChain& chain, std::int64_t& written) {
    return WalkChain(chain, ContentLength(row, chain), [&](std::span<const Byte> bytes) {
        WriteFile(kTargetFile, bytes);
        written += static_cast<std::int64_t>(bytes.size());
    });
}

std::string ReadErrorReport(const ClusterChain& chain, std::int64_t offset,
                            const std::string& path) {
    try {
        RaiseReadError(chain, offset);
    } catch (const RuntimeError& error) {
        return ErrorReport(error) + "\r\nError reading Disk Image " + path + "\r\n";
    }
}

/// Creates the target where nothing stands; false when that fails.
bool CreateTarget(const std::string& path) {
    try {
        OpenForWriting(kTargetFile, path);
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

void RefuseFilesInUse(const std::string& path) {
    // A refused image is closed, but it is still the one that the window tells about.
    const std::string& image = Drives[1].ImagePath;
    if (IsOpenFile(path) || (!image.empty() && IsSameFile(image, path))) Raise(kFileAlreadyOpen);
}

}  // namespace

void DeleteExistingFile(const std::string& path) {
    RefuseFilesInUse(path);
    if (VisibleFileExists(path)) DeleteFile(path);
}

bool SaveEntryToFile(Long row, const std::string& path) {
    if (!Drives[1].IsOpen) return false;
    if (!CreateTarget(path)) {
        // Something stands there.
        try {
            RefuseFilesInUse(path);
        } catch (const RuntimeError& error) {
            Report(OpenErrorReport(error, path));
            return false;
        }
        if (VisibleFileExists(path)) DeleteFile(path);
        try {
            OpenForWriting(kTargetFile, path);
        } catch (const RuntimeError& error) {
            Report(OpenErrorReport(error, path));
            return false;
        }
    }

    const TargetCloser closer;
    const DirEntry& e = DirEntries(row);
    const std::optional<LocalTime> modified = ModificationTime(e);
    std::optional<ClusterChain> chain;
    if (!IsFile(row) || e.FileSize != 0) chain.emplace(e.StartCluster);
    std::int64_t written = 0;
    try {
        if (chain) {
            const WalkEnd end = CopyChain(row, *chain, written);
            if (end == WalkEnd::kReadFailed) Report(ReadErrorReport(*chain, written, path));
            if (end != WalkEnd::kDone) return false;
        }
        CloseFile(kTargetFile);
    } catch (const RuntimeError& error) {
        Report(ErrorReport(error) + "\r\nError Writting File " + path + "\r\n");
        return false;
    }
    if (modified) SetModificationTime(path, *modified);
    return true;
}

}  // namespace tessel
