#include "platform/numberedFiles.h"

#include <windows.h>
#include <winioctl.h>

#include <algorithm>
#include <map>
#include <optional>

#include "platform/windows/hostErrors.h"

namespace tessel {
namespace {

std::map<int, HANDLE>& OpenFiles() {
    static std::map<int, HANDLE> files;
    return files;
}

HANDLE HandleOf(int number) {
    const auto file = OpenFiles().find(number);
    if (file == OpenFiles().end()) Raise(kBadFileNumber);
    return file->second;
}

HANDLE Create(int number, const std::string& path, DWORD access, DWORD disposition, DWORD flags) {
    if (OpenFiles().contains(number)) Raise(kFileAlreadyOpen);
    if (path.empty() || path.find('\0') != std::string::npos) Raise(kBadFileNumber);
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(WideText(path).c_str(), access,
                              access == GENERIC_READ ? kShare : FILE_SHARE_READ, nullptr,
                              disposition, flags, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD hostError = GetLastError();
        const DWORD attributes = GetFileAttributesW(WideText(path).c_str());
        const bool folder =
            attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        RaiseHostError(folder ? ERROR_ACCESS_DENIED : hostError);
    }
    // A pipe or a console has no positions to read at.
    if (GetFileType(file) != FILE_TYPE_DISK) {
        CloseHandle(file);
        Raise(kPathFileAccessError);
    }
    return file;
}

/// What tells a file from every other; nothing when it cannot be opened.
std::optional<BY_HANDLE_FILE_INFORMATION> Identity(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION identity{};
    if (GetFileInformationByHandle(file, &identity) == 0) return std::nullopt;
    return identity;
}

std::optional<BY_HANDLE_FILE_INFORMATION> Identity(const std::string& path) {
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(WideText(path).c_str(), 0, kShare, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return std::nullopt;
    const auto identity = Identity(file);
    CloseHandle(file);
    return identity;
}

bool IsSame(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other) {
    return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

void WriteAll(HANDLE file, std::span<const Byte> bytes) {
    constexpr std::size_t kMostAtOnce = 1 << 30;
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
        DWORD count = 0;
        if (::WriteFile(file, bytes.data(), wanted, &count, nullptr) == 0) {
            RaiseHostError(GetLastError());
        }
        if (count == 0) Raise(kDiskFull);
        bytes = bytes.subspan(count);
    }
}

}  // namespace

void OpenForReading(int number, const std::string& path) {
    OpenFiles()[number] = Create(number, path, GENERIC_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
}

void OpenForWriting(int number, const std::string& path) {
    OpenFiles()[number] = Create(number, path, GENERIC_WRITE, CREATE_NEW,
                                 FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT);
}

void CloseFile(int number) {
    const auto file = OpenFiles().find(number);
    if (file == OpenFiles().end()) return;
    HANDLE closing = file->second;
    OpenFiles().erase(file);
    if (CloseHandle(closing) == 0) RaiseHostError(GetLastError());
}

void CloseAllFiles() {
    for (const auto& [number, file] : OpenFiles()) CloseHandle(file);
    OpenFiles().clear();
}

bool FileIsOpen(int number) { return OpenFiles().contains(number); }

std::int64_t FileLength(int number) {
    LARGE_INTEGER size{};
    if (GetFileSizeEx(HandleOf(number), &size) != 0) return size.QuadPart;
    // A whole drive has no file size, but the medium has a length.
    GET_LENGTH_INFORMATION medium{};
    DWORD got = 0;
    if (DeviceIoControl(HandleOf(number), IOCTL_DISK_GET_LENGTH_INFO, nullptr, 0, &medium,
                        sizeof medium, &got, nullptr) == 0) {
        RaiseHostError(GetLastError());
    }
    return medium.Length.QuadPart;
}

void ReadFile(int number, std::int64_t offset, std::span<Byte> bytes) {
    HandleOf(number);
    if (offset < 0 || offset > kLastFileOffset) Raise(kOverflow);
    if (ReadFileUpTo(number, offset, bytes) < bytes.size()) Raise(kDeviceIoError);
}

std::size_t ReadFileUpTo(int number, std::int64_t offset, std::span<Byte> bytes) {
    std::size_t good = 0;
    if (FileIsOpen(number) && offset >= 0) {
        HANDLE file = HandleOf(number);
        while (good < bytes.size() && offset <= kLastFileOffset) {
            const auto wanted = static_cast<DWORD>(std::min<std::int64_t>(
                static_cast<std::int64_t>(bytes.size() - good), kLastFileOffset + 1 - offset));
            OVERLAPPED position{};
            position.Offset = static_cast<DWORD>(offset);
            DWORD count = 0;
            const bool read = ::ReadFile(file, bytes.data() + good, wanted, &count, &position) != 0;
            if (!read && GetLastError() != ERROR_HANDLE_EOF) break;
            // Bytes past the end of the file are zeros.
            if (count == 0) std::fill_n(bytes.data() + good, wanted, Byte{0});
            const DWORD got = count == 0 ? wanted : count;
            good += got;
            offset += got;
        }
    }
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(good), bytes.end(), Byte{0});
    return good;
}

void WriteFile(int number, std::span<const Byte> bytes) { WriteAll(HandleOf(number), bytes); }

std::function<void(std::span<const Byte>)> WriterOf(int number) {
    return std::bind_front(WriteAll, HandleOf(number));
}

bool IsOpenFile(const std::string& path) {
    const auto asked = Identity(path);
    if (!asked) return false;
    for (const auto& [number, file] : OpenFiles()) {
        const auto held = Identity(file);
        if (held && IsSame(*asked, *held)) return true;
    }
    return false;
}

bool IsSameFile(const std::string& path, const std::string& other) {
    const auto one = Identity(path);
    const auto two = Identity(other);
    return one && two && IsSame(*one, *two);
}

}  // namespace tessel
