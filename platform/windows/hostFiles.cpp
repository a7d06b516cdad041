#include "platform/hostFiles.h"

#include <windows.h>

#include <ctime>

#include "platform/names.h"
#include "platform/windows/hostErrors.h"

// The host's headers define a macro of this name.
#undef DeleteFile

namespace tessel {
namespace {

DWORD Attributes(const std::string& path) { return GetFileAttributesW(WideText(path).c_str()); }

}  // namespace

char FolderSeparator() { return '\\'; }

std::string SafeName(const std::string& name) { return SafeWindowsName(name); }

std::string CurrentFolder() {
    std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return NarrowText(folder);
}

void ChangeFolder(const std::string& path) {
    if (SetCurrentDirectoryW(WideText(path).c_str()) != 0) return;
    const DWORD hostError = GetLastError();
    if (hostError == ERROR_FILE_NOT_FOUND) Raise(kPathNotFound);
    RaiseHostError(hostError);
}

void CreateFolder(const std::string& path) {
    if (CreateDirectoryW(WideText(path).c_str(), nullptr) == 0) RaiseHostError(GetLastError());
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FolderCanBeListed(const std::string& path) {
    WIN32_FIND_DATAW entry{};
    HANDLE search = FindFirstFileW(WideText(JoinPath(path, "*")).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return FolderExists(path) && GetLastError() == ERROR_FILE_NOT_FOUND;
    FindClose(search);
    return true;
}

bool IsRealFolder(const std::string& path) { return FolderExists(path) && !IsLink(path); }

bool IsLink(const std::string& path) {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool VisibleFileExists(const std::string& path) {
    constexpr DWORD kPassedOver =
        FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & kPassedOver) == 0;
}

void DeleteFile(const std::string& path) {
    if (DeleteFileW(WideText(path).c_str()) == 0) RaiseHostError(GetLastError());
}

bool SetModificationTime(const std::string& path, const LocalTime& time) {
    const auto word = [](int value) { return static_cast<WORD>(value); };
    const SYSTEMTIME local = {
        word(time.Year),   word(time.Month),  0, word(time.Day), word(time.Hour),
        word(time.Minute), word(time.Second), 0};
    SYSTEMTIME universal{};
    FILETIME moment{};
    if (TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal) == 0) return false;
    if (SystemTimeToFileTime(&universal, &moment) == 0) return false;
    HANDLE file = CreateFileW(WideText(path).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                              nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool set = SetFileTime(file, nullptr, nullptr, &moment) != 0;
    CloseHandle(file);
    return set;
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
