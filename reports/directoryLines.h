#pragma once

#include <string>

#include "platform/runtimeError.h"

/// Text of directory entries.
namespace tessel {

/// Returns the line of a row in the list: "{label} ", "[directory]" or " file ", "" for a long-name
/// row. With `full`, appends the long name, and a second line with attributes, dates, first cluster
/// and size. Raises 9 for a row outside the table.
std::string ListLine(Long row, bool full);
/// Returns the long name of a row, if it has one, its kind and, of a file, its size: "Read me.txt,
/// file, 14 bytes". Raises 9 for a row outside the table.
std::string EntryHint(Long row);
/// Returns " MM/DD/YYYY" and, unless `time` is -1, " HH:MM:SS" for the 16-bit on-disk values.
/// Values out of range are shown as they are.
std::string DateTimeText(Long date, Long time);
/// Returns four characters for the attribute bits: R, S, H and A, or a blank for each that is 0.
std::string AttrText(Long attributes);
/// Returns the full ListLine, two lines each, of all entries that are not deleted.
std::string DirectoryText();

}  // namespace tessel
