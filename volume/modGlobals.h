#pragma once

/// The program-wide flags of the busy state, used by the user-interface thread alone.
namespace tessel {

/// A long operation is running.
extern bool Busy;
/// STOP was pressed since the busy state was last entered or left. Long loops check it after each
/// piece of work and end early.
extern bool StopRequested;

}  // namespace tessel
