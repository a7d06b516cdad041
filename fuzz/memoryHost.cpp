#include "fuzz/memoryHost.h"

#include <algorithm>
#include <map>
#include <optional>

#include "platform/hostFiles.h"
#include "platform/names.h"
#include "platform/numberedFiles.h"

namespace tessel {
namespace {

/// The size of the disk: more than any valid FAT16 volume contains.
constexpr std::int64_t kCapacity = std::int64_t{4} << 30;

struct ImageFile {
    std::span<const Byte> Bytes;
    std::int64_t FailsFrom = INT64_MAX;
};

struct OpenFile {
    std::string Path;
    std::optional<ImageFile> Image;  // none: open for writing
};

struct MemoryHost {
    std::map<std::string, ImageFile> Images;
    std::set<std::string> Folders{"/", memory::kImages, memory::kChosen};
    std::set<std::string> Files;
    std::set<std::string> Created;
    std::map<std::string, std::uint64_t> Identities;
    std::uint64_t LastIdentity = 0;
    std::map<int, OpenFile> Open;
    std::string Current = "/";
    std::int64_t Written =
        0;  // Save Display writes on a second thread, but nothing else writes at that time
} TheMemory;

/// The absolute path, without a separator at its end.
std::string Whole(const std::string& path) {
    std::string whole = path.starts_with('/') ? path : JoinPath(TheMemory.Current, path);
    while (whole.size() > 1 && whole.ends_with('/')) whole.pop_back();
    return whole;
}

std::string ParentOf(const std::string& whole) {
    const std::string parent = FolderOf(whole);
    return parent.size() > 1 ? parent.substr(0, parent.size() - 1) : parent;
}

bool Exists(const std::string& whole) {
    return TheMemory.Images.contains(whole) || TheMemory.Files.contains(whole) ||
           TheMemory.Folders.contains(whole);
}

/// The identity of what exists at a path.
FileIdentity IdentityFor(const std::string& whole) {
    std::uint64_t& identity = TheMemory.Identities[whole];
    if (identity == 0) identity = ++TheMemory.LastIdentity;
    return {0, identity};
}

/// Raises the error for a path at which nothing can be created.
void RequireCreatable(const std::string& whole) {
    if (whole.find('\0') != whole.npos) Raise(kBadFileNumber);
    if (FileTitleOf(whole).size() > 255) Raise(kPathNotFound);
    if (!TheMemory.Folders.contains(ParentOf(whole))) Raise(kPathNotFound);
    if (Exists(whole)) Raise(kFileAlreadyExists);
    if (whole.starts_with(memory::kImages)) Raise(kPathFileAccessError);
}

const OpenFile& FileOf(int number) {
    const auto file = TheMemory.Open.find(number);
    if (file == TheMemory.Open.end()) Raise(kBadFileNumber);
    return file->second;
}

}  // namespace

namespace memory {

void Reset() { TheMemory = {}; }

void PutImage(const std::string& path, std::span<const Byte> bytes, std::int64_t failsFrom) {
    TheMemory.Images[path] = {bytes, failsFrom};
}

const std::set<std::string>& CreatedPaths() { return TheMemory.Created; }
std::int64_t BytesWritten() { return TheMemory.Written; }

}  // namespace memory

// --- Numbered files. -----------------------------------------------------------------------------

void OpenForReading(int number, const std::string& path) {
    if (TheMemory.Open.contains(number)) Raise(kFileAlreadyOpen);
    const std::string whole = Whole(path);
    if (path.empty() || whole.find('\0') != whole.npos) Raise(kBadFileNumber);
    if (TheMemory.Folders.contains(whole)) Raise(kPathFileAccessError);
    const auto image = TheMemory.Images.find(whole);
    const bool written = TheMemory.Files.contains(whole);
    if (image == TheMemory.Images.end() && !written) {
        Raise(TheMemory.Folders.contains(ParentOf(whole)) ? kFileNotFound : kPathNotFound);
    }
    TheMemory.Open[number] = {whole, written ? ImageFile{} : image->second};
}

void CloseFile(int number) { TheMemory.Open.erase(number); }
void AbandonFile(int number) { CloseFile(number); }
bool FileIsOpen(int number) { return TheMemory.Open.contains(number); }

std::int64_t FileLength(int number) {
    return std::ssize(FileOf(number).Image.value_or(ImageFile{}).Bytes);
}

void ReadFile(int number, std::int64_t offset, std::span<Byte> bytes) {
    FileOf(number);
    if (offset < 0 || offset > kLastFileOffset) Raise(kOverflow);
    if (ReadFileUpTo(number, offset, bytes) < bytes.size()) Raise(kDeviceIoError);
}

std::size_t ReadFileUpTo(int number, std::int64_t offset, std::span<Byte> bytes) {
    std::fill(bytes.begin(), bytes.end(), Byte{0});
    if (!FileIsOpen(number) || offset < 0) return 0;
    const ImageFile image = FileOf(number).Image.value_or(ImageFile{});
    const std::int64_t end =
        std::min({offset + std::ssize(bytes), image.FailsFrom, kLastFileOffset + 1});
    const std::int64_t good = std::max<std::int64_t>(end - offset, 0);
    const std::int64_t available = std::min(good, std::ssize(image.Bytes) - offset);
    if (available > 0) {
        std::copy_n(image.Bytes.begin() + static_cast<std::ptrdiff_t>(offset), available,
                    bytes.begin());
    }
    return static_cast<std::size_t>(good);
}

std::int64_t CheckFileUpTo(int, std::int64_t, std::int64_t) { return 0; }
std::int64_t ShareFileUpTo(int, std::int64_t, std::int64_t, int) { return 0; }

void WriteFile(int number, std::span<const Byte> bytes) {
    if (FileOf(number).Image) Raise(kPathFileAccessError);
    TheMemory.Written += std::ssize(bytes);
    if (TheMemory.Written > kCapacity) Raise(kDiskFull);
}

std::function<void(std::span<const Byte>)> WriterOf(int number) {
    FileOf(number);
    return [number](std::span<const Byte> bytes) { WriteFile(number, bytes); };
}

bool SetModificationTime(int number, const LocalTime&) { return !FileOf(number).Image; }

FileIdentity IdentityOf(int number) { return IdentityFor(FileOf(number).Path); }

bool IsOpenFile(const FileIdentity& file) {
    return std::any_of(TheMemory.Open.begin(), TheMemory.Open.end(), [&](const auto& open) {
        return Exists(open.second.Path) && IdentityFor(open.second.Path) == file;
    });
}

// --- An open folder. -----------------------------------------------------------------------------

std::optional<FileIdentity> IdentityAt(const std::string& path) {
    const std::string whole = Whole(path);
    return Exists(whole) ? std::optional(IdentityFor(whole)) : std::nullopt;
}

FolderHandle::FolderHandle(const std::string& path) : OwnPath(Whole(path)), Handle(0) {
    if (!FolderExists(OwnPath)) Raise(kPathNotFound);
}

FolderHandle::FolderHandle(const FolderHandle& parent, const std::string& name)
    : OwnPath(Whole(JoinPath(parent.OwnPath, name))), Handle(0) {
    if (!Exists(OwnPath)) Raise(kPathNotFound);
    if (!FolderExists(OwnPath)) Raise(kFileAlreadyExists);
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept = default;
FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept = default;
FolderHandle::~FolderHandle() = default;

FileIdentity FolderHandle::Identity() const { return IdentityFor(OwnPath); }
void FolderHandle::MakeCurrent() const { TheMemory.Current = OwnPath; }

FolderEntry FolderHandle::Look(const std::string& name) const {
    const std::string whole = JoinPath(OwnPath, name);
    if (!Exists(whole)) return {};
    const FileIdentity identity = IdentityFor(whole);
    const EntryKind kind = FolderExists(whole)     ? EntryKind::kFolder
                           : name.starts_with('.') ? EntryKind::kHiddenFile
                                                   : EntryKind::kFile;
    return {kind, false, identity, identity};
}

void FolderHandle::CreateFolder(const std::string& name) const {
    const std::string whole = JoinPath(OwnPath, name);
    RequireCreatable(whole);
    TheMemory.Folders.insert(whole);
    TheMemory.Created.insert(whole);
}

void FolderHandle::CreateFile(int number, const std::string& name) const {
    if (TheMemory.Open.contains(number)) Raise(kFileAlreadyOpen);
    const std::string whole = JoinPath(OwnPath, name);
    RequireCreatable(whole);
    TheMemory.Files.insert(whole);
    TheMemory.Created.insert(whole);
    TheMemory.Open[number] = {whole, std::nullopt};
}

void FolderHandle::Rename(const std::string& from, const std::string& to) const {
    const std::string source = JoinPath(OwnPath, from);
    const std::string target = JoinPath(OwnPath, to);
    if (TheMemory.Images.contains(target) || FolderExists(target)) Raise(kPathFileAccessError);
    if (TheMemory.Files.erase(source) == 0) Raise(kFileNotFound);
    TheMemory.Files.insert(target);
    TheMemory.Created.insert(target);
    TheMemory.Identities[target] = IdentityFor(source).File;
    TheMemory.Identities.erase(source);
    for (auto& [number, file] : TheMemory.Open) {
        if (file.Path == source) file.Path = target;
    }
}

void FolderHandle::DeleteFile(const std::string& name) const {
    const std::string whole = JoinPath(OwnPath, name);
    if (TheMemory.Images.contains(whole)) Raise(kPathFileAccessError);
    if (TheMemory.Files.erase(whole) == 0) Raise(kFileNotFound);
    TheMemory.Identities.erase(whole);
}

// --- The file system. ----------------------------------------------------------------------------

char FolderSeparator() { return '/'; }
std::string SafeName(const std::string& name) { return SafePosixName(name); }
std::string CurrentFolder() { return TheMemory.Current; }

bool FolderExists(const std::string& path) { return TheMemory.Folders.contains(Whole(path)); }
bool FolderCanBeListed(const std::string& path) { return FolderExists(path); }

std::vector<std::string> HostDrives() { return {"/"}; }
std::string DriveOf(const std::string& path) { return path.starts_with('/') ? "/" : ""; }
std::string DriveRoot(const std::string& drive) { return drive; }

}  // namespace tessel
