#ifdef __linux__
#include <mntent.h>
#else
#include <sys/mount.h>
#include <sys/param.h>
#endif

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "platform/hostFiles.h"

namespace tessel {
namespace {

/// Whether a file system of this type can hold files of a user.
bool HoldsUserFiles(std::string_view type) {
    constexpr std::array<std::string_view, 22> kKernelTypes = {
        "autofs",     "binfmt_misc", "bpf",    "cgroup",   "cgroup2",  "configfs",
        "debugfs",    "devfs",       "devpts", "devtmpfs", "efivarfs", "fusectl",
        "hugetlbfs",  "mqueue",      "nsfs",   "proc",     "pstore",   "rpc_pipefs",
        "securityfs", "squashfs",    "sysfs",  "tracefs"};
    return std::find(kKernelTypes.begin(), kKernelTypes.end(), type) == kKernelTypes.end();
}

std::vector<std::string> MountedFolders() {
    std::vector<std::string> folders;
#ifdef __linux__
    if (std::FILE* table = setmntent("/proc/self/mounts", "re")) {
        while (const mntent* mount = getmntent(table)) {
            if (HoldsUserFiles(mount->mnt_type)) folders.emplace_back(mount->mnt_dir);
        }
        endmntent(table);
    }
#else
    struct statfs* mounts = nullptr;
    const int count = getmntinfo(&mounts, MNT_NOWAIT);
    for (int i = 0; i < count; ++i) {
        if (HoldsUserFiles(mounts[i].f_fstypename)) folders.emplace_back(mounts[i].f_mntonname);
    }
#endif
    return folders;
}

bool Contains(const std::string& folder, const std::string& path) {
    if (folder == "/") return path.starts_with('/');
    return path == folder || path.starts_with(folder + "/");
}

}  // namespace

std::vector<std::string> HostDrives() {
    std::vector<std::string> drives = {"/"};
    for (const std::string& folder : MountedFolders()) {
        const bool known = std::find(drives.begin(), drives.end(), folder) != drives.end();
        if (!known && FolderExists(folder)) drives.push_back(folder);
    }
    std::sort(drives.begin() + 1, drives.end());
    return drives;
}

std::string DriveOf(const std::string& path) {
    // Compared as text: a call on a mount whose server is gone would block.
    std::string longest = Contains("/", path) ? "/" : "";
    for (const std::string& drive : MountedFolders()) {
        if (Contains(drive, path) && drive.size() > longest.size()) longest = drive;
    }
    return longest;
}

std::string DriveRoot(const std::string& drive) { return drive; }

}  // namespace tessel
