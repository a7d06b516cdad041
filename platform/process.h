#pragma once

namespace tessel {

/// Prepares the process, before anything else in main: the standard streams carry bytes unchanged,
/// and the host loads no library from the current folder, where files from an image may lie.
void PrepareProcess();

}  // namespace tessel
