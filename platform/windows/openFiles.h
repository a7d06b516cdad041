#pragma once

#include <optional>

#include "platform/heldFolder.h"

namespace tessel {

/// Raises 55 when a file is open under `number`.
void RefuseUsedNumber(int number);
/// Puts a handle that is open for writing under a free number, which owns it from then on.
void AddFileForWriting(int number, void* handle);

/// Nothing when the host does not say.
std::optional<FileIdentity> IdentityOfHandle(void* handle);

}  // namespace tessel
