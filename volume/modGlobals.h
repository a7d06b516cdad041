#pragma once

/// The program-wide flags of the busy state. Both live on the user-interface thread.
namespace tessel {

/// A long operation is running.
extern bool Busy;
/// STOP was pressed since the busy state was last entered or left. Long loops test it after every
/// piece and end early.
extern bool StopRequested;

}  // namespace tessel
