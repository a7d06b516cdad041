#pragma once

#include <sstream>
#include <string>

#include "drive/script.h"

namespace tessel {

/// A person who tries everything in the window, with little patience, on a host in memory. After
/// each step the window is held against what must always be true of it; where it is not, the
/// process ends with a word on why.
class UserSimulator {
  public:
    /// The program as it just started. `savesAnywhere`: what is done chooses other folders too.
    explicit UserSimulator(bool savesAnywhere = false);
    ~UserSimulator();
    UserSimulator(const UserSimulator&) = delete;
    UserSimulator& operator=(const UserSimulator&) = delete;

    void Do(const std::string& scriptLine);
    /// Opens an image of the host in memory.
    void Open(const std::string& path);
    /// All reports, all entries in each mode, every save, and into the directories.
    void TryEverything();
    /// Whether the program has ended.
    bool Ended() const { return Program->Desktop.Ended; }
    /// What must be true between two steps, and of what was written so far.
    void CheckWindow();

  private:
    void TryEntry(int line);
    void EnterDirectories(int depth);
    void CheckText() const;
    void CheckCreatedPaths() const;

    std::ostringstream Out;
    ScriptSettings Settings;
    std::unique_ptr<Script> Program;
    long EventsLeft = 0;  // STOP is pressed when they are used up
    int Steps = 0;
    bool SavesAnywhere;
};

}  // namespace tessel
