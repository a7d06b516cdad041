#include "volume/clusterChain.h"

#include <algorithm>
#include <chrono>

#include "platform/host.h"
#include "platform/numberedFiles.h"
#include "volume/directory.h"
#include "volume/fatEntries.h"
#include "volume/imageReads.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

constexpr std::int64_t kLargestPiece = std::int64_t{256} * 1024;
constexpr std::chrono::milliseconds kShortPiece{4};
constexpr std::chrono::milliseconds kLongPiece{16};
constexpr Long kFirstFiveDigitCluster = 10000;
/// Cluster numbers come from 16-bit fields.
constexpr Long kClusterNumbers = 65536;

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
    const auto behind =
        std::upper_bound(ChainRuns.begin(), ChainRuns.end(), offset,
                         [](std::int64_t at, const ClusterRun& run) { return at < run.Start; });
    const ClusterRun& run = *std::prev(behind);
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
    std::size_t good = 0;
    while (good < bytes.size()) {
        const auto at = chain.ExtentAt(offset + static_cast<std::int64_t>(good));
        const auto wanted =
            std::min<std::size_t>(bytes.size() - good, static_cast<std::size_t>(at.Length));
        std::size_t got = 0;
        try {
            const std::int64_t place = ClusterOffset(at.Cluster, at.InCluster);
            got = ReadFileUpTo(kImageFile, place, bytes.subspan(good, wanted));
        } catch (const RuntimeError&) {
            got = 0;  // a cluster that lies outside what can be addressed
        }
        good += got;
        if (got < wanted) break;
    }
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(good), bytes.end(), Byte{0});
    return good;
}

WalkEnd WalkChain(const ClusterChain& chain, std::int64_t length,
                  const std::function<void(std::span<const Byte>)>& take) {
    using std::chrono::steady_clock;
    EventPump events;
    Progress progress(length);
    std::vector<Byte> buffer;
    std::int64_t piece = chain.BytesPerCluster();
    for (std::int64_t at = 0; at < length;) {
        if (StopRequested) return WalkEnd::kStopped;
        const auto begun = steady_clock::now();
        buffer.resize(static_cast<std::size_t>(std::min(piece, length - at)));
        const std::size_t good = ReadChain(chain, at, buffer);
        if (good > 0) take(std::span(buffer).first(good));
        if (good < buffer.size()) return WalkEnd::kReadFailed;
        at += static_cast<std::int64_t>(good);
        // Large pieces are fast, but on a slow medium STOP has to wait for the end of one.
        const auto taken = steady_clock::now() - begun;
        if (taken < kShortPiece && piece < kLargestPiece) piece *= 2;
        if (taken > kLongPiece && piece > chain.BytesPerCluster()) piece /= 2;
        if (at == length) break;
        progress.Show(at);
        events.Process();
    }
    return WalkEnd::kDone;
}

void RaiseReadError(const ClusterChain& chain, std::int64_t offset) {
    const auto at = chain.ExtentAt(offset);
    RaiseReadError(ClusterOffset(at.Cluster, at.InCluster));
}

}  // namespace tessel
