#include "document/page/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <initializer_list>
#include <utility>

#include "document/page/FileCalls.h"
#include "document/page/FileReplacement.h"

namespace kvo::page {
namespace {

constexpr std::string_view kStandardStream = "-";

// Returns the descriptor of this process that the path names, such as "/proc/self/fd/1" or
// "/dev/fd/63"; -1 for any other path.
int DescriptorNamed(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return -1;
  int number = -1;
  const char* const end = path.data() + path.size();
  if (const auto parsed = std::from_chars(path.data() + slash + 1, end, number);
      parsed.ec != std::errc() || parsed.ptr != end)
    return -1;
  const std::unique_ptr<char, decltype(&std::free)> folder(
      realpath(FolderOf(path).c_str(), nullptr), &std::free);
  const std::string own = "/proc/" + std::to_string(getpid());
  if (folder == nullptr || !std::string_view(folder.get()).starts_with(own + '/')) return -1;
  return std::string_view(folder.get()).ends_with("/fd") ? number : -1;
}

// Where a name leads after following links: a file, which may not exist, or an open descriptor.
struct Target {
  std::string path;
  int descriptor = -1;
};

Target TargetOf(const std::string& file) {
  constexpr int kMostLinks = 40;
  std::string path = file;
  for (int links = 0; links < kMostLinks; ++links) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) {
      // It may still be a link, so refuse to replace it.
      if (errno != ENOENT) Throw(errno, Doing::writing, file);
      return {path};
    }
    if (!S_ISLNK(status.st_mode)) return {path};
    // Uses the descriptor itself: the link's target may have been renamed or removed.
    if (const int descriptor = DescriptorNamed(path); descriptor >= 0) return {path, descriptor};
    std::array<char, 4097> link;
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length < 0) Throw(errno, Doing::writing, file);
    const std::string to(link.data(), static_cast<std::size_t>(length));
    path = to.starts_with('/') ? to : FolderOf(path) + '/' + to;
  }
  Throw(ELOOP, Doing::writing, file);
}

// Holds the text until the commit, then writes it at once to a target that cannot be replaced:
// standard output, a pipe, a device.
class HeldBack final : public Output {
 public:
  HeldBack(std::string file, Descriptor own, int descriptor)
      : file_(std::move(file)), own_(std::move(own)), descriptor_(descriptor) {}

  void append(std::string_view bytes) override { text_ += bytes; }

  void Commit() override {
    WriteBytes(descriptor_, text_, Doing::passing, file_);
    text_.clear();
    if (own_.IsOpen() && !own_.Close()) Throw(errno, Doing::passing, file_);
  }

 private:
  std::string file_;
  Descriptor own_;  // not open for standard output and inherited descriptors
  int descriptor_;
  std::string text_;
};

constexpr std::size_t kNoLimit = std::string::npos;

// Reads everything from the descriptor; FileError beyond `most` bytes.
std::string ReadAll(int descriptor, std::size_t most, const std::string& file) {
  std::string text;
  const auto expectRoom = [&](std::size_t size) {
    if (size > most)
      throw FileError(file, {QuotedFile(file) + ": Die Datei ist zu groß; mehr als " +
                                 std::to_string(most) + " Bytes werden nicht gelesen.",
                             QuotedFile(file) + ": The file is too large; no more than " +
                                 std::to_string(most) + " bytes are read."});
  };
  struct stat status;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    expectRoom(static_cast<std::size_t>(status.st_size));
    text.reserve(static_cast<std::size_t>(status.st_size) + 1);
  }
  constexpr std::size_t kAtOnce = 1 << 16;
  for (;;) {
    const std::size_t size = text.size();
    if (text.capacity() - size < kAtOnce && text.capacity() == size)
      text.reserve(2 * size + kAtOnce);
    const std::size_t room = text.capacity() - size;
    text.resize(size + room);
    const ssize_t got = read(descriptor, text.data() + size, room);
    const int error = errno;
    text.resize(size + static_cast<std::size_t>(got > 0 ? got : 0));
    if (got == 0) return text;
    if (got < 0 && error != EINTR) Throw(error, Doing::reading, file);
    expectRoom(text.size());
  }
}

}  // namespace

void OccupyStandardStreams() {
  constexpr int kFailure = 2;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) continue;
    // All lower numbers are taken, so open() returns this one. The root always exists, and with
    // O_PATH it can be neither read nor written.
    if (open("/", O_PATH) != stream) _exit(kFailure);
  }
}

std::string ReadFile(const std::string& file) {
  if (file == kStandardStream) return ReadAll(STDIN_FILENO, kNoLimit, file);
  const Descriptor own(Uninterrupted([&] { return open(file.c_str(), O_RDONLY | O_CLOEXEC); }));
  if (!own.IsOpen()) Throw(errno, Doing::reading, file);
  return ReadAll(own.Number(), kNoLimit, file);
}

std::string ReadRegularFile(const std::string& file, std::size_t most) {
  if (file == kStandardStream) return ReadAll(STDIN_FILENO, most, file);
  // Does not wait for a pipe's writer.
  const Descriptor own(
      Uninterrupted([&] { return open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  struct stat status;
  if (!own.IsOpen() || fstat(own.Number(), &status) != 0) Throw(errno, Doing::reading, file);
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
    throw FileError(file,
                    {QuotedFile(file) + ": Das ist eine Pipe oder ein Gerät. Nennen Sie eine "
                                        "gewöhnliche Datei.",
                     QuotedFile(file) + ": This is a pipe or a device. Name a regular file."});
  return ReadAll(own.Number(), most, file);
}

std::unique_ptr<Output> OpenOutput(const std::string& file, Durable durable) {
  if (file == kStandardStream) return std::make_unique<HeldBack>(file, Descriptor(), STDOUT_FILENO);
  const Target leadsTo = TargetOf(file);
  if (leadsTo.descriptor >= 0)
    return std::make_unique<HeldBack>(file, Descriptor(), leadsTo.descriptor);
  const std::string& target = leadsTo.path;
  struct stat status;
  const bool exists = stat(target.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) Throw(errno, Doing::writing, file);
  if (!exists) return std::make_unique<FileReplacement>(file, target, nullptr, durable);
  if (S_ISDIR(status.st_mode)) Throw(EISDIR, Doing::writing, file);
  if (!S_ISREG(status.st_mode)) {
    Descriptor own(
        Uninterrupted([&] { return open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); }));
    if (!own.IsOpen()) Throw(errno, Doing::writing, file);
    const int number = own.Number();
    return std::make_unique<HeldBack>(file, std::move(own), number);
  }
  // A file without any write permission is kept, even where the user could replace it.
  if ((status.st_mode & 0222) == 0) Throw(EACCES, Doing::writing, file);
  if (access(target.c_str(), W_OK) != 0) Throw(errno, Doing::writing, file);
  return std::make_unique<FileReplacement>(file, target, &status, durable);
}

void WriteFile(const std::string& file, std::string_view bytes, Durable durable) {
  const auto output = OpenOutput(file, durable);
  output->append(bytes);
  output->Commit();
}

}  // namespace kvo::page
