#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>

#include "platform/runtimeError.h"

/// A host that lives in memory: it stands in for the files of platform/ where the program is fed
/// thousands of hostile images a second. Files that the program writes are measured, not kept.
namespace tessel::memory {

/// The images are below this folder, which the program may not write to.
inline constexpr const char* kImages = "/images";
/// The one folder that a person chooses to save in.
inline constexpr const char* kChosen = "/chosen";

/// Empties the host: no files but those folders, and room for a bounded number of bytes.
void Reset();

/// Puts an image at `path`. The bytes stay the caller's, and are only read. Reads from byte
/// `failsFrom` on fail like a bad medium's.
void PutImage(const std::string& path, std::span<const Byte> bytes,
              std::int64_t failsFrom = INT64_MAX);

/// The paths of the files and folders that the program made.
const std::set<std::string>& CreatedPaths();
/// How many bytes it wrote.
std::int64_t BytesWritten();

}  // namespace tessel::memory
