#include "platform/folderHandle.h"

#include <windows.h>
// Must follow windows.h.
#include <winternl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/hostFiles.h"
#include "platform/windows/hostErrors.h"
#include "platform/windows/openFiles.h"

// The host's headers define macros of these names.
#undef DeleteFile
#undef CreateFile

extern "C" NTSTATUS NTAPI NtSetInformationFile(HANDLE file, PIO_STATUS_BLOCK status, PVOID data,
                                               ULONG size, FILE_INFORMATION_CLASS what);

namespace tessel {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
/// Without FILE_SHARE_DELETE, no program can rename or delete the folder while it is open.
constexpr DWORD kShareFolder = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD kFolderAccess =
    FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
constexpr ULONG kOpenFolder = FILE_DIRECTORY_FILE | FILE_SYNCHRONOUS_IO_NONALERT;
constexpr ULONG kOpenItself = FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT;

HANDLE HandleOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

/// Closes a handle on destruction.
class ScopedHandle {
  public:
    explicit ScopedHandle(HANDLE handle) : Handle(handle) {}
    ~ScopedHandle() {
        if (Handle != INVALID_HANDLE_VALUE) CloseHandle(Handle);
    }
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;
    explicit operator bool() const { return Handle != INVALID_HANDLE_VALUE; }
    operator HANDLE() const { return Handle; }  // NOLINT(google-explicit-constructor)

  private:
    HANDLE Handle;
};

/// The arguments of opening an entry.
struct OpenMode {
    DWORD Access;
    DWORD Share;
    ULONG Disposition;  ///< FILE_OPEN or FILE_CREATE
    ULONG Options;
};

/// Opens an entry relative to an open folder. Returns INVALID_HANDLE_VALUE on an error, which is
/// then the last error.
HANDLE OpenRelative(std::intptr_t folder, const std::string& name, const OpenMode& mode) {
    std::wstring wide = WideText(name);
    const auto bytes = static_cast<USHORT>(wide.size() * sizeof(wchar_t));
    UNICODE_STRING text = {bytes, bytes, wide.data()};
    OBJECT_ATTRIBUTES entry{};
    InitializeObjectAttributes(&entry, &text, OBJ_CASE_INSENSITIVE, HandleOf(folder), nullptr);
    IO_STATUS_BLOCK done{};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS status =
        NtCreateFile(&handle, mode.Access, &entry, &done, nullptr, FILE_ATTRIBUTE_NORMAL,
                     mode.Share, mode.Disposition, mode.Options, nullptr, 0);
    if (status >= 0) return handle;
    SetLastError(RtlNtStatusToDosError(status));
    return INVALID_HANDLE_VALUE;
}

std::optional<BY_HANDLE_FILE_INFORMATION> Information(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileInformationByHandle(file, &information) == 0) return std::nullopt;
    return information;
}

FileIdentity IdentityOf(const BY_HANDLE_FILE_INFORMATION& information) {
    return {information.dwVolumeSerialNumber,
            std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
}

/// Whether an open entry is a link to another one: a symbolic link, a junction, a mount point.
bool IsLinkHandle(HANDLE file) {
    FILE_ATTRIBUTE_TAG_INFO tag{};
    return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &tag, sizeof tag) != 0 &&
           (tag.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(tag.ReparseTag);
}

EntryKind KindOf(DWORD attributes, bool isLink) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return isLink ? EntryKind::kLink : EntryKind::kFolder;
    }
    const bool hidden = (attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) != 0;
    return hidden ? EntryKind::kHiddenFile : EntryKind::kFile;
}

[[noreturn]] void RaiseCreateError(DWORD hostError, const std::string& folder) {
    if (hostError == ERROR_FILE_NOT_FOUND || hostError == ERROR_PATH_NOT_FOUND) {
        Raise(kPathNotFound, "The folder no longer exists: " + folder);
    }
    if (hostError == ERROR_ACCESS_DENIED) {
        Raise(kPathFileAccessError, "The folder is not writable: " + folder);
    }
    RaiseHostError(hostError);
}

[[noreturn]] void RaiseDeleteError(DWORD hostError, const std::string& folder) {
    if (hostError == ERROR_ACCESS_DENIED) {
        Raise(kPathFileAccessError, "No permission to delete files in this folder: " + folder);
    }
    RaiseHostError(hostError);
}

}  // namespace

std::optional<FileIdentity> IdentityOfHandle(void* handle) {
    const auto information = Information(handle);
    if (!information) return std::nullopt;
    return IdentityOf(*information);
}

std::optional<FileIdentity> IdentityAt(const std::string& path) {
    const ScopedHandle file(CreateFileW(WideText(path).c_str(), 0, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file ? IdentityOfHandle(file) : std::nullopt;
}

FolderHandle::FolderHandle(const std::string& path)
    : OwnPath(path),
      Handle(reinterpret_cast<std::intptr_t>(
          CreateFileW(WideText(path.empty() ? "." : path).c_str(), kFolderAccess, kShareFolder,
                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr))) {
    if (Handle == -1) {
        const DWORD hostError = GetLastError();
        if (hostError == ERROR_FILE_NOT_FOUND) Raise(kPathNotFound);
        RaiseHostError(hostError);
    }
    const auto information = Information(HandleOf(Handle));
    if (information && (information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return;
    CloseHandle(HandleOf(Handle));
    Raise(kPathNotFound, "A part of the path is a file, not a folder.");
}

FolderHandle::FolderHandle(const FolderHandle& parent, const std::string& name)
    : OwnPath(JoinPath(parent.OwnPath, name)) {
    parent.RefuseLongPath(name);
    Handle = reinterpret_cast<std::intptr_t>(OpenRelative(
        parent.Handle, name, {kFolderAccess, kShareFolder, FILE_OPEN, kOpenFolder | kOpenItself}));
    const DWORD hostError = Handle == -1 ? GetLastError() : ERROR_SUCCESS;
    if (hostError == ERROR_FILE_NOT_FOUND) Raise(kPathNotFound);
    if (hostError != ERROR_SUCCESS && hostError != ERROR_DIRECTORY) RaiseHostError(hostError);
    const bool link = hostError == ERROR_SUCCESS && IsLinkHandle(HandleOf(Handle));
    if (hostError == ERROR_SUCCESS && !link) return;
    if (Handle != -1) CloseHandle(HandleOf(Handle));
    Raise(kFileAlreadyExists, (link ? "A symbolic link has the name of the folder: "
                                    : "A file has the name of the folder: ") +
                                  OwnPath);
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept
    : OwnPath(std::move(other.OwnPath)), Handle(std::exchange(other.Handle, -1)) {}

FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept {
    std::swap(OwnPath, other.OwnPath);
    std::swap(Handle, other.Handle);
    return *this;
}

FolderHandle::~FolderHandle() {
    if (Handle != -1) CloseHandle(HandleOf(Handle));
}

FileIdentity FolderHandle::Identity() const {
    const auto identity = IdentityOfHandle(HandleOf(Handle));
    if (!identity) RaiseHostError(GetLastError());
    return *identity;
}

void FolderHandle::MakeCurrent() const {
    // The path is safe: it cannot change while the folder is open.
    if (SetCurrentDirectoryW(WideText(OwnPath).c_str()) == 0) RaiseHostError(GetLastError());
}

FolderEntry FolderHandle::Look(const std::string& name) const {
    const OpenMode look = {FILE_READ_ATTRIBUTES | SYNCHRONIZE, kShareAll, FILE_OPEN, kOpenItself};
    const ScopedHandle file(OpenRelative(Handle, name, look));
    const auto information = file ? Information(file) : std::nullopt;
    if (!information) return {};
    const FileIdentity identity = IdentityOf(*information);
    const bool isLink = IsLinkHandle(file);
    FolderEntry entry = {KindOf(information->dwFileAttributes, isLink), isLink, identity, identity};
    if (isLink) {
        const ScopedHandle target(OpenRelative(
            Handle, name,
            {look.Access, look.Share, look.Disposition, FILE_SYNCHRONOUS_IO_NONALERT}));
        const auto led = target ? Information(target) : std::nullopt;
        if (led) entry.Target = IdentityOf(*led);
        if (!led) entry.Kind = EntryKind::kLink;
    }
    return entry;
}

void FolderHandle::CreateFolder(const std::string& name) const {
    RefuseLongPath(name);
    const ScopedHandle folder(OpenRelative(
        Handle, name, {FILE_READ_ATTRIBUTES | SYNCHRONIZE, kShareAll, FILE_CREATE, kOpenFolder}));
    if (!folder) RaiseCreateError(GetLastError(), OwnPath);
}

void FolderHandle::CreateFile(int number, const std::string& name) const {
    RefuseUsedNumber(number);
    RefuseLongPath(name);
    // FILE_SHARE_DELETE allows renaming the file while it is open.
    HANDLE file = OpenRelative(Handle, name,
                               {FILE_GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                FILE_CREATE, FILE_NON_DIRECTORY_FILE | kOpenItself});
    if (file == INVALID_HANDLE_VALUE) RaiseCreateError(GetLastError(), OwnPath);
    AddFileForWriting(number, file);
}

void FolderHandle::Rename(const std::string& from, const std::string& to) const {
    const ScopedHandle file(
        OpenRelative(Handle, from, {DELETE | SYNCHRONIZE, kShareAll, FILE_OPEN, kOpenItself}));
    if (!file) RaiseDeleteError(GetLastError(), OwnPath);
    const std::wstring name = WideText(to);
    const std::size_t bytes = name.size() * sizeof(wchar_t);
    std::vector<FILE_RENAME_INFO> room(2 + bytes / sizeof(FILE_RENAME_INFO));
    FILE_RENAME_INFO& target = room.front();
    target.ReplaceIfExists = TRUE;
    target.RootDirectory = HandleOf(Handle);
    target.FileNameLength = static_cast<DWORD>(bytes);
    std::copy(name.begin(), name.end(), target.FileName);
    constexpr auto kRename = static_cast<FILE_INFORMATION_CLASS>(10);  // FileRenameInformation
    IO_STATUS_BLOCK done{};
    const NTSTATUS status = NtSetInformationFile(
        file, &done, &target, static_cast<ULONG>(sizeof target + bytes), kRename);
    if (status < 0) RaiseDeleteError(RtlNtStatusToDosError(status), OwnPath);
}

void FolderHandle::DeleteFile(const std::string& name) const {
    const ScopedHandle file(OpenRelative(
        Handle, name,
        {DELETE | SYNCHRONIZE, kShareAll, FILE_OPEN, FILE_NON_DIRECTORY_FILE | kOpenItself}));
    FILE_DISPOSITION_INFO gone{TRUE};
    if (!file || SetFileInformationByHandle(file, FileDispositionInfo, &gone, sizeof gone) == 0) {
        RaiseDeleteError(GetLastError(), OwnPath);
    }
}

void FolderHandle::RefuseLongPath(const std::string& name) const {
    if (name.empty() || name.find('\0') != name.npos) Raise(kBadFileNumber);
    // Relative to an open folder the host accepts any path length, but most programs could not open
    // the path.
    if (WideText(JoinPath(OwnPath, name)).size() >= MAX_PATH) {
        RaiseHostError(ERROR_FILENAME_EXCED_RANGE);
    }
}

}  // namespace tessel
