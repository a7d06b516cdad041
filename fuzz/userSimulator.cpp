#include "fuzz/userSimulator.h"

#include <algorithm>
#include <memory>

#include "dialogs/modFile.h"
#include "drive/resetVolume.h"
#include "fuzz/memoryHost.h"
#include "fuzz/offsetChecks.h"
#include "platform/hostFiles.h"
#include "volume/modDisks.h"

namespace tessel {
namespace {

/// Limits: steps for one image, lines and levels tried, and how often a step may process events,
/// about every 8 ms, before STOP is pressed.
constexpr int kMaxSteps = 60;
constexpr int kMaxLines = 12;
constexpr int kMaxDepth = 3;
constexpr long kEventsBeforeStop = 2;
constexpr std::int64_t kWholeText = std::int64_t{32} * 1024;

bool IsDirectoryLine(const std::string& text) { return text.starts_with('['); }

}  // namespace

UserSimulator::UserSimulator(bool savesAnywhere) : SavesAnywhere(savesAnywhere) {
    memory::Reset();
    ResetVolume();
    RecentPaths = {};
    Program = std::make_unique<Script>(Out, Out, Settings);
    Program->Desktop.OnEvents = [this] {
        if (--EventsLeft > 0) return;
        Program->Form.cmdABORT.Press();
        if (!Busy) Program->Form.mnuClose.Press();  // Close ends Save Display
    };
}

UserSimulator::~UserSimulator() {
    Program->Finish();
    ResetVolume();
    TheHost = {};
}

void UserSimulator::Do(const std::string& scriptLine) {
    EventsLeft = kEventsBeforeStop;
    ++Steps;
    Out.str("");
    // A file dialog without a queued answer is cancelled.
    auto& answers = Program->Desktop.Files;
    const bool unanswered = answers.empty();
    if (unanswered) answers.emplace_back();
    Program->RunLine(scriptLine);
    if (unanswered && !answers.empty()) answers.pop_front();
    CheckWindow();
}

void UserSimulator::Open(const std::string& path) {
    Steps = 0;
    Do("file " + path);
    Do("menu Open");
    CheckOffsetLines(Program->Form.OffsetChoices());
}

void UserSimulator::OpenOffered(const std::string& path) {
    const std::vector<InputChoice> lines = Program->Form.OffsetChoices();
    if (lines.size() < 2 || !lines[1].Enabled) return;
    Do("menu Close");
    Do("input " + lines[1].Value);
    Do("menu Offset");
    Open(path);
    Do("show list");
}

void UserSimulator::CheckWindow() {
    formTessel& form = Program->Form;
    Require(!Busy, "not busy after a command");
    Require(!form.VolumeOpen || Drives[1].IsOpen, "an image is open while a volume is listed");
    Require(form.VolumeOpen || form.listDIR.Count() == 0, "the list is empty without a volume");
    Require(form.listDIR.ListIndex() < form.listDIR.Count(), "the selected line is in the list");
    Require(form.DirDepth >= 0 && form.DirDepth < 512, "the level is within the stack");
    Require(!Program->Desktop.Hourglass, "the normal pointer after each command");
    CheckText();
    if (!SavesAnywhere) CheckCreatedPaths();
}

void UserSimulator::CheckCreatedPaths() const {
    const std::string chosen = std::string(memory::kChosen) + FolderSeparator();
    for (const std::string& created : memory::CreatedPaths()) {
        Require(created.starts_with(chosen), "everything is created below the chosen folder");
        const std::string name = created.substr(chosen.size());
        Require(std::all_of(name.begin(), name.end(), [](unsigned char c) { return c >= 32; }),
                "no control character in a name");
        Require(('/' + name + '/').find("/../") == name.npos, "no path contains ..");
    }
}

void UserSimulator::CheckText() const {
    const TextDisplay& text = Program->Form.rtfDisplay.Text;
    const std::int64_t size = text.Size();
    const std::int64_t lines = text.LineCount();
    Require(size >= 0 && lines >= 1, "a size of 0 or more, and at least one line");
    for (const std::int64_t line : {std::int64_t{0}, lines / 2, lines - 1}) {
        const TextOffset start = text.LineStart(line);
        const TextOffset end = text.LineEnd(line);
        Require(start >= 0 && start <= end && end <= size, "a line lies within the text");
        Require(text.LineAt(start) == line, "LineAt is the inverse of LineStart");
        Require(std::ssize(text.Text(start, 4096)) == std::min<std::int64_t>(4096, size - start),
                "Text returns as many bytes as there are");
    }
    if (size > kWholeText) return;

    const std::string whole = text.Text();
    Require(std::ssize(whole) == size, "the whole text has the length Size()");
    std::string parts;
    text.WriteTo([&parts](const PageText& part, bool) { parts.append(part.begin(), part.end()); });
    Require(parts == whole, "WriteTo writes the whole text");
    std::string joined;
    const std::int64_t step = std::max<std::int64_t>(100, lines / 50);
    for (std::int64_t line = 0; line < lines; line += step) joined += text.Lines(line, step);
    Require(joined == whole, "Lines returns the whole text");
    for (TextOffset at = 0; at < size; at += 997) {
        Require(text.Text(at, 61) == whole.substr(static_cast<std::size_t>(at), 61),
                "Text returns a part of the whole text");
    }
}

void UserSimulator::TryEntry(int line) {
    for (const char* mode : {"File info", "Display", "Dump"}) {
        Do(std::string("choose ") + mode);
        Do("select " + std::to_string(line));
    }
    Do(std::string("file ") + memory::kChosen + FolderSeparator() + "one");
    Do("menu Save File");
}

void UserSimulator::EnterDirectories(int depth) {
    ListBox& list = Program->Form.listDIR;
    for (int line = 0; line < std::min(list.Count(), kMaxLines); ++line) {
        if (Steps >= kMaxSteps) return;
        TryEntry(line);
    }
    Do(std::string("folder ") + memory::kChosen);
    Do("menu Save Directory");
    if (depth == kMaxDepth) return;
    for (int line = 0; line < std::min(list.Count(), kMaxLines); ++line) {
        if (Steps >= kMaxSteps || !IsDirectoryLine(list.Text(line))) continue;
        const Long level = Program->Form.DirDepth;
        Do("double " + std::to_string(line));
        if (Program->Form.DirDepth > level) EnterDirectories(depth + 1);
        // Back through "..", if the directory has one.
        for (int up = 0; up < std::min(list.Count(), kMaxLines); ++up) {
            if (!list.Text(up).starts_with("[..")) continue;
            Do("double " + std::to_string(up));
            break;
        }
    }
}

void UserSimulator::TryEverything() {
    for (const char* button : {"Boot Sector", "FAT0", "Root", "Directory"}) {
        Do(std::string("press ") + button);
        Do(std::string("file ") + memory::kChosen + FolderSeparator() + "text");
        Do("menu Save Display");
    }
    EnterDirectories(0);
    Do("show enabled");
    Do("show labels");
}

}  // namespace tessel
