#pragma once

/// Includes the headers of the open volume.
#include "volume/bootSector.h"    // IWYU pragma: export
#include "volume/contentViews.h"  // IWYU pragma: export
#include "volume/directory.h"     // IWYU pragma: export
#include "volume/extraction.h"    // IWYU pragma: export
#include "volume/fatEntries.h"    // IWYU pragma: export
#include "volume/imageReads.h"    // IWYU pragma: export
#include "volume/volumeState.h"   // IWYU pragma: export
