#include "platform/posix/hostErrors.h"

#include <cerrno>

#include "platform/hostFiles.h"

namespace tessel {

void RaiseHostError(int hostError) {
    switch (hostError) {
        case ENOENT:
            Raise(kFileNotFound);
        case ENOTDIR:
            Raise(kPathNotFound);
        case EEXIST:
        case ENOTEMPTY:
            Raise(kFileAlreadyExists);
        case ENOSPC:
            Raise(kDiskFull);
        case EDQUOT:
            Raise(kDiskFull, "The user's disk quota is used up.");
        case EFBIG:
            Raise(kDiskFull, "The file exceeds the host's size limit.");
        case EBUSY:
        case ETXTBSY:
            Raise(kPermissionDenied);
        case EBADF:
            Raise(kBadFileNumber);
        case ENAMETOOLONG:
            Raise(kPathFileAccessError, "The path, or a name in it, is too long for the host.");
        case EROFS:
            Raise(kPathFileAccessError, "The file system is read-only.");
        case EMFILE:
        case ENFILE:
            Raise(kPathFileAccessError, "Too many files are open.");
        case ENOMEM:
            Raise(kOutOfMemory);
        case EIO:
        case ENODEV:
        case ESTALE:
        case ETIMEDOUT:
            Raise(kDeviceIoError);
        default:  // EACCES, EPERM, EISDIR, ELOOP, ENXIO and similar
            Raise(kPathFileAccessError);
    }
}

void RaiseOpenError(int hostError, const char* path) {
    if (hostError == ENOENT) {
        const std::string folder = FolderOf(path);
        if (!folder.empty() && !FolderExists(folder)) Raise(kPathNotFound);
    }
    RaiseHostError(hostError);
}

}  // namespace tessel
