#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/runtimeError.h"

/// Conversions of numbers and names to text, and back.
namespace tessel {

/// Upper-case hexadecimal, without prefix: 2 digits for 0..255, 4 for 0..65535, and 8 for any
/// value (a negative one as its two's complement).
std::string Hex2(Long value);
std::string Hex4(Long value);
std::string Hex8(Long value);

/// Decimal, padded with leading zeros to at least `digits` digits. A "-" before a negative number
/// does not count as a digit.
std::string Padded(Long value, int digits);

/// Decimal with a comma between groups of three digits.
std::string Grouped(Long value);

/// A byte of a file shown as text: 32 to 126, tab, line feed and carriage return as themselves, all
/// others as "<", two hexadecimal digits and ">".
std::string ByteToText(Byte value);

/// Parses a number typed by the user: decimal, or hexadecimal after "&H" or "0X" in either case,
/// with an optional suffix "k" (1024) or "M" (1048576) in either case. Returns -1 for any other
/// text and for too large a number (decimal over 536870919, hexadecimal over 3333333F, with a
/// suffix over 536870912). Removes the blanks at both ends of the caller's text.
Long ParseNumber(std::string& text);

/// `name`, a file name without a folder, up to its last ".".
std::string StripExtension(const std::string& name);

/// A size in bytes as text, such as "1.6 GB". Units are powers of 1024; from 1 KB on the number has
/// at most one decimal, rounded up so that a size just above a limit does not look equal to it.
std::string SizeText(std::int64_t bytes);

/// `text` without leading and trailing blanks (character 32).
std::string Trimmed(std::string_view text);
/// `text` with its ASCII letters in upper case.
std::string UpperCase(std::string text);

/// Converts UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD.
std::string Utf8(std::u16string_view units);

}  // namespace tessel
