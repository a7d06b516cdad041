#include "platform/hostFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <ctime>
#include <string>

#include "platform/names.h"
#include "platform/posix/hostErrors.h"

namespace tessel {

char FolderSeparator() { return '/'; }

std::string SafeName(const std::string& name) { return SafePosixName(name); }

std::string CurrentFolder() {
    std::array<char, PATH_MAX> path{};
    // A current folder that was removed has no path any more.
    return getcwd(path.data(), path.size()) == nullptr ? "/" : path.data();
}

void ChangeFolder(const std::string& path) {
    if (chdir(path.c_str()) == 0) return;
    if (errno == ENOENT) Raise(kPathNotFound);
    RaiseHostError(errno);
}

void CreateFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0777) == 0) return;
    if (errno == ENOENT) Raise(kPathNotFound);
    RaiseHostError(errno);
}

bool FolderExists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsRealFolder(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool FolderCanBeListed(const std::string& path) {
    DIR* folder = opendir(path.c_str());
    return folder != nullptr && closedir(folder) == 0;
}

bool IsLink(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool VisibleFileExists(const std::string& path) {
    struct stat status {};
    return !FileTitleOf(path).starts_with('.') && stat(path.c_str(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

void DeleteFile(const std::string& path) {
    if (unlink(path.c_str()) != 0) RaiseHostError(errno);
}

bool SetModificationTime(const std::string& path, const LocalTime& time) {
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
    return utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace tessel
