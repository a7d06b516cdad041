#pragma once

#include <chrono>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

#include "drive/scriptedDesktop.h"

namespace tessel {

/// Runs commands, one per line, on the real window with a scripted desktop. Blank lines and lines
/// that begin with "#" are ignored.
class Script {
  public:
    /// Prints message boxes and the output of commands to `out`, and errors in lines to `errors`.
    /// All three references must outlive the script.
    Script(std::ostream& out, std::ostream& errors, ScriptSettings& settings);

    /// Runs lines until the stream or the program ends. Returns false, with a line on the error
    /// stream, after a line that is not a command, a file dialog without a queued answer, or a line
    /// number outside the list.
    bool Run(std::istream& lines);
    /// Runs one line; returns as Run does.
    bool RunLine(const std::string& line);
    /// Ends the program as the main window does when it is closed.
    void Finish() { Form.Form_Unload(); }

    formTessel Form;
    ScriptedDesktop Desktop;

  private:
    bool Fail(const std::string& line, const std::string& reason);
    bool ChooseMenu(const std::string& caption);
    bool PressButton(const std::string& caption);
    bool ChooseOption(const std::string& caption);
    bool ClickLine(const std::string& number, bool doubleClick);
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
