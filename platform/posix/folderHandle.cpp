#include "platform/folderHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <utility>

#include "platform/hostFiles.h"
#include "platform/posix/hostErrors.h"
#include "platform/posix/openFiles.h"

namespace tessel {
namespace {

// Search permission is enough to work in a folder.
#if defined(O_PATH)
constexpr int kOpenFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;
#elif defined(O_SEARCH)
constexpr int kOpenFolder = O_SEARCH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

int DescriptorOf(std::intptr_t handle) { return static_cast<int>(handle); }

FileIdentity IdentityOf(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
}

EntryKind KindOf(const struct stat& target, bool isLink, const std::string& name) {
    if (S_ISREG(target.st_mode)) {
        return name.starts_with('.') ? EntryKind::kHiddenFile : EntryKind::kFile;
    }
    if (isLink) return EntryKind::kLink;
    return S_ISDIR(target.st_mode) ? EntryKind::kFolder : EntryKind::kOther;
}

/// Raises the error of a call that creates an entry in `folder`.
[[noreturn]] void RaiseCreateError(int hostError, const std::string& folder) {
    switch (hostError) {
        case ENOENT:
            Raise(kPathNotFound, "The folder no longer exists: " + folder);
        case EACCES:
        case EPERM:
            Raise(kPathFileAccessError, "The folder is not writable: " + folder);
        case EINVAL:
        case EILSEQ:
            Raise(kPathFileAccessError, "The file system does not allow this name.");
        default:
            RaiseHostError(hostError);
    }
}

/// Raises the error of a call that deletes or replaces an entry in `folder`.
[[noreturn]] void RaiseDeleteError(int hostError, const std::string& folder) {
    if (hostError == EACCES || hostError == EPERM) {
        Raise(kPathFileAccessError, "No permission to delete files in this folder: " + folder);
    }
    RaiseHostError(hostError);
}

}  // namespace

std::optional<FileIdentity> IdentityAt(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return IdentityOf(status);
}

std::optional<FileIdentity> IdentityOfDescriptor(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) return std::nullopt;
    return IdentityOf(status);
}

FolderHandle::FolderHandle(const std::string& path)
    : OwnPath(path), Handle(open(path.empty() ? "." : path.c_str(), kOpenFolder)) {
    if (Handle >= 0) return;
    if (errno == ENOENT) Raise(kPathNotFound);
    if (errno == ENOTDIR) Raise(kPathNotFound, "A part of the path is a file, not a folder.");
    RaiseHostError(errno);
}

FolderHandle::FolderHandle(const FolderHandle& parent, const std::string& name)
    : OwnPath(JoinPath(parent.OwnPath, name)) {
    parent.RefuseLongPath(name);
    Handle = openat(DescriptorOf(parent.Handle), name.c_str(), kOpenFolder | O_NOFOLLOW);
    if (Handle >= 0) return;
    const int hostError = errno;
    if (hostError == ENOENT) Raise(kPathNotFound);
    if (hostError == ENOTDIR || hostError == ELOOP) {
        // A folder that has the name again was exchanged for a link while it was opened.
        const FolderEntry entry = parent.Look(name);
        const bool link = entry.IsLink || entry.Kind == EntryKind::kFolder;
        Raise(kFileAlreadyExists, (link ? "A symbolic link has the name of the folder: "
                                        : "A file has the name of the folder: ") +
                                      OwnPath);
    }
    RaiseHostError(hostError);
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept
    : OwnPath(std::move(other.OwnPath)), Handle(std::exchange(other.Handle, -1)) {}

FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept {
    std::swap(OwnPath, other.OwnPath);
    std::swap(Handle, other.Handle);
    return *this;
}

FolderHandle::~FolderHandle() {
    if (Handle >= 0) close(DescriptorOf(Handle));
}

FileIdentity FolderHandle::Identity() const {
    const auto identity = IdentityOfDescriptor(DescriptorOf(Handle));
    if (!identity) RaiseHostError(errno);
    return *identity;
}

void FolderHandle::MakeCurrent() const {
    if (fchdir(DescriptorOf(Handle)) == 0) return;
    if (errno == EACCES)
        Raise(kPathFileAccessError, "No permission to enter the folder: " + OwnPath);
    RaiseHostError(errno);
}

FolderEntry FolderHandle::Look(const std::string& name) const {
    const int folder = DescriptorOf(Handle);
    struct stat status {};
    if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return {};
    FolderEntry entry = {EntryKind::kNothing, S_ISLNK(status.st_mode), IdentityOf(status),
                         IdentityOf(status)};
    struct stat target = status;
    if (entry.IsLink && fstatat(folder, name.c_str(), &target, 0) == 0) {
        entry.Target = IdentityOf(target);
    }
    entry.Kind = KindOf(target, entry.IsLink, name);
    return entry;
}

void FolderHandle::CreateFolder(const std::string& name) const {
    RefuseLongPath(name);
    if (mkdirat(DescriptorOf(Handle), name.c_str(), 0777) != 0) RaiseCreateError(errno, OwnPath);
}

void FolderHandle::CreateFile(int number, const std::string& name) const {
    RefuseUsedNumber(number);
    RefuseLongPath(name);
    // Otherwise a write past a file-size limit would end the program instead of failing.
    static const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    static_cast<void>(previous);
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = openat(DescriptorOf(Handle), name.c_str(), flags, 0666);
    if (descriptor < 0) RaiseCreateError(errno, OwnPath);
    AddFileForWriting(number, descriptor);
}

void FolderHandle::Rename(const std::string& from, const std::string& to) const {
    const int folder = DescriptorOf(Handle);
    if (renameat(folder, from.c_str(), folder, to.c_str()) != 0) RaiseDeleteError(errno, OwnPath);
}

void FolderHandle::DeleteFile(const std::string& name) const {
    if (unlinkat(DescriptorOf(Handle), name.c_str(), 0) != 0) RaiseDeleteError(errno, OwnPath);
}

void FolderHandle::RefuseLongPath(const std::string& name) const {
    if (name.empty() || name.find('\0') != name.npos) Raise(kBadFileNumber);
    // Relative to an open folder the host accepts any path length, but no program could open the
    // path.
    if (JoinPath(OwnPath, name).size() >= PATH_MAX) RaiseHostError(ENAMETOOLONG);
}

}  // namespace tessel
