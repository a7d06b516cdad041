#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "platform/folderHandle.h"
#include "platform/runtimeError.h"

/// Open files by number, each for reading or for writing bytes. Offsets count from 0. A number that
/// is not open raises 52. FolderHandle::CreateFile opens a file for writing.
namespace tessel {

/// The last offset that can be read: positions are counted from 1 in signed 32 bits.
inline constexpr std::int64_t kLastFileOffset = 2147483646;

/// Opens a file for reading, without blocking. Raises 55 when the number is in use, 53 for a
/// missing file, 76 for a missing folder, 75 for a folder, a pipe, a socket or a file that the user
/// has no right to read, 57 for a failing medium.
void OpenForReading(int number, const std::string& path);

/// Closes a file; does nothing for a number that is not open. Raises 61 or 57 when the host cannot
/// store what was written; the number is free in any case.
void CloseFile(int number);
/// As CloseFile, but raises nothing: for use after another error.
void AbandonFile(int number);

bool FileIsOpen(int number);

/// Returns the length in bytes; for a block device, the size of the medium.
std::int64_t FileLength(int number);

/// Fills `bytes` from `offset` on. Bytes past the end of the file read as 0. Raises 6 when the
/// offset is negative or past kLastFileOffset, 57 when the medium fails.
void ReadFile(int number, std::int64_t offset, std::span<Byte> bytes);

/// As ReadFile, but raises nothing: stops at the first error, fills the rest of `bytes` with 0 and
/// returns the number of bytes before it. ReadFile from there raises the error.
std::size_t ReadFileUpTo(int number, std::int64_t offset, std::span<Byte> bytes);

/// Checks how many of the `count` bytes from `offset` on can be read, without copying them to the
/// process. Returns their number: fewer also at the end of the file, and 0 if the host cannot
/// check. Raises nothing.
std::int64_t CheckFileUpTo(int number, std::int64_t offset, std::int64_t count);

/// Appends up to `count` bytes of a file, from `offset` on, to the file `target`, which is open for
/// writing, as extents that the two files share on the disk. Returns the number of bytes appended:
/// whole blocks that can be read, 0 if the host or the file system cannot share. Raises nothing.
std::int64_t ShareFileUpTo(int number, std::int64_t offset, std::int64_t count, int target);

/// Appends bytes to a file that is open for writing. Raises 61 when the disk is full, 57 when the
/// medium fails; the file keeps what could be written.
void WriteFile(int number, std::span<const Byte> bytes);
/// Returns WriteFile for one file, to be called by one thread at a time while the file is open.
std::function<void(std::span<const Byte>)> WriterOf(int number);

/// A date and time in the host's time zone.
struct LocalTime {
    int Year, Month, Day, Hour, Minute, Second;
};
/// Sets the modification time of a file that is open for writing. Writing to it later changes the
/// time again. Returns false when the host cannot set it.
bool SetModificationTime(int number, const LocalTime& time);

/// The identity of an open file. Raises 57 when the host cannot identify it.
FileIdentity IdentityOf(int number);
/// Whether `file` is open under any number.
bool IsOpenFile(const FileIdentity& file);

}  // namespace tessel
