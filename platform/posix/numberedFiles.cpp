#include "platform/numberedFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <map>

#include "platform/posix/hostErrors.h"
#include "platform/posix/openFiles.h"

namespace tessel {
namespace {

struct OpenFile {
    int Descriptor = -1;
    bool Writing = false;
};

std::map<int, OpenFile>& OpenFiles() {
    static std::map<int, OpenFile> files;
    return files;
}

int DescriptorOf(int number) {
    const auto file = OpenFiles().find(number);
    if (file == OpenFiles().end()) Raise(kBadFileNumber);
    return file->second.Descriptor;
}

/// A path that contains a NUL would name a different file.
void RefuseNul(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) Raise(kBadFileNumber);
}

/// Bytes per call. This much stays in the processor's caches until the kernel copies it; a call
/// with eight times as much took up to four times as long per byte.
constexpr std::size_t kWriteAtOnce = std::size_t{128} * 1024;

void WriteAll(int descriptor, std::span<const Byte> bytes) {
    while (!bytes.empty()) {
        const std::size_t some = std::min(bytes.size(), kWriteAtOnce);
        const ssize_t count = write(descriptor, bytes.data(), some);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) RaiseHostError(errno);
        if (count == 0) Raise(kDiskFull);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

}  // namespace

void RefuseUsedNumber(int number) {
    if (OpenFiles().contains(number)) Raise(kFileAlreadyOpen);
}

void AddFileForWriting(int number, int descriptor) { OpenFiles()[number] = {descriptor, true}; }

void OpenForReading(int number, const std::string& path) {
    RefuseUsedNumber(number);
    RefuseNul(path);
    // A pipe without a writer must not block the window.
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) RaiseOpenError(errno, path.c_str());
    struct stat status {};
    const bool known = fstat(descriptor, &status) == 0;
    if (!known || !(S_ISREG(status.st_mode) || S_ISBLK(status.st_mode))) {
        close(descriptor);
        Raise(kPathFileAccessError);
    }
    OpenFiles()[number] = {descriptor, false};
}

void CloseFile(int number) {
    const auto file = OpenFiles().find(number);
    if (file == OpenFiles().end()) return;
    const OpenFile closing = file->second;
    OpenFiles().erase(file);
    const int failed = close(closing.Descriptor) == 0 ? 0 : errno;
    if (closing.Writing && failed != 0 && failed != EINTR) RaiseHostError(failed);
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
    // Unlike fstat, seeking to the end works for block devices too.
    const off_t length = lseek(DescriptorOf(number), 0, SEEK_END);
    if (length < 0) RaiseHostError(errno);
    return length;
}

void ReadFile(int number, std::int64_t offset, std::span<Byte> bytes) {
    DescriptorOf(number);
    if (offset < 0 || offset > kLastFileOffset) Raise(kOverflow);
    if (ReadFileUpTo(number, offset, bytes) < bytes.size()) Raise(kDeviceIoError);
}

std::size_t ReadFileUpTo(int number, std::int64_t offset, std::span<Byte> bytes) {
    std::size_t good = 0;
    if (FileIsOpen(number) && offset >= 0) {
        const int descriptor = DescriptorOf(number);
        while (good < bytes.size() && offset <= kLastFileOffset) {
            const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(
                static_cast<std::int64_t>(bytes.size() - good), kLastFileOffset + 1 - offset));
            const ssize_t count = pread(descriptor, bytes.data() + good, wanted, offset);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) break;
            // Bytes past the end of the file are zeros.
            if (count == 0) std::fill_n(bytes.data() + good, wanted, Byte{0});
            const std::size_t got = count == 0 ? wanted : static_cast<std::size_t>(count);
            good += got;
            offset += static_cast<std::int64_t>(got);
        }
    }
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(good), bytes.end(), Byte{0});
    return good;
}

#ifdef __linux__

std::int64_t CheckFileUpTo(int number, std::int64_t offset, std::int64_t count) {
    // The kernel sends the bytes to a device that drops them: half the work of reading them here.
    static const int nullDevice = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (!FileIsOpen(number)) return 0;
    const std::int64_t end = std::min(offset + count, kLastFileOffset + 1);
    off_t at = offset;
    while (at < end) {
        const auto wanted = static_cast<std::size_t>(end - at);
        const ssize_t checked = sendfile(nullDevice, DescriptorOf(number), &at, wanted);
        if (checked == 0 || (checked < 0 && errno != EINTR)) break;
    }
    return at - offset;
}

std::int64_t ShareFileUpTo(int number, std::int64_t offset, std::int64_t count, int target) {
    constexpr std::int64_t kBlock = 4096;
    // Sharing reads nothing: bytes that the medium cannot read must be found here, not in the copy.
    const std::int64_t length = CheckFileUpTo(number, offset, count) / kBlock * kBlock;
    const int to = DescriptorOf(target);
    const off_t start = lseek(to, 0, SEEK_CUR);
    if (length == 0 || start < 0) return 0;
    const file_clone_range range = {DescriptorOf(number), static_cast<std::uint64_t>(offset),
                                    static_cast<std::uint64_t>(length),
                                    static_cast<std::uint64_t>(start)};
    const bool shared = ioctl(to, FICLONERANGE, &range) == 0;
    return shared && lseek(to, length, SEEK_CUR) >= 0 ? length : 0;
}

#else

std::int64_t CheckFileUpTo(int, std::int64_t, std::int64_t) { return 0; }
std::int64_t ShareFileUpTo(int, std::int64_t, std::int64_t, int) { return 0; }

#endif

void WriteFile(int number, std::span<const Byte> bytes) { WriteAll(DescriptorOf(number), bytes); }

std::function<void(std::span<const Byte>)> WriterOf(int number) {
    return std::bind_front(WriteAll, DescriptorOf(number));
}

bool SetModificationTime(int number, const LocalTime& time) {
    std::tm local{};
    local.tm_year = time.Year - 1900;
    local.tm_mon = time.Month - 1;
    local.tm_mday = time.Day;
    local.tm_hour = time.Hour;
    local.tm_min = time.Minute;
    local.tm_sec = time.Second;
    local.tm_isdst = -1;
    const std::time_t moment = std::mktime(&local);
    if (moment == -1) return false;
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, timespec{moment, 0}};
    return futimens(DescriptorOf(number), times.data()) == 0;
}

FileIdentity IdentityOf(int number) {
    const auto identity = IdentityOfDescriptor(DescriptorOf(number));
    if (!identity) Raise(kDeviceIoError);
    return *identity;
}

bool IsOpenFile(const FileIdentity& file) {
    return std::any_of(OpenFiles().begin(), OpenFiles().end(), [&](const auto& open) {
        return IdentityOfDescriptor(open.second.Descriptor) == file;
    });
}

}  // namespace tessel
