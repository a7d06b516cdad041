#include "platform/hostFiles.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <string>

#include "platform/names.h"

namespace tessel {

char FolderSeparator() { return '/'; }

std::string SafeName(const std::string& name) { return SafePosixName(name); }

std::string CurrentFolder() {
    std::array<char, PATH_MAX> path{};
    // A current folder that was removed has no path any more.
    return getcwd(path.data(), path.size()) == nullptr ? "/" : path.data();
}

bool FolderExists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool FolderCanBeListed(const std::string& path) {
    DIR* folder = opendir(path.c_str());
    return folder != nullptr && closedir(folder) == 0;
}

}  // namespace tessel
