#include "platform/process.h"

namespace tessel {

// Streams are binary here, and libraries come from the system's folders alone.
void PrepareProcess() {}

}  // namespace tessel
