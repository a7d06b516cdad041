#include "app/formTessel.h"

namespace tessel {

// The build defines TESSEL_VERSION.
const char* ProgramVersion() { return TESSEL_VERSION; }

}  // namespace tessel
