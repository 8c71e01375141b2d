#include "document/page/FileReplacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "document/page/AccessList.h"

namespace kvo::page {
namespace {

// Gives each of two files the name of the other; false where the system cannot.
bool Exchange([[maybe_unused]] const char* a, [[maybe_unused]] const char* b) {
#ifdef RENAME_EXCHANGE
  return renameat2(AT_FDCWD, a, AT_FDCWD, b, RENAME_EXCHANGE) == 0;
#else
  return false;
#endif
}

// Returns "FOLDER/.kvo-XXXXXX", practically unique.
std::string TemporaryName(const std::string& folder) {
  constexpr std::string_view kLetters =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  std::array<unsigned char, 6> random;
  if (getentropy(random.data(), random.size()) != 0) return {};
  std::string name = folder + "/.kvo-";
  for (const unsigned char byte : random) name += kLetters[byte % kLetters.size()];
  return name;
}

}  // namespace

FileReplacement::FileReplacement(std::string file, std::string target, const struct stat* existing,
                                 Durable durable)
    : file_(std::move(file)),
      target_(std::move(target)),
      exists_(existing != nullptr),
      durable_(durable == Durable::yes) {
  Create(existing == nullptr ? 0666 : 0600);
  if (existing != nullptr) TakeOver(*existing);
}

void FileReplacement::append(std::string_view bytes) {
  WriteBytes(temporary_.Number(), bytes, Doing::writing, file_);
}

void FileReplacement::Commit() {
  if (!flushed_) Flush();
  if (flushError_ != 0) Throw(flushError_, Doing::writing, file_);
  Place();
  if (durable_ && !inGroup_) FlushFolder();
}

void FileReplacement::Flush() {
  if ((durable_ && Uninterrupted([&] { return fsync(temporary_.Number()); }) != 0) ||
      !temporary_.Close())
    Throw(errno, Doing::writing, file_);
  flushed_ = true;
}

void FileReplacement::NoteFlushed(int error) {
  flushError_ = error;
  if (!temporary_.Close() && error == 0) flushError_ = errno;
  flushed_ = inGroup_ = true;
}

// Makes the rename survive a power failure.
void FileReplacement::FlushFolder() const {
  const Descriptor folder(Uninterrupted(
      [&] { return open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (folder.IsOpen()) Uninterrupted([&] { return fsync(folder.Number()); });
}

void FileReplacement::Place() {
  if (rename(unfinished_.Name(), target_.c_str()) != 0) Throw(errno, Doing::writing, file_);
  unfinished_.Forget();
}

void FileReplacement::PlaceKeepingFormer() {
  // After an exchange, the temporary name is that of the old file.
  if (!exists_ || !Exchange(unfinished_.Name(), target_.c_str())) {
    if (exists_) former_ = FormerCopy();
    Place();
  }
  placed_ = true;
}

void FileReplacement::PutBack() noexcept {
  if (!std::exchange(placed_, false)) return;
  if (!exists_)
    unlink(target_.c_str());
  else
    rename((former_ == nullptr ? *this : *former_).unfinished_.Name(), target_.c_str());
}

// Copies the old file where the file system cannot exchange two names.
std::unique_ptr<FileReplacement> FileReplacement::FormerCopy() const {
  struct stat status;
  if (stat(target_.c_str(), &status) != 0) Throw(errno, Doing::writing, file_);
  auto copy = std::make_unique<FileReplacement>(file_, target_, &status, Durable::yes);
  copy->append(ReadFile(target_));
  copy->Flush();
  return copy;
}

// An entirely new file gets the default permissions.
void FileReplacement::Create(mode_t mode) {
  constexpr int kMostTries = 100;
  const std::string folder = FolderOf(target_);
  for (int tries = 0; tries < kMostTries; ++tries) {
    const std::string name = TemporaryName(folder);
    if (name.empty()) break;
    temporary_ = Descriptor(Uninterrupted([&] { return unfinished_.Create(name, mode); }));
    if (temporary_.IsOpen()) return;
    if (errno != EEXIST) break;
  }
  Throw(errno, Doing::writing, file_);
}

// Copies owner, access list and mode from the old file.
void FileReplacement::TakeOver(const struct stat& existing) {
  struct stat own;
  if (fstat(temporary_.Number(), &own) != 0) Throw(errno, Doing::writing, file_);
  if (own.st_uid != existing.st_uid || own.st_gid != existing.st_gid) {
    const auto give = [&] { return fchown(temporary_.Number(), existing.st_uid, existing.st_gid); };
    if (Uninterrupted(give) != 0) Throw(errno, Doing::writing, file_);
  }
  // Before the mode: with a list, the mode's group bits limit what the list grants; without one,
  // they are the group's permissions.
  if (const int error = CopyAccessList(target_, temporary_.Number()); error != 0)
    Throw(error, Doing::writing, file_);
  if (Uninterrupted([&] { return fchmod(temporary_.Number(), existing.st_mode & 07777); }) != 0)
    Throw(errno, Doing::writing, file_);
}

}  // namespace kvo::page
