#include "tests/hostTools.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

#include "platform/windows/hostErrors.h"

namespace {

struct FileId {
    DWORD Volume = 0, High = 0, Low = 0;
    auto operator<=>(const FileId&) const = default;
};

FileId IdOf(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION facts{};
    if (GetFileInformationByHandle(file, &facts) == 0) return {};
    return {facts.dwVolumeSerialNumber, facts.nFileIndexHigh, facts.nFileIndexLow};
}

struct {
    FileId File{};
    std::int64_t From = 0, To = 0;
} TheBadPart;
std::int64_t TheFullSize = INT64_MAX;
bool NothingOpens = false;
std::map<HANDLE, DWORD> TheAccess;

template <class Function>
Function* HostFunction(const char* name) {
    HMODULE library = GetModuleHandleW(L"kernel32.dll");
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

BOOL WINAPI Read(HANDLE file, void* buffer, DWORD count, DWORD* got, OVERLAPPED* at) {
    static auto* const host = HostFunction<decltype(::ReadFile)>("ReadFile");
    const std::int64_t offset = at == nullptr ? 0 : at->Offset;
    const bool touched =
        offset < TheBadPart.To && offset + count > TheBadPart.From && IdOf(file) == TheBadPart.File;
    if (touched && offset >= TheBadPart.From) return SetLastError(ERROR_CRC), 0;
    if (touched) count = static_cast<DWORD>(TheBadPart.From - offset);
    return host(file, buffer, count, got, at);
}

BOOL WINAPI Write(HANDLE file, const void* buffer, DWORD count, DWORD* done, OVERLAPPED* at) {
    static auto* const host = HostFunction<decltype(::WriteFile)>("WriteFile");
    LARGE_INTEGER size{};
    if (TheFullSize != INT64_MAX && GetFileSizeEx(file, &size) != 0) {
        if (size.QuadPart >= TheFullSize) return SetLastError(ERROR_FILE_TOO_LARGE), 0;
        count = static_cast<DWORD>(std::min<std::int64_t>(count, TheFullSize - size.QuadPart));
    }
    return host(file, buffer, count, done, at);
}

HANDLE WINAPI Open(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE like) {
    static auto* const host = HostFunction<decltype(::CreateFileW)>("CreateFileW");
    if (NothingOpens) return SetLastError(ERROR_TOO_MANY_OPEN_FILES), INVALID_HANDLE_VALUE;
    HANDLE file = host(path, access, share, security, disposition, flags, like);
    if (file != INVALID_HANDLE_VALUE) TheAccess[file] = access;
    return file;
}

}  // namespace

// The import pointers of these functions: the linker takes these instead of the host's.
decltype(&::ReadFile) TheRead __asm__("__imp_ReadFile") = Read;
decltype(&::WriteFile) TheWrite __asm__("__imp_WriteFile") = Write;
decltype(&::CreateFileW) TheOpen __asm__("__imp_CreateFileW") = Open;

namespace tessel {

void FailReads(const std::string& path, std::size_t from, std::size_t to) {
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file =
        CreateFileW(WideText(path).c_str(), 0, kShare, nullptr, OPEN_EXISTING, 0, nullptr);
    TheBadPart = {IdOf(file), static_cast<std::int64_t>(from), static_cast<std::int64_t>(to)};
    CloseHandle(file);
}

void StopFailingReads() { TheBadPart = {}; }

FullDisk::FullDisk(std::int64_t bytes) { TheFullSize = bytes; }
FullDisk::~FullDisk() { TheFullSize = INT64_MAX; }

SharedExtents::SharedExtents() = default;
SharedExtents::~SharedExtents() = default;
SharedExtents::operator bool() const { return false; }
std::int64_t SharedExtents::Bytes() { return 0; }

NoHandles::NoHandles() { NothingOpens = true; }
NoHandles::~NoHandles() { NothingOpens = false; }

OrdinaryUser::OrdinaryUser() = default;
OrdinaryUser::~OrdinaryUser() = default;

bool MakePipe(const std::string&) { return false; }

bool MakeLink(const std::string& target, const std::string& path) {
    constexpr DWORD kUnprivileged = 2;
    const DWORD attributes = GetFileAttributesW(WideText(target).c_str());
    const bool folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    CreateSymbolicLinkW(WideText(path).c_str(), WideText(target).c_str(),
                        kUnprivileged | (folder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0));
    const DWORD made = GetFileAttributesW(WideText(path).c_str());
    // Wine reports success without creating a link.
    return made != INVALID_FILE_ATTRIBUTES && (made & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

void Hide(const std::string& path) {
    SetFileAttributesW(WideText(path).c_str(), FILE_ATTRIBUTE_HIDDEN);
}

std::string ModifiedAt(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA facts{};
    SYSTEMTIME universal{}, t{};
    if (GetFileAttributesExW(WideText(path).c_str(), GetFileExInfoStandard, &facts) == 0) return "";
    FileTimeToSystemTime(&facts.ftLastWriteTime, &universal);
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &t);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", t.wYear, t.wMonth,
                  t.wDay, t.wHour, t.wMinute, t.wSecond);
    return text.data();
}

bool IsOpenForReadingOnly(const std::string& path) {
    const std::wstring wanted = WideText(path);
    for (const auto& [file, access] : TheAccess) {
        std::wstring name(MAX_PATH, L'\0');
        name.resize(GetFinalPathNameByHandleW(file, name.data(), MAX_PATH, 0));
        if (name.ends_with(wanted) && access == GENERIC_READ) return true;
    }
    return false;
}

}  // namespace tessel
