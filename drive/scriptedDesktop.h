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

/// Settings that live in memory, and in a file when one is named: a line a value, section, key and
/// text with a tab between, "\" "n" and "t" behind a "\".
class ScriptSettings {
  public:
    /// With a path, what the file holds is read now and every write goes to it. A file that cannot
    /// be read holds nothing; one that cannot be written raises.
    explicit ScriptSettings(std::string path = "") { Load(std::move(path)); }
    void Load(std::string path);
    std::string Read(const std::string& section, const std::string& key,
                     const std::string& fallback) const;
    void Write(const std::string& section, const std::string& key, const std::string& text);

  private:
    std::string Path{};
    std::map<std::pair<std::string, std::string>, std::string> Values;
};

/// How the next folder chooser is answered.
struct FolderAnswer {
    enum class How { kOk, kCancel, kCloseBox } Answer = How::kCancel;
    std::string Path{};
};

/// A file dialog came up and nobody had said how to answer it.
struct NoAnswer {};

/// A desk without a screen: it answers dialogs with what was queued, and hands message boxes on.
/// While it lives it stands as TheHost for one window.
class ScriptedDesktop {
  public:
    /// Fills TheHost. `showBox` gets each message box (title, text) when it appears.
    ScriptedDesktop(formTessel& form, ScriptSettings& settings,
                    std::function<void(const std::string&, const std::string&)> showBox);

    std::deque<std::optional<std::string>> Files;   ///< nullopt is Cancel
    std::deque<std::optional<std::string>> Inputs;  ///< nullopt is Cancel; so is an empty queue
    std::deque<FolderAnswer> Folders;               ///< an empty queue is Cancel
    long StopAt = 0;  ///< STOP is pressed at this many lettings-in of events from now; 0 never
    /// What else happens at every letting-in of events.
    std::function<void()> OnEvents{};
    std::optional<CommonDialog> LastDialog;  ///< as the program had set it
    bool Ended = false;                      ///< the program has ended
    bool Hourglass = false;
    long DoEventsCount = 0;

  private:
    void AnswerFile(CommonDialog& dialog);
    void AnswerFolder();
    void ProcessEvents();

    formTessel& Form;
};

}  // namespace tessel
