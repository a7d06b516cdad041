#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "drive/script.h"

/// tessel-drive [--settings FILE] [SCRIPT...]: the window without a screen, worked by commands from
/// the scripts, or from standard input.
int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    std::vector<std::string> words(argv + 1, argv + argc);
    tessel::ScriptSettings settings;
    if (words.size() >= 2 && words[0] == "--settings") {
        settings.Load(std::filesystem::absolute(words[1]).string());
        words.erase(words.begin(), words.begin() + 2);
    }

    // A script may change the process's folder.
    std::vector<std::filesystem::path> files;
    files.reserve(words.size());
    for (const std::string& word : words) files.push_back(std::filesystem::absolute(word));

    const auto script = std::make_unique<tessel::Script>(std::cout, std::cerr, settings);
    bool good = true;
    for (std::size_t i = 0; good && i < words.size() && !script->Desktop.Ended; ++i) {
        std::ifstream file(files[i]);
        good = file.is_open();
        if (!good) std::cerr << "tessel-drive: cannot read " << words[i] << '\n';
        if (good) good = script->Run(file);
    }
    if (words.empty()) good = script->Run(std::cin);
    script->Finish();
    std::cout.flush();
    return good ? 0 : 2;
}
