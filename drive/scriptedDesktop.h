#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "app/formTessel.h"
#include "platform/host.h"

namespace tessel {

/// Settings in memory, and also in a file if one is named. The file has one line per value:
/// section, key and text, separated by tabs, with backslash, LF and tab written as "\\", "\n" and
/// "\t".
class ScriptSettings {
  public:
    /// Reads the file at `path`, if any; a file that cannot be read counts as empty. Write then
    /// updates the file, and raises 75 when it cannot.
    explicit ScriptSettings(std::string path = "") { Load(std::move(path)); }
    void Load(std::string path);
    std::string Read(const std::string& section, const std::string& key,
                     const std::string& fallback) const;
    void Write(const std::string& section, const std::string& key, const std::string& text);

  private:
    std::string Path{};
    std::map<std::pair<std::string, std::string>, std::string> Values;
};

/// The answer to a folder chooser.
struct FolderAnswer {
    enum class Button { kOk, kCancel, kCloseBox } Pressed = Button::kCancel;
    std::string Path{};  ///< the folder chosen before OK
};

/// Thrown when a file dialog is shown and no answer is queued.
struct NoAnswer {};

/// A desktop without a screen, for one window: it answers dialogs from queues and forwards message
/// boxes. TheHost refers to it, so it must exist as long as the window is used.
class ScriptedDesktop {
  public:
    /// Fills TheHost. `showBox` is called with title and text of each message box.
    ScriptedDesktop(formTessel& form, ScriptSettings& settings,
                    std::function<void(const std::string&, const std::string&)> showBox);

    std::deque<std::optional<std::string>> Files;   ///< nullopt is Cancel
    std::deque<std::optional<std::string>> Inputs;  ///< nullopt is Cancel; so is an empty queue
    std::deque<FolderAnswer> Folders;               ///< an empty queue is Cancel
    long StopAt = 0;  ///< the number of DoEvents calls until STOP is pressed; 0 for never
    /// Called at each DoEvents.
    std::function<void()> OnEvents{};
    std::optional<CommonDialog> LastDialog;  ///< the last file dialog, as the program set it
    bool Ended = false;                      ///< the program has ended
    bool Hourglass = false;
    long DoEventsCount = 0;  ///< calls so far

  private:
    void AnswerFile(CommonDialog& dialog);
    void AnswerFolder();
    void ProcessEvents();

    formTessel& Form;
};

}  // namespace tessel
