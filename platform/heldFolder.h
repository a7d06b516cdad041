#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace tessel {

/// Distinguishes a file or folder from every other one on this host.
struct FileIdentity {
    std::uint64_t Volume = 0;
    std::uint64_t File = 0;
    auto operator<=>(const FileIdentity&) const = default;
};

/// The identity of what `path` leads to, links followed; nothing when nothing is there.
std::optional<FileIdentity> IdentityAt(const std::string& path);

enum class EntryKind {
    kNothing,
    kFile,        ///< a visible plain file, or a visible link to a plain file
    kHiddenFile,  ///< the same, but hidden or a system file (on hosts without attributes, a leading
                  ///< point hides)
    kFolder,      ///< a folder itself, not a link to one
    kLink,        ///< a link to anything else, or to nothing
    kOther,       ///< a pipe, a socket, a device
};

/// An entry of a folder.
struct FolderEntry {
    EntryKind Kind = EntryKind::kNothing;
    bool IsLink = false;
    FileIdentity Identity{};  ///< of the entry itself
    FileIdentity Target{};    ///< of what it leads to: the same, except for a link
};

/// A folder that is opened once and stays open. Entries are created, looked up and deleted relative
/// to the open folder and never through a link, so another folder or a link that takes its name
/// meanwhile gets nothing of it; where the host allows, nobody can rename the folder meanwhile.
/// Names are single names (see SafeName). Errors carry their cause where their description does not
/// say enough; each function raises 75 for a path that is longer than other programs could open.
class HeldFolder {
  public:
    /// Opens the folder at `path`, links followed. Raises 76 when there is none, 75 when the host
    /// refuses.
    explicit HeldFolder(const std::string& path);
    /// Opens the folder `name` in `parent`. Raises 76 when nothing has this name, 58 when a link or
    /// a file has.
    HeldFolder(const HeldFolder& parent, const std::string& name);
    HeldFolder(HeldFolder&& other) noexcept;
    HeldFolder& operator=(HeldFolder&& other) noexcept;
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    ~HeldFolder();

    /// The path by which it was opened.
    const std::string& Path() const { return OwnPath; }
    /// Raises 75 when the host refuses.
    FileIdentity Identity() const;
    /// Makes it the process's current folder. Raises 75 when it may not be entered.
    void MakeCurrent() const;

    /// An entry that cannot be looked up counts as nothing.
    FolderEntry Look(const std::string& name) const;
    /// Raises 58 when something has this name, 75 or 61 as the host says.
    void CreateFolder(const std::string& name) const;
    /// Creates a new file and opens it for writing under `number` (see numberedFiles.h). Raises 55
    /// when the number is in use, 58 when something has this name, 75 or 61 as the host says.
    void CreateFile(int number, const std::string& name) const;
    /// Renames an entry, also a file that is open. A file or a link that has the new name is
    /// deleted in the same step. Raises 75, or 70 while somebody else holds a file.
    void Rename(const std::string& from, const std::string& to) const;
    /// Deletes a file, or a link itself. Raises 53 when nothing is there, 75 and 70 as above.
    void DeleteFile(const std::string& name) const;

  private:
    void RefuseLongPath(const std::string& name) const;

    std::string OwnPath;
    std::intptr_t Handle;  ///< of the host; -1 once moved from
};

}  // namespace tessel
