#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>

#include "platform/runtimeError.h"

/// An in-memory host: it replaces the file system of platform/ where the program is fed thousands
/// of hostile images a second. Of the files that the program writes, only the sizes are counted.
namespace tessel::memory {

/// The folder of the images, in which the program cannot write.
inline constexpr const char* kImages = "/images";
/// The only folder that the user chooses to save in.
inline constexpr const char* kChosen = "/chosen";

/// Empties the host: it then has only those two folders, and space for a limited number of bytes.
void Reset();

/// Puts an image at `path`. Keeps a reference to the caller's bytes and only reads them. Reads from
/// byte `failsFrom` on fail as on a bad medium.
void PutImage(const std::string& path, std::span<const Byte> bytes,
              std::int64_t failsFrom = INT64_MAX);

/// The paths of all files and folders that the program has created.
const std::set<std::string>& CreatedPaths();
/// The number of bytes that it has written.
std::int64_t BytesWritten();

}  // namespace tessel::memory
