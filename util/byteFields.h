#pragma once

#include <span>
#include <string>

#include "platform/runtimeError.h"

/// Little-endian fields of on-disk structures, read byte by byte from a buffer.
namespace tessel {

using ByteBuffer = std::span<const Byte>;

/// Returns the byte at `index`, 0 to 255. Raises 9 when it is outside the buffer.
Long GetByte(ByteBuffer buffer, Integer index);
/// Returns the 16-bit word at `index`, 0 to 65535. Raises 9 when one of its bytes is outside the
/// buffer, 6 when one is past index 32767.
Long GetWord(ByteBuffer buffer, Integer index);
/// Returns the signed 32-bit number at `index`. Errors as for GetWord.
Long GetLong(ByteBuffer buffer, Integer index);
/// Returns `count` bytes from `start` on, each converted by ByteToChar; fewer when the buffer ends
/// first or index 32767 is reached, "" when `count` is 0 or less. Raises nothing.
std::string GetString(ByteBuffer buffer, Integer start, Integer count);
/// Returns the character of a byte: 32 to 126 as itself, "." for all others.
inline char ByteToChar(Byte value) {
    return value >= 32 && value <= 126 ? static_cast<char>(value) : '.';
}

/// As GetWord, in a buffer of any size (a FAT with 16-bit entries is up to 128 KiB long). Raises 9
/// outside the buffer, 6 when `index` + 1 does not fit 32 bits.
Long GetWideWord(ByteBuffer buffer, Long index);

}  // namespace tessel
