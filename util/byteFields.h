#pragma once

#include <span>
#include <string>

#include "platform/runtimeError.h"

/// Little-endian fields of on-disk structures, read byte by byte out of a buffer.
namespace tessel {

using ByteBuffer = std::span<const Byte>;

/// The byte at `index`, 0 to 255. Raises 9 outside the buffer.
Long GetByte(ByteBuffer buffer, Integer index);
/// The 16-bit word at `index`, 0 to 65535. Raises 9 when a byte of it lies outside the buffer, 6
/// when one lies behind index 32767.
Long GetWord(ByteBuffer buffer, Integer index);
/// The signed 32-bit number at `index`. Errors as for GetWord.
Long GetLong(ByteBuffer buffer, Integer index);
/// `count` bytes from `start` on as display text; shorter when the buffer, or index 32767, ends
/// first. A count of 0 or less gives "". Raises nothing.
std::string GetString(ByteBuffer buffer, Integer start, Integer count);
/// The character of a byte: 32 to 126 as itself, "." for every other.
char ByteToChar(Byte value);

/// As GetWord, in a buffer of any size (a FAT of 16-bit entries is up to 128 KiB long).
Long GetWideWord(ByteBuffer buffer, Long index);

}  // namespace tessel
