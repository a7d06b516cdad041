#undef _FORTIFY_SOURCE  // it prevents defining pread here
#include "tests/hostTools.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <filesystem>

namespace {

struct {
    ino_t File = 0;
    off_t From = 0, To = 0;
} TheBadPart;

}  // namespace

/// Takes precedence over the host's, and can be made to fail.
extern "C" ssize_t pread(int descriptor, void* buffer, size_t count, off_t offset) {
    struct stat status {};
    const bool touched = offset < TheBadPart.To &&
                         offset + static_cast<off_t>(count) > TheBadPart.From &&
                         fstat(descriptor, &status) == 0 && status.st_ino == TheBadPart.File;
    if (touched && offset >= TheBadPart.From) return errno = EIO, -1;
    if (touched) count = static_cast<size_t>(TheBadPart.From - offset);
    return syscall(SYS_pread64, descriptor, buffer, count, offset);
}
extern "C" ssize_t pread64(int descriptor, void* buffer, size_t count, off64_t offset) {
    return pread(descriptor, buffer, count, offset);
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
