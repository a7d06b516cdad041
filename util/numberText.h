#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/runtimeError.h"

/// Numbers and names as text, and back.
namespace tessel {

/// Upper-case hexadecimal, without prefix: 2 digits for 0..255, 4 for 0..65535, and 8 for any
/// value (a negative one as its two's complement).
std::string Hex2(Long value);
std::string Hex4(Long value);
std::string Hex8(Long value);

/// Decimal with at least `digits` digits, leading zeros in front; "-" before a negative number.
std::string Padded(Long value, int digits);

/// A byte of a file shown as text: 32 to 126, tab, line feed and carriage return as themselves,
/// every other as "<", two hexadecimal digits and ">".
std::string ByteToText(Byte value);

/// The number that a person typed: decimal, or hexadecimal behind "&H" or "0X" in either case, with
/// a closing "k" (1024) or "M" (1048576). -1 for anything else, and for what grows too large
/// (decimal past 536870919, hexadecimal past 3333333F, with a suffix past 536870912). Takes the
/// blanks at both ends off the caller's text.
Long ParseNumber(std::string& text);

/// A bare file name without its last "." and what follows it.
std::string StripExtension(const std::string& name);

/// A number of bytes, such as "1.6 GB": one decimal, rounded up, so that a size just above a limit
/// does not look equal to it. Units are powers of 1024.
std::string SizeText(std::int64_t bytes);

/// `text` without the blanks at its ends.
std::string Trimmed(std::string_view text);
/// ASCII letters turned to upper case.
std::string UpperCase(std::string text);

/// 16-bit units as UTF-8. A unit that is half of a pair without its other half becomes U+FFFD.
std::string Utf8(std::u16string_view units);

}  // namespace tessel
