#include "platform/names.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/hostFiles.h"

namespace tessel {
namespace {

constexpr std::size_t kMaxName = 255;
constexpr std::size_t kMaxExtension = 16;

/// Whether `c` is a byte of a UTF-8 character except its first.
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Replaces control characters and the characters in `refused` by "_". The control characters 80 to
/// 9F are two bytes in UTF-8, the first of which is C2.
std::string Replaced(const std::string& name, std::string_view refused) {
    std::string safe;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        const bool pair =
            c == 0xC2 && i + 1 < name.size() && static_cast<unsigned char>(name[i + 1]) < 0xA0;
        const bool bad = c < 32 || c == 127 || pair || refused.find(name[i]) != refused.npos;
        safe += bad ? '_' : name[i];
        if (pair) ++i;
    }
    return safe;
}

/// The extension of `name` with its dot; "" when it is too long to be kept or the whole name.
std::string ShortExtension(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    return name.size() - dot <= kMaxExtension ? name.substr(dot) : "";
}

/// `name` with `inserted` before its short extension, shortened there, at a character boundary, to
/// at most kMaxName bytes.
std::string Shortened(const std::string& name, const std::string& inserted = "") {
    const std::string extension = ShortExtension(name);
    const std::size_t stem = name.size() - extension.size();
    std::size_t length = std::min(stem, kMaxName - extension.size() - inserted.size());
    while (length > 0 && length < stem && IsContinuation(name[length])) --length;
    return name.substr(0, length) + inserted + extension;
}

bool IsDeviceName(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                          "NUL", "CONIN$", "CONOUT$"};
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
           stem[3] >= '0' && stem[3] <= '9';
}

std::string WithoutDotNames(const std::string& name) {
    if (name.empty()) return "_";
    if (name == "." || name == "..") return std::string(name.size(), '_');
    return name;
}

}  // namespace

std::string SafePosixName(const std::string& name) {
    return WithoutDotNames(Shortened(Replaced(name, "/")));
}

std::string SafeWindowsName(const std::string& name) {
    std::string safe = Shortened(Replaced(name, "<>:\"/\\|?*"));
    if (IsDeviceName(safe)) safe = Shortened("_" + safe);
    // Windows drops trailing blanks and dots, and would use another file.
    for (auto c = safe.rbegin(); c != safe.rend() && (*c == ' ' || *c == '.'); ++c) *c = '_';
    return WithoutDotNames(safe);
}

std::string NumberedName(const std::string& safeName, std::int64_t number) {
    return Shortened(safeName, " (" + std::to_string(number) + ")");
}

std::string FolderOf(const std::string& path) {
#ifdef _WIN32
    const std::size_t last = path.find_last_of("\\/");
#else
    const std::size_t last = path.rfind(FolderSeparator());
#endif
    return last == std::string::npos ? "" : path.substr(0, last + 1);
}

std::string FileTitleOf(const std::string& path) { return path.substr(FolderOf(path).size()); }

std::string JoinPath(const std::string& folder, const std::string& name) {
    const bool closed = !folder.empty() && FolderOf(folder) == folder;
    return folder + (closed || folder.empty() ? "" : std::string(1, FolderSeparator())) + name;
}

}  // namespace tessel
