#include "platform/windows/hostErrors.h"

#include <windows.h>

namespace tessel {
namespace {

/// Some compilers' headers do not define its name.
constexpr DWORD kDiskQuotaExceeded = 1295;

}  // namespace

void RaiseHostError(unsigned long hostError) {
    switch (hostError) {
        case ERROR_FILE_NOT_FOUND:
            Raise(kFileNotFound);
        case ERROR_PATH_NOT_FOUND:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
            Raise(kPathNotFound);
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            Raise(kFileAlreadyExists);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            Raise(kDiskFull);
        case ERROR_NOT_ENOUGH_QUOTA:
        case kDiskQuotaExceeded:
            Raise(kDiskFull, "The user's disk quota is used up.");
        case ERROR_FILE_TOO_LARGE:
            Raise(kDiskFull, "The file exceeds the host's size limit.");
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            Raise(kPermissionDenied);
        case ERROR_INVALID_HANDLE:
            Raise(kBadFileNumber);
        case ERROR_INVALID_NAME:
            Raise(kPathFileAccessError, "The file system does not allow this name.");
        case ERROR_FILENAME_EXCED_RANGE:
            Raise(kPathFileAccessError, "The path, or a name in it, is too long for the host.");
        case ERROR_WRITE_PROTECT:
            Raise(kPathFileAccessError, "The file system is read-only.");
        case ERROR_TOO_MANY_OPEN_FILES:
            Raise(kPathFileAccessError, "Too many files are open.");
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            Raise(kOutOfMemory);
        case ERROR_CRC:
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_NOT_READY:
        case ERROR_IO_DEVICE:
            Raise(kDeviceIoError);
        default:  // ERROR_ACCESS_DENIED and similar
            Raise(kPathFileAccessError);
    }
}

std::wstring WideText(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

std::string NarrowText(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

}  // namespace tessel
