#include "platform/numberedFiles.h"

#include <windows.h>
#include <winioctl.h>

#include <algorithm>
#include <map>
#include <optional>

#include "platform/windows/hostErrors.h"
#include "platform/windows/openFiles.h"

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

void WriteAll(HANDLE file, std::span<const Byte> bytes) {
    constexpr std::size_t kMaxAtOnce = 1 << 30;
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMaxAtOnce));
        DWORD count = 0;
        if (::WriteFile(file, bytes.data(), wanted, &count, nullptr) == 0) {
            RaiseHostError(GetLastError());
        }
        if (count == 0) Raise(kDiskFull);
        bytes = bytes.subspan(count);
    }
}

}  // namespace

void RefuseUsedNumber(int number) {
    if (OpenFiles().contains(number)) Raise(kFileAlreadyOpen);
}

void AddFileForWriting(int number, void* handle) { OpenFiles()[number] = handle; }

void OpenForReading(int number, const std::string& path) {
    RefuseUsedNumber(number);
    if (path.empty() || path.find('\0') != std::string::npos) Raise(kBadFileNumber);
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(WideText(path).c_str(), GENERIC_READ, kShareAll, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD hostError = GetLastError();
        const DWORD attributes = GetFileAttributesW(WideText(path).c_str());
        const bool folder =
            attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        RaiseHostError(folder ? ERROR_ACCESS_DENIED : hostError);
    }
    // A pipe or a console has no byte offsets.
    if (GetFileType(file) != FILE_TYPE_DISK) {
        CloseHandle(file);
        Raise(kPathFileAccessError);
    }
    OpenFiles()[number] = file;
}

void CloseFile(int number) {
    const auto file = OpenFiles().find(number);
    if (file == OpenFiles().end()) return;
    HANDLE closing = file->second;
    OpenFiles().erase(file);
    if (CloseHandle(closing) == 0) RaiseHostError(GetLastError());
}

void AbandonFile(int number) {
    try {
        CloseFile(number);
    } catch (const RuntimeError&) {
        return;
    }
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

std::int64_t CheckFileUpTo(int, std::int64_t, std::int64_t) { return 0; }
std::int64_t ShareFileUpTo(int, std::int64_t, std::int64_t, int) { return 0; }

void WriteFile(int number, std::span<const Byte> bytes) { WriteAll(HandleOf(number), bytes); }

std::function<void(std::span<const Byte>)> WriterOf(int number) {
    return std::bind_front(WriteAll, HandleOf(number));
}

bool SetModificationTime(int number, const LocalTime& time) {
    const auto word = [](int value) { return static_cast<WORD>(value); };
    const SYSTEMTIME local = {
        word(time.Year),   word(time.Month),  0, word(time.Day), word(time.Hour),
        word(time.Minute), word(time.Second), 0};
    SYSTEMTIME universal{};
    FILETIME moment{};
    return TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal) != 0 &&
           SystemTimeToFileTime(&universal, &moment) != 0 &&
           SetFileTime(HandleOf(number), nullptr, nullptr, &moment) != 0;
}

FileIdentity IdentityOf(int number) {
    const auto identity = IdentityOfHandle(HandleOf(number));
    if (!identity) Raise(kDeviceIoError);
    return *identity;
}

bool IsOpenFile(const FileIdentity& file) {
    return std::any_of(OpenFiles().begin(), OpenFiles().end(),
                       [&](const auto& open) { return IdentityOfHandle(open.second) == file; });
}

}  // namespace tessel
