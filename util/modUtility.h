#pragma once

/// Includes the byte and text utilities.
#include "util/byteFields.h"  // IWYU pragma: export
#include "util/numberText.h"  // IWYU pragma: export
