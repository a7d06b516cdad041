#undef _FORTIFY_SOURCE  // it prevents defining pread here
#include "tests/hostTools.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <ctime>
#include <filesystem>
#include <vector>

namespace {

struct {
    ino_t File = 0;
    off_t From = 0, To = 0;
} TheBadPart;

std::int64_t BytesShared = -1;  // -1: the host decides

/// How many of `count` bytes a read gets: 0 where it fails.
size_t Readable(int descriptor, size_t count, off_t offset) {
    struct stat status {};
    const bool touched = offset < TheBadPart.To &&
                         offset + static_cast<off_t>(count) > TheBadPart.From &&
                         fstat(descriptor, &status) == 0 && status.st_ino == TheBadPart.File;
    if (!touched) return count;
    return offset < TheBadPart.From ? static_cast<size_t>(TheBadPart.From - offset) : 0;
}

/// Copies what a file system would share: whole blocks that the source has.
int Share(int target, const file_clone_range& range) {
    const std::uint64_t odd = range.src_offset | range.src_length | range.dest_offset;
    std::vector<char> bytes(range.src_length);
    const auto count = syscall(SYS_pread64, static_cast<int>(range.src_fd), bytes.data(),
                               bytes.size(), range.src_offset);
    const auto start = static_cast<off_t>(range.dest_offset);
    if (odd % 4096 != 0 || count != std::ssize(bytes) ||
        pwrite(target, bytes.data(), bytes.size(), start) != count) {
        return errno = EINVAL, -1;
    }
    BytesShared += count;
    return 0;
}

}  // namespace

// These take precedence over the host's, and can be made to fail or to share.
extern "C" ssize_t pread(int descriptor, void* buffer, size_t count, off_t offset) {
    const size_t good = Readable(descriptor, count, offset);
    if (good == 0 && count > 0) return errno = EIO, -1;
    return syscall(SYS_pread64, descriptor, buffer, good, offset);
}
extern "C" ssize_t pread64(int descriptor, void* buffer, size_t count, off64_t offset) {
    return pread(descriptor, buffer, count, offset);
}
extern "C" ssize_t sendfile(int to, int from, off_t* offset, size_t count) noexcept {
    const size_t good = Readable(from, count, *offset);
    if (good == 0 && count > 0) return errno = EIO, -1;
    return syscall(SYS_sendfile, to, from, offset, good);
}
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list list;
    va_start(list, request);
    void* const argument = va_arg(list, void*);
    va_end(list);
    if (request == FICLONERANGE && BytesShared >= 0) {
        return Share(descriptor, *static_cast<const file_clone_range*>(argument));
    }
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

namespace tessel {
namespace {

std::uint64_t SetLimit(__rlimit_resource resource, std::uint64_t value) {
    rlimit limit{};
    getrlimit(resource, &limit);
    const std::uint64_t before = limit.rlim_cur;
    limit.rlim_cur = value;
    setrlimit(resource, &limit);
    return before;
}

}  // namespace

void FailReads(const std::string& path, std::size_t from, std::size_t to) {
    struct stat status {};
    stat(path.c_str(), &status);
    TheBadPart = {status.st_ino, static_cast<off_t>(from), static_cast<off_t>(to)};
}

void StopFailingReads() { TheBadPart = {}; }

FullDisk::FullDisk(std::int64_t bytes)
    : Before(SetLimit(RLIMIT_FSIZE, static_cast<std::uint64_t>(bytes))) {}
FullDisk::~FullDisk() { SetLimit(RLIMIT_FSIZE, Before); }

SharedExtents::SharedExtents() { BytesShared = 0; }
SharedExtents::~SharedExtents() { BytesShared = -1; }
SharedExtents::operator bool() const { return true; }
std::int64_t SharedExtents::Bytes() { return BytesShared; }

NoHandles::NoHandles() {
    const int next = dup(0);
    close(next);
    Before = SetLimit(RLIMIT_NOFILE, static_cast<std::uint64_t>(next));
}
NoHandles::~NoHandles() { SetLimit(RLIMIT_NOFILE, Before); }

OrdinaryUser::OrdinaryUser() : Before(geteuid()) { Works = Before != 0 || seteuid(65534) == 0; }
OrdinaryUser::~OrdinaryUser() {
    if (Before == 0) static_cast<void>(!seteuid(Before));
}

bool MakePipe(const std::string& path) { return mkfifo(path.c_str(), 0600) == 0; }

bool MakeLink(const std::string& target, const std::string& path) {
    std::filesystem::create_symlink(target, path);
    return true;
}

void Hide(const std::string&) {}

std::string ModifiedAt(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return "";
    std::tm time{};
    localtime_r(&status.st_mtime, &time);
    std::array<char, 40> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &time);
    return text.data();
}

bool IsOpenForReadingOnly(const std::string& path) {
    int flags = -1;
    for (const auto& link : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(link, gone) != path) continue;
        flags = fcntl(std::stoi(link.path().filename()), F_GETFL);
    }
    return flags != -1 && (flags & O_ACCMODE) == O_RDONLY;
}

}  // namespace tessel
