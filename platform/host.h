#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/runtimeError.h"

namespace tessel {

/// The flags of the common file dialog, as far as the program uses them.
enum FileDialogFlag : Long {
    kOverwritePrompt = 0x2,
    kHideReadOnly = 0x4,
    kPathMustExist = 0x800,
    kFileMustExist = 0x1000,
    kNoReadOnlyReturn = 0x8000,
    kLongNames = 0x200000,
};

/// The settings and the result of the common file dialog, kept between uses.
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
    /// in: returns a sentence that says why no file can be saved at `path`, "" when it can
    std::function<std::string(const std::string& path)> Refusal{};
};

/// The user's settings, kept between runs: text values by section and key.
struct SettingsStore {
    /// Returns the stored text, or `fallback` when none is stored.
    std::function<std::string(const std::string& section, const std::string& key,
                              const std::string& fallback)>
        Read;
    /// Stores `text`. Raises the host's error when it cannot.
    std::function<void(const std::string& section, const std::string& key, const std::string& text)>
        Write;
    /// Reads the store again, as other programs may have left it; called once per dialog.
    std::function<void()> Refresh{};
};

/// A line in the drop-down list of an input box.
struct InputChoice {
    std::string Value{};  ///< the text that choosing it enters
    std::string Text{};   ///< how it is listed
    bool Enabled = true;  ///< whether it can be chosen
};

/// The services of the desktop that the program runs on. main.cpp implements them with the toolkit;
/// the driver and the tests use a scripted desktop.
struct Host {
    /// Shows a modal message box and returns when the user closes it.
    std::function<void(const std::string& text, const std::string& title)> MessageBox{};
    /// Asks the user for a text, with `text` as the initial value. Returns "" after Cancel. With
    /// `choices`, the text line is an editable drop-down that lists them; the result is the text in
    /// the line, typed or chosen.
    std::function<std::string(const std::string& prompt, const std::string& title,
                              const std::string& text, const std::vector<InputChoice>& choices)>
        InputBox;
    /// Shows the file dialog for opening or for saving. Fills FileName and FileTitle; Cancel raises
    /// 32755 when CancelError is set and leaves FileName empty when it is not.
    std::function<void(CommonDialog& dialog)> ShowOpen{};
    std::function<void(CommonDialog& dialog)> ShowSave{};
    /// Shows a modal window and returns when its Visible is false again.
    std::function<void(Window& window)> ShowModal{};
    /// Processes pending events.
    std::function<void()> DoEvents{};
    /// Shows the hourglass pointer, or the usual one.
    std::function<void(bool hourglass)> SetPointer{};
    /// Shows which fraction of a long operation is done, 0 to 1; nullopt hides the display.
    std::function<void(std::optional<double> fraction)> ShowProgress{};
    /// Ends the program when the current event handler has returned.
    std::function<void()> EndProgram{};

    SettingsStore Settings{};
};

/// The desktop of this process.
extern Host TheHost;

/// Processes pending events during a long operation, at most about every 8 ms: often enough for a
/// responsive window, and cheap enough to be called for each cluster.
class EventPump {
  public:
    /// Processes pending events on the first call, and then when 8 ms have passed since they were
    /// last processed.
    void Process();

  private:
    std::chrono::steady_clock::time_point Last{};
};

/// The progress of a long operation, shown by the host as long as this object exists. Objects nest:
/// each is destroyed before the one that was created before it.
class Progress {
  public:
    /// `total` is the number of steps, in any unit (bytes, files). With `hasParts`, a nested
    /// Progress measures a part of the next step, as the bytes of one file among the files of a
    /// directory. Without it, a nested Progress is an unrelated operation that was started while
    /// events were processed, and shows its own fraction.
    explicit Progress(std::int64_t total, bool hasParts = false);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Shows that `done` steps of the total are done.
    void Show(std::int64_t done);

  private:
    double Fraction(double steps) const;

    Progress* Outer;
    std::int64_t Total;
    bool HasParts;
    std::int64_t Done = 0;
};

}  // namespace tessel
