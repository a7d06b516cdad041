#include "app/formTessel.h"

namespace tessel {

// The build hands in the project's version.
const char* ProgramVersion() { return TESSEL_VERSION; }

}  // namespace tessel
