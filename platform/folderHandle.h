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

/// Returns the identity of the file or folder at `path`, following links; nullopt when there is
/// none or the host cannot identify it.
std::optional<FileIdentity> IdentityAt(const std::string& path);

enum class EntryKind {
    kNothing,
    kFile,        ///< a visible regular file, or a visible link to a regular file
    kHiddenFile,  ///< the same, but hidden or a system file (on hosts without attributes, a file
                  ///< whose name begins with a dot)
    kFolder,      ///< a folder, not a link to one
    kLink,        ///< a link to anything else, or a broken link
    kOther,       ///< a pipe, a socket, a device
};

/// An entry of a folder.
struct FolderEntry {
    EntryKind Kind = EntryKind::kNothing;
    bool IsLink = false;
    FileIdentity Identity{};  ///< of the entry itself
    FileIdentity Target{};    ///< of the target of a link, otherwise the same
};

/// A handle of an open folder. Entries are created, looked up and deleted relative to the handle
/// and never through a link, so another folder or a link that takes the folder's name meanwhile has
/// no effect; where the host supports it, the folder cannot be renamed while it is open. Names are
/// single names (see SafeName). Errors have a cause where their description does not say enough.
/// Each function raises 75 for a path that is too long for other programs.
class FolderHandle {
  public:
    /// Opens the folder at `path`, following links. Raises 76 when there is none, 75 when the host
    /// denies access.
    explicit FolderHandle(const std::string& path);
    /// Opens the folder `name` in `parent`. Raises 76 when nothing has this name, 58 when it is a
    /// link or a file.
    FolderHandle(const FolderHandle& parent, const std::string& name);
    FolderHandle(FolderHandle&& other) noexcept;
    FolderHandle& operator=(FolderHandle&& other) noexcept;
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;
    ~FolderHandle();

    /// The path of the folder when it was opened.
    const std::string& Path() const { return OwnPath; }
    /// Raises 75 when the host cannot identify the folder.
    FileIdentity Identity() const;
    /// Makes the folder the process's current one. Raises 75 when the host denies access.
    void MakeCurrent() const;

    /// Looks up the entry `name`; kNothing when there is none or it cannot be looked up.
    FolderEntry Look(const std::string& name) const;
    /// Raises 58 when an entry has this name, 75 when the host denies access, 61 when the disk is
    /// full.
    void CreateFolder(const std::string& name) const;
    /// Creates a new file and opens it for writing under `number` (see numberedFiles.h). Raises 55
    /// when the number is in use, and as CreateFolder does.
    void CreateFile(int number, const std::string& name) const;
    /// Renames an entry, even an open file, and replaces a file or a link with the new name in the
    /// same step. Raises 75 when the host denies access, 70 when another program uses a file.
    void Rename(const std::string& from, const std::string& to) const;
    /// Deletes a file, or a link itself. Raises 53 when there is no such entry, and as Rename does.
    void DeleteFile(const std::string& name) const;

  private:
    void RefuseLongPath(const std::string& name) const;

    std::string OwnPath;
    std::intptr_t Handle;  ///< the host's handle; -1 after a move
};

}  // namespace tessel
