#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/controls.h"
#include "platform/runtimeError.h"

namespace tessel {

/// The flags of the common file dialog that the program uses.
enum FileDialogFlag : Long {
    kOverwritePrompt = 0x2,
    kHideReadOnly = 0x4,
    kPathMustExist = 0x800,
    kFileMustExist = 0x1000,
    kNoReadOnlyReturn = 0x8000,
    kLongNames = 0x200000,
};

/// The common file dialog. It keeps its settings between uses.
struct CommonDialog {
    std::string FileName{};    ///< in: the suggested name; out: the chosen file's full path
    std::string FileTitle{};   ///< out: the chosen file's name without its folder
    std::string Title{};       ///< of the dialog's window
    std::string Filter{};      ///< pairs of description and pattern, every item separated by "|"
    std::string DefaultExt{};  ///< added to a typed name that has no extension; "" for none
    std::string InitDir{};     ///< the folder to start in
    Long Flags = 0;            ///< FileDialogFlag bits
    bool CancelError = false;  ///< whether Cancel raises 32755
    Long FilterIndex = 1;      ///< the preselected pair, counted from 1
};

/// Text values that last between runs, per user, by section and key.
struct SettingsStore {
    /// The stored text, or `otherwise` when nothing was ever stored there.
    std::function<std::string(const std::string& section, const std::string& key,
                              const std::string& otherwise)>
        Read;
    std::function<void(const std::string& section, const std::string& key, const std::string& text)>
        Write;
};

/// What the program needs of the desktop that it runs on. main.cpp fills it from the toolkit, a
/// scripted desk stands in for it elsewhere.
struct Host {
    /// Shows a text with an OK button until a person has read it.
    std::function<void(const std::string& text, const std::string& title)> MessageBox{};
    /// Asks for a text; "" when a person cancels.
    std::function<std::string(const std::string& prompt, const std::string& title,
                              const std::string& text)>
        InputBox;
    /// Shows the file dialog for opening or for saving. Fills FileName and FileTitle; Cancel raises
    /// 32755 when CancelError is set and leaves FileName empty when it is not.
    std::function<void(CommonDialog& dialog)> ShowOpen{};
    std::function<void(CommonDialog& dialog)> ShowSave{};
    /// Shows a window and returns once its Visible is false again.
    std::function<void(Window& window)> ShowModal{};
    /// Lets the events that wait happen.
    std::function<void()> DoEvents{};
    /// Shows the hourglass, or the usual pointer again.
    std::function<void(bool hourglass)> SetPointer{};
    /// Shows how much of a long operation is done, 0 to 1; nothing once there is none.
    std::function<void(std::optional<double> share)> ShowProgress{};
    /// Ends the program once the running event has unwound.
    std::function<void()> EndProgram{};

    SettingsStore Settings{};
};

/// The desktop that the program runs on.
extern Host TheHost;

/// Lets events in during a long operation: the first time it is asked, and then about every 8 ms,
/// so that a window answers at once and an event turn costs nothing between.
class EventPump {
  public:
    void Process();

  private:
    std::chrono::steady_clock::time_point Last{};
};

/// How far a long operation has come, shown while it lives.
class Progress {
  public:
    /// `total` is the number of steps: bytes, files, whatever is counted. What begins inside is a
    /// part of the next step when this one `hasParts`, as the bytes of a file are of a directory's
    /// files; else it only happens to begin in an event turn.
    explicit Progress(std::int64_t total, bool hasParts = false);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// So many steps are done.
    void Show(std::int64_t done);

  private:
    double Share(double steps) const;

    Progress* Outer;
    std::int64_t Total;
    bool HasParts;
    std::int64_t Done = 0;
};

}  // namespace tessel
