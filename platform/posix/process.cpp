#include "platform/process.h"

namespace tessel {

// Streams are always binary, and libraries are never loaded from the current folder.
void PrepareProcess() {}

}  // namespace tessel
