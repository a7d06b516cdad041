#include "volume/clusterChain.h"

#include <algorithm>
#include <chrono>

#include "platform/host.h"
#include "platform/numberedFiles.h"
#include "platform/pageBytes.h"
#include "volume/directory.h"
#include "volume/fatEntries.h"
#include "volume/imageReads.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

constexpr std::int64_t kLargestPiece = std::int64_t{1024} * 1024;
/// A larger buffer does not fit the inner caches of a processor.
constexpr std::int64_t kLargestBuffer = std::int64_t{128} * 1024;
/// The smallest piece for which a check is faster than a read.
constexpr std::int64_t kMinChecked = std::int64_t{8} * 1024;
constexpr std::chrono::milliseconds kShortPiece{4};
constexpr std::chrono::milliseconds kLongPiece{16};
constexpr Long kFirstFiveDigitCluster = 10000;
/// Cluster numbers come from 16-bit fields.
constexpr Long kClusterNumbers = 65536;

/// Calls `part` for each extent of the `count` bytes of a chain from `offset` on, with the extent's
/// offset in the image file, its offset from `offset` and its length. `part` returns how many of
/// its bytes it could process. Stops at the first incomplete extent, and returns the sum.
template <class Part>
std::int64_t ForExtents(const ClusterChain& chain, std::int64_t offset, std::int64_t count,
                        const Part& part) {
    std::int64_t good = 0;
    while (good < count) {
        const ClusterChain::Extent at = chain.ExtentAt(offset + good);
        const std::int64_t wanted = std::min(count - good, at.Length);
        std::int64_t inImage = 0;
        try {
            inImage = ClusterOffset(at.Cluster, at.InCluster);
        } catch (const RuntimeError&) {
            break;  // the cluster's address overflows
        }
        const std::int64_t got = part(inImage, good, wanted);
        good += got;
        if (got < wanted) break;
    }
    return good;
}

/// Calls `piece` with the offset and the length of each piece; it returns how many of the bytes it
/// could process.
template <class Piece>
WalkEnd Walk(const ClusterChain& chain, std::int64_t length, const Piece& piece) {
    using std::chrono::steady_clock;
    EventPump events;
    Progress progress(length);
    std::int64_t size = chain.BytesPerCluster();
    for (std::int64_t at = 0; at < length;) {
        if (StopRequested) return WalkEnd::kStopped;
        const auto start = steady_clock::now();
        const std::int64_t wanted = std::min(size, length - at);
        if (piece(at, wanted) < wanted) return WalkEnd::kReadFailed;
        at += wanted;
        // Large pieces are fast, but on a slow medium STOP has to wait for the end of one.
        const auto taken = steady_clock::now() - start;
        if (taken < kShortPiece && size < kLargestPiece) size *= 2;
        if (taken > kLongPiece && size > chain.BytesPerCluster()) size /= 2;
        if (at == length) break;
        progress.Show(at);
        events.Process();
    }
    return WalkEnd::kDone;
}

/// Calls `take` with the bytes of a piece, up to the first that cannot be read; returns their
/// number.
template <class Take>
std::int64_t ReadPiece(const ClusterChain& chain, std::int64_t offset, std::int64_t count,
                       PageBytes& buffer, const Take& take) {
    std::int64_t good = 0;
    while (good < count) {
        buffer.resize(static_cast<std::size_t>(std::min(count - good, kLargestBuffer)));
        const std::size_t got = ReadChain(chain, offset + good, buffer);
        good += static_cast<std::int64_t>(got);
        if (got > 0) take(std::span<const Byte>(buffer).first(got));
        if (got < buffer.size()) break;
    }
    return good;
}

}  // namespace

ClusterChain::ClusterChain(Long firstCluster) : PerCluster(ClusterBytes()) {
    if (firstCluster < 0 || firstCluster >= kClusterNumbers) Raise(kSubscriptOutOfRange);
    std::vector<bool> visited(static_cast<std::size_t>(kClusterNumbers));
    Long cluster = firstCluster;
    do {
        visited[static_cast<std::size_t>(cluster)] = true;
        Add(cluster);
        cluster = NextCluster(cluster);
    } while (cluster != FatEndMark && !visited[static_cast<std::size_t>(cluster)]);
    // A loop of clusters without bytes has no content.
    if (cluster == FatEndMark || PerCluster == 0) return;

    // The chain returns to one of its clusters: split the run there, so that the loop begins at the
    // start of a run.
    for (std::size_t i = 0; i < ChainRuns.size(); ++i) {
        ClusterRun& run = ChainRuns[i];
        if (cluster < run.Cluster || cluster >= run.Cluster + run.Count) continue;
        const Long before = cluster - run.Cluster;
        LoopStart = run.Start + before * PerCluster;
        if (before > 0) {
            const ClusterRun rest = {cluster, run.Count - before, *LoopStart};
            run.Count = before;
            ChainRuns.insert(ChainRuns.begin() + static_cast<std::ptrdiff_t>(i) + 1, rest);
        }
        return;
    }
}

void ClusterChain::Add(Long cluster) {
    const bool follows = !ChainRuns.empty() && cluster != kFirstFiveDigitCluster &&
                         ChainRuns.back().Cluster + ChainRuns.back().Count == cluster;
    if (follows) {
        ++ChainRuns.back().Count;
    } else {
        ChainRuns.push_back({cluster, 1, Distinct});
    }
    Distinct += PerCluster;
}

ClusterChain::Extent ClusterChain::ExtentAt(std::int64_t offset) const {
    if (LoopStart && offset >= Distinct)
        offset = *LoopStart + (offset - *LoopStart) % (Distinct - *LoopStart);
    const auto next =
        std::upper_bound(ChainRuns.begin(), ChainRuns.end(), offset,
                         [](std::int64_t at, const ClusterRun& run) { return at < run.Start; });
    const ClusterRun& run = *std::prev(next);
    const std::int64_t inRun = offset - run.Start;
    return {run.Cluster + static_cast<Long>(inRun / PerCluster), inRun % PerCluster,
            run.Count * PerCluster - inRun};
}

std::int64_t ContentLength(Long row, const ClusterChain& chain) {
    const Long size = DirEntries(row).FileSize;
    const bool sized = IsFile(row) && size >= 0;
    if (chain.BytesPerCluster() == 0) return 0;
    if (!chain.LoopTarget()) {
        return sized ? std::min<std::int64_t>(size, chain.DistinctBytes()) : chain.DistinctBytes();
    }
    const std::int64_t clusters = std::max<Long>(1, Drives[1].ClusterCount);
    return sized ? size : clusters * chain.BytesPerCluster();
}

std::size_t ReadChain(const ClusterChain& chain, std::int64_t offset, std::span<Byte> bytes) {
    const auto read = [bytes](std::int64_t inImage, std::int64_t done, std::int64_t count) {
        const auto part =
            bytes.subspan(static_cast<std::size_t>(done), static_cast<std::size_t>(count));
        return static_cast<std::int64_t>(ReadFileUpTo(kImageFile, inImage, part));
    };
    const std::int64_t good = ForExtents(chain, offset, std::ssize(bytes), read);
    std::fill(bytes.begin() + good, bytes.end(), Byte{0});
    return static_cast<std::size_t>(good);
}

WalkEnd WalkChain(const ClusterChain& chain, std::int64_t length,
                  const std::function<void(std::span<const Byte>)>& take) {
    PageBytes buffer;
    return Walk(chain, length, [&](std::int64_t offset, std::int64_t count) {
        return ReadPiece(chain, offset, count, buffer, take);
    });
}

WalkEnd CheckChain(const ClusterChain& chain, std::int64_t length,
                   const std::function<void(std::int64_t bytes)>& checked) {
    PageBytes buffer;
    const auto check = [](std::int64_t inImage, std::int64_t, std::int64_t count) {
        return count < kMinChecked ? 0 : CheckFileUpTo(kImageFile, inImage, count);
    };
    return Walk(chain, length, [&](std::int64_t offset, std::int64_t count) {
        std::int64_t good = ForExtents(chain, offset, count, check);
        good += ReadPiece(chain, offset + good, count - good, buffer, [](auto) {});
        if (good > 0) checked(offset + good);
        return good;
    });
}

WalkEnd CopyChain(const ClusterChain& chain, std::int64_t length, int target,
                  std::int64_t& written) {
    PageBytes buffer;
    bool mayShare = true;
    const auto share = [target](std::int64_t inImage, std::int64_t, std::int64_t count) {
        return ShareFileUpTo(kImageFile, inImage, count, target);
    };
    const auto write = [&](std::span<const Byte> bytes) {
        WriteFile(target, bytes);
        written += std::ssize(bytes);
    };
    return Walk(chain, length, [&](std::int64_t offset, std::int64_t count) {
        const std::int64_t shared = mayShare ? ForExtents(chain, offset, count, share) : 0;
        mayShare = shared > 0;
        written += shared;
        return shared + ReadPiece(chain, offset + shared, count - shared, buffer, write);
    });
}

void RaiseReadError(const ClusterChain& chain, std::int64_t offset) {
    const auto at = chain.ExtentAt(offset);
    RaiseReadError(ClusterOffset(at.Cluster, at.InCluster));
}

}  // namespace tessel
