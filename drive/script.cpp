#include "drive/script.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iomanip>
#include <vector>

#include "drive/peakMemory.h"
#include "platform/hostFiles.h"

namespace tessel {
namespace {

/// Writes CR and LF as \r and \n, so that a text stays on one line.
std::string OnOneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        if (c == '\r')
            line += "\\r";
        else if (c == '\n')
            line += "\\n";
        else
            line += c;
    }
    return line;
}

/// Parses a non-negative integer; returns false for any other text.
bool ParseCount(const std::string& text, long& value) {
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec == std::errc{} && parsed.ptr == end && value >= 0;
}

std::vector<Button*> Buttons(formTessel& form) {
    return {&form.cmdABORT, &form.cmdDirectory, &form.cmdDisplayBootSector, &form.cmdFat0,
            &form.cmdRoot};
}

}  // namespace

Script::Script(std::ostream& out, std::ostream& errors, ScriptSettings& settings)
    : Desktop(Form, settings,
              [&out](const std::string& title, const std::string& text) {
                  out << "box\t" << OnOneLine(title) << '\t' << OnOneLine(text) << '\n';
              }),
      Out(out),
      Errors(errors) {
    Form.Form_Load();
    Form.Form.Resize();
}

bool Script::Run(std::istream& lines) {
    std::string line;
    while (!Desktop.Ended && std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!RunLine(line)) return false;
    }
    return true;
}

bool Script::Fail(const std::string& line, const std::string& reason) {
    Errors << "tessel-drive: " << reason << ": " << line << '\n';
    return false;
}

bool Script::RunLine(const std::string& line) {
    if (line.find_first_not_of(" \t") == line.npos || line[0] == '#') return true;
    const std::size_t blank = line.find(' ');
    const std::string verb = line.substr(0, blank);
    const std::string rest = blank == line.npos ? "" : line.substr(blank + 1);
    const std::optional<std::string> answer = rest.empty() ? std::nullopt : std::optional(rest);
    try {
        bool known = true;
        if (verb == "file")
            Desktop.Files.push_back(answer);
        else if (verb == "input")
            Desktop.Inputs.push_back(answer);
        else if (verb == "folder" && answer)
            Desktop.Folders.push_back({FolderAnswer::Button::kOk, rest});
        else if (verb == "folder")
            Desktop.Folders.push_back({FolderAnswer::Button::kCancel, ""});
        else if (line == "folder-close")
            Desktop.Folders.push_back({FolderAnswer::Button::kCloseBox, ""});
        else if (verb == "menu")
            known = ChooseMenu(rest);
        else if (verb == "press")
            known = PressButton(rest);
        else if (verb == "choose")
            known = ChooseOption(rest);
        else if (verb == "stop-at")
            known = ParseCount(rest, Desktop.StopAt);
        else if (verb == "show")
            known = Show(rest);
        else if (line == "clock")
            Clock();
        else if (verb == "select" || verb == "double") {
            return ClickLine(rest, verb == "double") || Fail(line, "no such list line");
        } else
            known = false;
        return known || Fail(line, "not a command");
    } catch (const NoAnswer&) {
        return Fail(line, "a file dialog with no answer queued");
    }
}

bool Script::ChooseMenu(const std::string& caption) {
    for (Menu* menu : {&Form.mnuFile, &Form.mnuOptions}) {
        for (MenuEntry& entry : menu->Entries) {
            if (entry.IsSeparator() || entry.Caption != caption) continue;
            RaiseEvent(menu->Click);
            if (!entry.Enabled) Out << "disabled " << caption << '\n';
            entry.Press();
            return true;
        }
    }
    return false;
}

bool Script::PressButton(const std::string& caption) {
    for (Button* button : Buttons(Form)) {
        if (button->Caption != caption) continue;
        if (!button->Enabled) Out << "disabled " << caption << '\n';
        button->Press();
        return true;
    }
    return false;
}

bool Script::ChooseOption(const std::string& caption) {
    for (OptionButton& option : Form.optDisplay) {
        if (option.Caption != caption) continue;
        if (!option.Enabled) Out << "disabled " << caption << '\n';
        option.Press();
        return true;
    }
    return false;
}

bool Script::ClickLine(const std::string& number, bool doubleClick) {
    long line = 0;
    if (!ParseCount(number, line) || line >= Form.listDIR.Count()) return false;
    if (doubleClick) {
        Form.listDIR.DoubleClickLine(static_cast<int>(line));
    } else {
        Form.listDIR.ClickLine(static_cast<int>(line));
    }
    return true;
}

bool Script::Show(const std::string& what) {
    if (what == "display") {
        Form.rtfDisplay.Text.WriteTo(
            [this](const PageText& part, bool) { Out.write(part.data(), std::ssize(part)); });
    } else if (what == "list") {
        for (int line = 0; line < Form.listDIR.Count(); ++line) {
            Out << (line == Form.listDIR.ListIndex() ? ">" : "") << Form.listDIR.ItemData(line)
                << '\t' << Form.listDIR.Text(line) << '\n';
        }
    } else if (what == "labels") {
        ShowLabels();
    } else if (what == "enabled") {
        ShowEnabled();
    } else if (what == "offsets") {
        for (const InputChoice& line : Form.OffsetChoices()) {
            Out << line.Text << (line.Enabled ? "" : "\toff") << '\n';
        }
    } else if (what == "dialog") {
        ShowDialog();
    } else {
        return false;
    }
    return true;
}

void Script::ShowLabels() {
    const bool blue = Form.lblSystemID.Colour == TextColour::kBlue;
    Out << "lblVolumeID\t" << Form.lblVolumeID.Caption.Get() << '\n'
        << "lblSystemID\t" << Form.lblSystemID.Caption.Get() << (blue ? "\tblue" : "") << '\n'
        << "lblDirectory\t" << Form.lblDirectory.Caption.Get() << '\n'
        << "lblVersion\t" << Form.lblVersion.Caption.Get() << '\n'
        << "caption\t" << Form.Form.Caption.Get() << '\n';
}

void Script::ShowEnabled() {
    const auto print = [this](const std::string& name, bool enabled) {
        Out << name << '\t' << (enabled ? "on" : "off") << '\n';
    };
    for (const Button* button : Buttons(Form)) print(button->Name, button->Enabled);
    for (const OptionButton& option : Form.optDisplay) print(option.Name, option.Enabled);
    print(Form.listDIR.Name, Form.listDIR.Enabled);
    for (const Menu* menu : {&Form.mnuFile, &Form.mnuOptions}) {
        for (const MenuEntry& entry : menu->Entries) {
            if (!entry.IsSeparator()) print(entry.Name, entry.Enabled);
        }
    }
}

void Script::ShowDialog() {
    const CommonDialog dialog = Desktop.LastDialog.value_or(CommonDialog{});
    Out << "title\t" << dialog.Title << '\n'
        << "filter\t" << dialog.Filter << '\n'
        << "defaultExtension\t" << dialog.DefaultExt << '\n'
        << "filterIndex\t" << dialog.FilterIndex << '\n'
        << "startFolder\t" << dialog.InitDir << '\n'
        << "fileName\t" << dialog.FileName << '\n'
        << "flags\t" << dialog.Flags << '\n';
}

void Script::Clock() {
    Out.flush();
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double> seconds = now - LastClock;
    Errors << std::fixed << std::setprecision(6) << seconds.count() << ' ' << std::setprecision(1)
           << PeakMemoryMiB() << '\n';
    LastClock = std::chrono::steady_clock::now();
}

}  // namespace tessel
