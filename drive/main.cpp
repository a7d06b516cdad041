#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "drive/script.h"
#include "platform/process.h"

/// tessel-drive [--settings FILE] [SCRIPT...]: runs the window without a screen, driven by the
/// commands in the scripts, or on standard input when there is none. Exits with 0, or with 2 when a
/// script cannot be read or a command is invalid.
int main(int argc, char** argv) {
    tessel::PrepareProcess();
    std::ios::sync_with_stdio(false);
    std::vector<std::string> words(argv + 1, argv + argc);
    tessel::ScriptSettings settings;
    if (words.size() >= 2 && words[0] == "--settings") {
        settings.Load(std::filesystem::absolute(words[1]).string());
        words.erase(words.begin(), words.begin() + 2);
    }

    // Paths are resolved now: a command may change the process's current folder.
    std::vector<std::filesystem::path> files;
    files.reserve(words.size());
    for (const std::string& word : words) files.push_back(std::filesystem::absolute(word));

    const auto script = std::make_unique<tessel::Script>(std::cout, std::cerr, settings);
    bool ok = true;
    for (std::size_t i = 0; ok && i < words.size() && !script->Desktop.Ended; ++i) {
        std::ifstream file(files[i]);
        ok = file.is_open();
        if (!ok) std::cerr << "tessel-drive: cannot read " << words[i] << '\n';
        if (ok) ok = script->Run(file);
    }
    if (words.empty()) ok = script->Run(std::cin);
    script->Finish();
    std::cout.flush();
    return ok ? 0 : 2;
}
