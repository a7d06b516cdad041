#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "fuzz/memoryHost.h"
#include "fuzz/userSimulator.h"

namespace {

constexpr std::size_t kHead = 6;
enum Choice : unsigned { kFailing = 1, kCloseBetween = 2, kInKilobytes = 4 };

}  // namespace

/// Opens two images, one after the other in one window, so that state left by the first meets the
/// second. The input begins with the choices, the offset in 3 bytes, the length of the first image
/// in 256ths of the rest, and the position at which its medium fails, in 64ths of that length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessel;
    if (size < kHead) return 0;
    const std::span<const std::uint8_t> head(data, kHead);
    const std::span<const std::uint8_t> rest(data + kHead, size - kHead);
    const std::uint32_t offset = head[1] | head[2] * 256U | head[3] * 65536U;
    const std::size_t first = rest.size() * (head[4] + 1U) / 256;

    UserSimulator user;
    const std::string folder = memory::kImages;
    memory::PutImage(
        folder + "/one.img", rest.first(first),
        head[0] & kFailing ? static_cast<std::int64_t>(first * head[5] / 64) : INT64_MAX);
    memory::PutImage(folder + "/two.img", rest.subspan(first));

    if (offset != 0) {
        user.Do("input " + std::to_string(offset) + (head[0] & kInKilobytes ? "k" : ""));
        user.Do("menu Offset");
    }
    user.Open(folder + "/one.img");
    user.TryEverything();
    user.OpenOffered(folder + "/one.img");
    if (head[0] & kCloseBetween) user.Do("menu Close");
    if (first < rest.size()) {
        user.Open(folder + "/two.img");
        user.TryEverything();
    }
    user.Do("menu Close");
    return 0;
}
