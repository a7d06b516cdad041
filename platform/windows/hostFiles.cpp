#include "platform/hostFiles.h"

#include <windows.h>

#include "platform/names.h"
#include "platform/windows/hostErrors.h"

namespace tessel {
char FolderSeparator() { return '\\'; }

std::string SafeName(const std::string& name) { return SafeWindowsName(name); }

std::string CurrentFolder() {
    std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return NarrowText(folder);
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(WideText(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FolderCanBeListed(const std::string& path) {
    WIN32_FIND_DATAW entry{};
    HANDLE search = FindFirstFileW(WideText(JoinPath(path, "*")).c_str(), &entry);
    const DWORD hostError = search == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
    if (hostError == ERROR_SUCCESS) return FindClose(search) != 0;
    // The root of an empty drive has no entries, not even "." and "..".
    return hostError == ERROR_FILE_NOT_FOUND && FolderExists(path);
}

std::vector<std::string> HostDrives() {
    std::vector<std::string> drives;
    const DWORD present = GetLogicalDrives();
    for (int i = 0; i < 26; ++i) {
        if ((present >> i & 1) != 0)
            drives.push_back(std::string(1, static_cast<char>('a' + i)) + ":");
    }
    if (drives.empty()) drives.emplace_back("c:");
    return drives;
}

std::string DriveOf(const std::string& path) {
    if (path.size() < 2 || path[1] != ':') return "";
    for (const std::string& drive : HostDrives()) {
        if (drive[0] == (path[0] | 0x20)) return drive;
    }
    return "";
}

std::string DriveRoot(const std::string& drive) { return drive.substr(0, 2) + "\\"; }

}  // namespace tessel
