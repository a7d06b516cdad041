#pragma once

#include <string>

#include "platform/runtimeError.h"

/// Directory entries as text.
namespace tessel {

/// A row's line in the list: "{label} ", "[directory]" or " file ", "" for a long-name row. With
/// `full` the long name follows, and a second line with attributes, dates, first cluster and size.
/// Raises 9 for a row outside the table.
std::string ListLine(Long row, bool full);
/// " MM/DD/YYYY" and, unless `time` is -1, " HH:MM:SS", from the 16-bit on-disk values; nothing is
/// tested against its range.
std::string DateTimeText(Long date, Long time);
/// Four characters, R, S, H and A or a blank each, for the attribute bits.
std::string AttrText(Long attributes);
/// The full form, two lines each, of everything in the directory that is not deleted.
std::string DirectoryText();

}  // namespace tessel
