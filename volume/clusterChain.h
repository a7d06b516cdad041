#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// Clusters that follow one another on the disk and in a chain.
struct ClusterRun {
    Long Cluster = 0;        ///< the first one
    Long Count = 0;          ///< how many
    std::int64_t Start = 0;  ///< bytes of the chain in front of it
};

/// The clusters of a chain in order, as the first FAT tells them. The first cluster always belongs
/// to it, and so does the one behind which the walk stops. It takes memory by the run, and at most
/// by the cluster of the volume: a chain that loops is held once, with the place it returns to.
class ClusterChain {
  public:
    /// Follows the chain from `firstCluster` through the FAT in memory.
    explicit ClusterChain(Long firstCluster);

    /// Bytes of a cluster when the chain was walked; 0 on a volume whose clusters have no sectors.
    std::int64_t BytesPerCluster() const { return PerCluster; }
    /// Bytes of all clusters once around.
    std::int64_t DistinctBytes() const { return Distinct; }
    /// Where a chain that loops goes on behind its last cluster: bytes from its beginning.
    std::optional<std::int64_t> LoopTarget() const { return LoopStart; }
    /// The runs, once around. A run never crosses cluster 10000, where dump heads grow a digit,
    /// nor the place that a loop returns to.
    const std::vector<ClusterRun>& Runs() const { return ChainRuns; }

    /// A place in the chain, `offset` bytes from its beginning: its cluster, the bytes into it, and
    /// the bytes from there on that lie together on the disk.
    struct Extent {
        Long Cluster;
        std::int64_t InCluster;
        std::int64_t Length;
    };
    /// `offset` is 0 or more; below DistinctBytes when the chain does not loop.
    Extent ExtentAt(std::int64_t offset) const;

  private:
    void Add(Long cluster);

    std::vector<ClusterRun> ChainRuns;
    std::int64_t PerCluster = 0;
    std::int64_t Distinct = 0;
    std::optional<std::int64_t> LoopStart;
};

/// How many bytes of its chain the content of directory row `row` is: a file's size, as far as the
/// chain goes; for a directory, or a file whose size is negative, the whole chain. A chain that
/// loops has no end of its own; where no size cuts it, it ends after as many clusters as the volume
/// has.
std::int64_t ContentLength(Long row, const ClusterChain& chain);

/// Reads bytes of a chain into `bytes`, from `offset` on, as far as the image gives them; returns
/// how many are good, and leaves the rest 0. Raises nothing.
std::size_t ReadChain(const ClusterChain& chain, std::int64_t offset, std::span<Byte> bytes);

enum class WalkEnd { kDone, kStopped, kReadFailed };

/// Hands the first `length` bytes of a chain to `take`, in order, first one cluster and then
/// larger pieces, and lets events in between them. Ends early when StopRequested is set, and where
/// a read fails, behind the last good byte. What `take` throws goes to the caller.
WalkEnd WalkChain(const ClusterChain& chain, std::int64_t length,
                  const std::function<void(std::span<const Byte>)>& take);

/// Raises the error with which reading the chain at `offset` fails.
[[noreturn]] void RaiseReadError(const ClusterChain& chain, std::int64_t offset);

}  // namespace tessel
