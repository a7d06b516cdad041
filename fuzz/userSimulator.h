#pragma once

#include <sstream>
#include <string>

#include "drive/script.h"

namespace tessel {

/// An impatient user who tries everything in the window, on the in-memory host. After each step the
/// window's invariants are checked; if one is violated, the process prints it and aborts.
class UserSimulator {
  public:
    /// Starts the program. `savesAnywhere`: the steps may save outside of memory::kChosen.
    explicit UserSimulator(bool savesAnywhere = false);
    ~UserSimulator();
    UserSimulator(const UserSimulator&) = delete;
    UserSimulator& operator=(const UserSimulator&) = delete;

    void Do(const std::string& scriptLine);
    /// Opens an image of the in-memory host.
    void Open(const std::string& path);
    /// Closes the image, chooses the first volume that the offset box offers and opens the image
    /// there; does nothing where it offers none.
    void OpenOffered(const std::string& path);
    /// Shows all reports and all entries in each mode, uses every save, and enters directories.
    void TryEverything();
    /// Whether the program has ended.
    bool Ended() const { return Program->Desktop.Ended; }
    /// Checks the window's invariants between two steps, and the paths written so far.
    void CheckWindow();

  private:
    void TryEntry(int line);
    void EnterDirectories(int depth);
    void CheckText() const;
    void CheckCreatedPaths() const;

    std::ostringstream Out;
    ScriptSettings Settings;
    std::unique_ptr<Script> Program;
    long EventsLeft = 0;  // DoEvents calls until STOP is pressed
    int Steps = 0;
    bool SavesAnywhere;
};

}  // namespace tessel
