#include "drive/scriptedDesktop.h"

#include <fstream>

#include "platform/hostFiles.h"

namespace tessel {
namespace {

std::string Escaped(const std::string& text) {
    std::string line;
    for (const char c : text) {
        if (c == '\\')
            line += "\\\\";
        else if (c == '\n')
            line += "\\n";
        else if (c == '\t')
            line += "\\t";
        else
            line += c;
    }
    return line;
}

std::string Unescaped(const std::string& line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\' || i + 1 == line.size()) {
            text += line[i];
            continue;
        }
        ++i;
        text += line[i] == 'n' ? '\n' : line[i] == 't' ? '\t' : line[i];
    }
    return text;
}

}  // namespace

void ScriptSettings::Load(std::string path) {
    Path = std::move(path);
    Values.clear();
    if (Path.empty()) return;
    std::ifstream file(Path, std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t first = line.find('\t');
        const std::size_t second = line.find('\t', first + 1);
        if (first == line.npos || second == line.npos) continue;
        Values[{Unescaped(line.substr(0, first)),
                Unescaped(line.substr(first + 1, second - first - 1))}] =
            Unescaped(line.substr(second + 1));
    }
}

std::string ScriptSettings::Read(const std::string& section, const std::string& key,
                                 const std::string& fallback) const {
    const auto value = Values.find({section, key});
    return value == Values.end() ? fallback : value->second;
}

void ScriptSettings::Write(const std::string& section, const std::string& key,
                           const std::string& text) {
    Values[{section, key}] = text;
    if (Path.empty()) return;
    std::ofstream file(Path, std::ios::binary | std::ios::trunc);
    for (const auto& [name, value] : Values) {
        file << Escaped(name.first) << '\t' << Escaped(name.second) << '\t' << Escaped(value)
             << '\n';
    }
    if (!file.flush()) Raise(kPathFileAccessError);
}

ScriptedDesktop::ScriptedDesktop(
    formTessel& form, ScriptSettings& settings,
    std::function<void(const std::string&, const std::string&)> showBox)
    : Form(form) {
    TheHost = {
        .MessageBox =
            [showBox = std::move(showBox)](const std::string& text, const std::string& title) {
                if (showBox) showBox(title, text);
            },
        .InputBox =
            [this](const std::string&, const std::string&, const std::string&,
                   const std::vector<InputChoice>&) {
                if (Inputs.empty()) return std::string();
                std::string answer = Inputs.front().value_or("");
                Inputs.pop_front();
                return answer;
            },
        .ShowOpen = [this](CommonDialog& dialog) { AnswerFile(dialog); },
        .ShowSave = [this](CommonDialog& dialog) { AnswerFile(dialog); },
        .ShowModal = [this](Window&) { AnswerFolder(); },
        .DoEvents = [this] { ProcessEvents(); },
        .SetPointer = [this](bool hourglass) { Hourglass = hourglass; },
        .EndProgram = [this] { Ended = true; },
        .Settings =
            {
                .Read =
                    [&settings](const std::string& section, const std::string& key,
                                const std::string& fallback) {
                        return settings.Read(section, key, fallback);
                    },
                .Write = [&settings](
                             const std::string& section, const std::string& key,
                             const std::string& text) { settings.Write(section, key, text); },
            }};
}

void ScriptedDesktop::AnswerFile(CommonDialog& dialog) {
    LastDialog = dialog;
    if (Files.empty()) throw NoAnswer{};
    const std::optional<std::string> answer = Files.front();
    Files.pop_front();
    if (!answer) Raise(kCancelled);
    dialog.FileName = *answer;
    dialog.FileTitle = FileTitleOf(*answer);
}

void ScriptedDesktop::AnswerFolder() {
    FolderAnswer answer;
    if (!Folders.empty()) {
        answer = Folders.front();
        Folders.pop_front();
    }
    dialogGetDirectory& chooser = *Form.Chooser;
    if (answer.Pressed == FolderAnswer::Button::kCloseBox) {
        RaiseEvent(chooser.Form.CloseBox);
    } else if (answer.Pressed == FolderAnswer::Button::kCancel) {
        chooser.CancelButton.Press();
    } else {
        const std::string folder =
            FolderOf(answer.Path).empty() ? JoinPath(CurrentFolder(), answer.Path) : answer.Path;
        try {
            chooser.dirDirBox.SetPath(folder);
            chooser.OKButton.Press();
        } catch (const RuntimeError&) {
            // Behave as if the folder was deleted after the user chose it.
            chooser.OKButton.Press();
            chooser.DirName = folder;
        }
    }
}

void ScriptedDesktop::ProcessEvents() {
    ++DoEventsCount;
    if (OnEvents) OnEvents();
    if (StopAt > 0 && --StopAt == 0) Form.cmdABORT.Press();
}

}  // namespace tessel
