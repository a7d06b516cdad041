#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "fuzz/memoryHost.h"
#include "fuzz/offsetChecks.h"
#include "platform/numberedFiles.h"
#include "reports/offsetLines.h"
#include "volume/volumeState.h"

/// Reads the partition tables of an image file and lists its volumes. The input begins with the
/// position at which the medium fails, in 254ths of the image's length; 255 for a medium without
/// errors.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessel;
    if (size == 0) return 0;
    constexpr std::uint8_t kNoFailure = 255;
    const std::span<const std::uint8_t> image(data + 1, size - 1);
    const std::string path = std::string(memory::kImages) + "/disk.img";
    memory::Reset();
    memory::PutImage(path, image,
                     data[0] == kNoFailure
                         ? INT64_MAX
                         : static_cast<std::int64_t>(image.size() * data[0] / 254));
    OpenForReading(kImageFile, path);
    CheckOffsetLines(OffsetLines(ReadPartitionTable(kImageFile), "disk.img"));
    CloseFile(kImageFile);
    return 0;
}
