#include "dialogs/settings.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/host.h"

namespace tessel {

void RefreshSettings() {
    if (TheHost.Settings.Refresh) TheHost.Settings.Refresh();
}

std::string ReadPath(const std::string& key) {
    return TheHost.Settings.Read(kPathsSection, key, "");
}

void WritePath(const std::string& key, const std::string& folder) {
    TheHost.Settings.Write(kPathsSection, key, folder);
}

float ReadPosition(const char* key, float fallback) {
    const std::string text = TheHost.Settings.Read(kSaveAllSection, key, "");
    float value = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    const bool number = parsed.ec == std::errc{} && parsed.ptr == end && std::isfinite(value);
    return number ? value : fallback;
}

void WritePosition(const char* key, float value) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    TheHost.Settings.Write(kSaveAllSection, key, {text.data(), end});
}

}  // namespace tessel
