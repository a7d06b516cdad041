#include "util/byteFields.h"

#include <cstddef>
#include <limits>

namespace tessel {
namespace {

constexpr Long kLastIndex = std::numeric_limits<Integer>::max();

Long ByteAt(ByteBuffer buffer, Long index) {
    if (index < 0 || static_cast<std::size_t>(index) >= buffer.size()) Raise(kSubscriptOutOfRange);
    return buffer[static_cast<std::size_t>(index)];
}

Long IndexedByte(ByteBuffer buffer, Long index) {
    if (index > kLastIndex) Raise(kOverflow);
    return ByteAt(buffer, index);
}

}  // namespace

Long GetByte(ByteBuffer buffer, Integer index) { return IndexedByte(buffer, index); }

Long GetWord(ByteBuffer buffer, Integer index) {
    const Long low = IndexedByte(buffer, index);
    return low + 256 * IndexedByte(buffer, index + 1);
}

Long GetLong(ByteBuffer buffer, Integer index) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        value |= static_cast<std::uint32_t>(IndexedByte(buffer, index + i)) << (8 * i);
    }
    return static_cast<Long>(value);
}

std::string GetString(ByteBuffer buffer, Integer start, Integer count) {
    std::string text;
    for (Long i = 0; i < count; ++i) {
        const Long index = start + i;
        if (index < 0 || index > kLastIndex || static_cast<std::size_t>(index) >= buffer.size()) {
            break;
        }
        text += ByteToChar(buffer[static_cast<std::size_t>(index)]);
    }
    return text;
}

Long GetWideWord(ByteBuffer buffer, Long index) {
    const Long low = ByteAt(buffer, index);
    return low + 256 * ByteAt(buffer, CheckedLong(std::int64_t{index} + 1));
}

}  // namespace tessel
