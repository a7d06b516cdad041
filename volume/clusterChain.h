#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/runtimeError.h"

namespace tessel {

/// A run of clusters that are contiguous on the disk and in a chain.
struct ClusterRun {
    Long Cluster = 0;        ///< the first cluster
    Long Count = 0;          ///< number of clusters
    std::int64_t Start = 0;  ///< its offset in the chain, bytes
};

/// The clusters of a chain in order, as linked in the first FAT. The first cluster always belongs
/// to the chain, and so does every cluster that NextCluster returns before FatEndMark. The chain is
/// stored as runs; a chain that loops is stored once, with the offset that it returns to.
class ClusterChain {
  public:
    /// Follows the chain from `firstCluster` through Fat0Bytes. Raises 9 for a cluster that is not
    /// a 16-bit number.
    explicit ClusterChain(Long firstCluster);

    /// Bytes per cluster; 0 on a volume with 0 sectors per cluster.
    std::int64_t BytesPerCluster() const { return PerCluster; }
    /// Bytes of all different clusters of the chain.
    std::int64_t DistinctBytes() const { return Distinct; }
    /// For a chain that loops, the offset that it returns to after its last cluster, in bytes.
    std::optional<std::int64_t> LoopTarget() const { return LoopStart; }
    /// The runs, those of a loop once. A run is split at cluster 10000, where the line heads of a
    /// dump grow by a digit, and at the cluster that a loop returns to.
    const std::vector<ClusterRun>& Runs() const { return ChainRuns; }

    /// Bytes of the chain that are contiguous on the disk.
    struct Extent {
        Long Cluster;            ///< the cluster of the first byte
        std::int64_t InCluster;  ///< the offset of the first byte in its cluster
        std::int64_t Length;     ///< bytes
    };
    /// The extent that begins `offset` bytes into the chain. `offset` is 0 or more, and less than
    /// DistinctBytes when the chain does not loop.
    Extent ExtentAt(std::int64_t offset) const;

  private:
    void Add(Long cluster);

    std::vector<ClusterRun> ChainRuns;
    std::int64_t PerCluster = 0;
    std::int64_t Distinct = 0;
    std::optional<std::int64_t> LoopStart;
};

/// The bytes of `chain` that are the content of directory row `row`: for a file its size, at most
/// the length of the chain; for a directory, or a file with a negative size, the whole chain. A
/// chain that loops counts as endless for a file with a size, and otherwise as long as the volume
/// has clusters.
std::int64_t ContentLength(Long row, const ClusterChain& chain);

/// Reads bytes of a chain into `bytes`, from `offset` on, up to the first that cannot be read;
/// returns their number and fills the rest with 0. Raises nothing.
std::size_t ReadChain(const ClusterChain& chain, std::int64_t offset, std::span<Byte> bytes);

enum class WalkEnd { kDone, kStopped, kReadFailed };

/// Walks the first `length` bytes of a chain in order: first one cluster, then larger pieces, with
/// events processed in between. Stops early when StopRequested is set, and at the first byte that
/// cannot be read. What a callback throws goes to the caller.
///
/// WalkChain calls `take` with the bytes.
WalkEnd WalkChain(const ClusterChain& chain, std::int64_t length,
                  const std::function<void(std::span<const Byte>)>& take);
/// CheckChain checks whether the bytes can be read, and calls `checked` with the number so far.
WalkEnd CheckChain(const ClusterChain& chain, std::int64_t length,
                   const std::function<void(std::int64_t bytes)>& checked);
/// CopyChain appends the bytes to the file `target`, which is open for writing, and adds their
/// number to `written`. Raises the errors of WriteFile.
WalkEnd CopyChain(const ClusterChain& chain, std::int64_t length, int target,
                  std::int64_t& written);

/// Raises the error of reading the chain at `offset`, 57 when that no longer fails.
[[noreturn]] void RaiseReadError(const ClusterChain& chain, std::int64_t offset);

}  // namespace tessel
