#pragma once

#include <cstdint>
#include <string>

/// Host functions that the tests need beyond the standard library, and simulated host failures.
namespace tessel {

/// Makes reads of the bytes `from` to `to` (exclusive) of the file at `path` fail as on a bad
/// medium.
void FailReads(const std::string& path, std::size_t from, std::size_t to = 1 << 30);
void StopFailingReads();

/// While it exists, no file can grow past `bytes`, as on a full disk.
class FullDisk {
  public:
    explicit FullDisk(std::int64_t bytes);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    std::uint64_t Before = 0;
};

/// While it exists, all files share extents, as on a file system that can. False where the program
/// does not share extents.
class SharedExtents {
  public:
    SharedExtents();
    ~SharedExtents();
    SharedExtents(const SharedExtents&) = delete;
    SharedExtents& operator=(const SharedExtents&) = delete;
    explicit operator bool() const;
    /// The bytes that were shared so far.
    static std::int64_t Bytes();
};

/// While it exists, the process cannot open any more files.
class NoHandles {
  public:
    NoHandles();
    ~NoHandles();
    NoHandles(const NoHandles&) = delete;
    NoHandles& operator=(const NoHandles&) = delete;

  private:
    std::uint64_t Before = 0;
};

/// While it exists, the process has only the rights of an ordinary user. False if the host does not
/// support this.
class OrdinaryUser {
  public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    explicit operator bool() const { return Works; }

  private:
    bool Works = false;
    unsigned Before = 0;
};

/// Creates a named pipe that nothing writes to. False if folders cannot contain pipes.
bool MakePipe(const std::string& path);

/// Creates a symbolic link at `path` to a folder or a file. False if the host cannot.
bool MakeLink(const std::string& target, const std::string& path);
/// Sets the hidden attribute; does nothing where a leading dot in the name hides a file.
void Hide(const std::string& path);
/// The modification time of the file at `path`, in local time: "1998-03-15 14:22:06".
std::string ModifiedAt(const std::string& path);

/// Whether this process has the file at `path` open for reading only.
bool IsOpenForReadingOnly(const std::string& path);

}  // namespace tessel
