#undef _FORTIFY_SOURCE  // or this file could not hold these functions
#include "tests/posix/hostFaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace {

std::string TheCall;
int TheCountdown = 0;
bool TheCallFailed = false;

bool Fails(const char* call) {
    if (TheCall != call || --TheCountdown != 0) return false;
    TheCallFailed = true;
    errno = EIO;
    return true;
}

}  // namespace

// These take precedence over the host's.
extern "C" {
int openat(int folder, const char* name, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
    va_end(more);
    if (Fails("openat")) return -1;
    return static_cast<int>(syscall(SYS_openat, folder, name, flags, mode));
}
int mkdirat(int folder, const char* name, mode_t mode) {
    return Fails("mkdirat") ? -1 : static_cast<int>(syscall(SYS_mkdirat, folder, name, mode));
}
int fstatat(int folder, const char* name, struct stat* status, int flags) noexcept {
    if (Fails("fstatat")) return -1;
    return static_cast<int>(syscall(SYS_newfstatat, folder, name, status, flags));
}
int fstat(int file, struct stat* status) noexcept {
    return Fails("fstat") ? -1 : static_cast<int>(syscall(SYS_fstat, file, status));
}
int renameat(int folder, const char* from, int other, const char* to) noexcept {
    if (Fails("renameat")) return -1;
    return static_cast<int>(syscall(SYS_renameat, folder, from, other, to));
}
int unlinkat(int folder, const char* name, int flags) noexcept {
    return Fails("unlinkat") ? -1 : static_cast<int>(syscall(SYS_unlinkat, folder, name, flags));
}
ssize_t write(int file, const void* bytes, size_t count) {
    return Fails("write") ? -1 : syscall(SYS_write, file, bytes, count);
}
int close(int file) {
    const int result = static_cast<int>(syscall(SYS_close, file));
    return Fails("close") ? -1 : result;
}
int futimens(int file, const timespec times[2]) noexcept {
    if (Fails("futimens")) return -1;
    return static_cast<int>(syscall(SYS_utimensat, file, nullptr, times, 0));
}
int fchdir(int folder) noexcept {
    return Fails("fchdir") ? -1 : static_cast<int>(syscall(SYS_fchdir, folder));
}
}

namespace tessel {

HostFault::HostFault(const std::string& call, int nth) {
    TheCall = call;
    TheCountdown = nth;
    TheCallFailed = false;
}
HostFault::~HostFault() { TheCall.clear(); }
bool HostFault::Happened() { return TheCallFailed; }

}  // namespace tessel
