#include "platform/posix/hostErrors.h"

#include <sys/stat.h>

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
        case EDQUOT:
        case EFBIG:
            Raise(kDiskFull);
        case EBUSY:
        case ETXTBSY:
            Raise(kPermissionDenied);
        case ENAMETOOLONG:
        case EILSEQ:
        case EBADF:
            Raise(kBadFileNumber);
        case ENOMEM:
            Raise(kOutOfMemory);
        case EIO:
        case ENODEV:
        case ESTALE:
        case ETIMEDOUT:
            Raise(kDeviceIoError);
        default:  // EACCES, EPERM, EROFS, EISDIR, ELOOP, ENXIO, EMFILE and similar
            Raise(kPathFileAccessError);
    }
}

void RaiseOpenError(int hostError, const char* path) {
    struct stat status {};
    if (hostError == ENOENT) {
        const std::string folder = FolderOf(path);
        if (!folder.empty() && !FolderExists(folder)) Raise(kPathNotFound);
    }
    if (hostError == EEXIST && lstat(path, &status) == 0 && S_ISDIR(status.st_mode)) {
        Raise(kPathFileAccessError);
    }
    RaiseHostError(hostError);
}

}  // namespace tessel
