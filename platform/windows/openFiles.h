#pragma once

#include <optional>

#include "platform/folderHandle.h"

namespace tessel {

/// Raises 55 when a file is open under `number`.
void RefuseUsedNumber(int number);
/// Registers a handle that is open for writing under the free `number`. CloseFile closes it.
void AddFileForWriting(int number, void* handle);

/// Returns nullopt when the host cannot identify it.
std::optional<FileIdentity> IdentityOfHandle(void* handle);

}  // namespace tessel
