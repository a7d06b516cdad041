#pragma once

#include <cstdint>
#include <string>

/// What the tests ask of the host beyond the standard library, and what a host does to a program on
/// a bad day.
namespace tessel {

/// Makes reads of the file at `path` fail like a bad medium's from byte `from` to before `to`.
void FailReads(const std::string& path, std::size_t from, std::size_t to = 1 << 30);
void StopFailingReads();

/// While one lives, the disk is full for a file that has reached `bytes`.
class FullDisk {
  public:
    explicit FullDisk(std::int64_t bytes);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    std::uint64_t Before = 0;
};

/// While one lives, the process can open nothing more.
class NoHandles {
  public:
    NoHandles();
    ~NoHandles();
    NoHandles(const NoHandles&) = delete;
    NoHandles& operator=(const NoHandles&) = delete;

  private:
    std::uint64_t Before = 0;
};

/// While one lives, the process has no rights beyond those of an ordinary user. False where the
/// host knows no such thing.
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

/// Makes a pipe with nobody at its other end. False where a folder cannot hold one.
bool MakePipe(const std::string& path);

/// Makes a symbolic link at `path`, to a folder or to a file. False where this host makes none.
bool MakeLink(const std::string& target, const std::string& path);
/// Marks a file as hidden where that is an attribute and not the name's leading point.
void Hide(const std::string& path);
/// When the file at `path` was last modified, in local time: "1998-03-15 14:22:06".
std::string ModifiedAt(const std::string& path);

/// Whether this process holds the file at `path` open, and for reading only.
bool IsOpenForReadingOnly(const std::string& path);

}  // namespace tessel
