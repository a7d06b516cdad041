#pragma once

#include <chrono>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

#include "drive/scriptedDesktop.h"

namespace tessel {

/// Runs commands, one a line, on the real window in front of a scripted desk. Blank lines and lines
/// that begin with "#" are passed over.
class Script {
  public:
    Script(std::ostream& out, std::ostream& errors, ScriptSettings& settings);

    /// Runs lines until the stream or the program ends. False after a line that is not a command, a
    /// file dialog that no answer was queued for, or a line number outside the list; a line on the
    /// error stream tells.
    bool Run(std::istream& lines);
    /// Runs one line.
    bool RunLine(const std::string& line);
    /// Ends the program as its window would.
    void Finish() { Form.Form_Unload(); }

    formTessel Form;
    ScriptedDesktop Desktop;

  private:
    bool Refuse(const std::string& line, const std::string& why);
    bool ChooseMenu(const std::string& caption);
    bool PressButton(const std::string& caption);
    bool ChooseOption(const std::string& caption);
    bool ClickLine(const std::string& number, bool twice);
    bool Show(const std::string& what);
    void ShowLabels();
    void ShowEnabled();
    void ShowDialog();
    void Clock();

    std::ostream& Out;
    std::ostream& Errors;
    std::chrono::steady_clock::time_point LastClock = std::chrono::steady_clock::now();
};

}  // namespace tessel
