#pragma once

/// The byte and text utilities, gathered.
#include "util/byteFields.h"  // IWYU pragma: export
#include "util/numberText.h"  // IWYU pragma: export
