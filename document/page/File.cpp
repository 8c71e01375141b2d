#include "document/page/File.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "document/page/AccessList.h"

namespace kvo::page {
namespace {

constexpr std::string_view kStandardStream = "-";

std::string Quoted(std::string_view file) { return '"' + std::string(file) + '"'; }

// Returns the system's text for an error that has no advice of its own; in English where possible.
std::string SystemText(int error) {
#ifdef __GLIBC__
  const char* const text = strerrordesc_np(error);
#else
  const char* const text = std::strerror(error);
#endif
  return text != nullptr ? text : "?";
}

// `passing` writes to a target that cannot be replaced: a pipe, a device, standard output.
enum class Doing { reading, writing, passing };

constexpr Localized OutcomeOf(Doing doing) {
  switch (doing) {
    case Doing::writing:
      return {" Es wurde nichts geändert.", " Nothing was changed."};
    case Doing::passing:
      return {" Die Ausgabe ist unvollständig.", " The output is incomplete."};
    default:
      return {"", ""};
  }
}

Message MessageOf(int error, Doing doing, const std::string& file) {
  const std::string name = Quoted(file);
  const Localized outcome = OutcomeOf(doing);
  const auto make = [&](const std::string& german, const std::string& english) {
    return Message{name + ": " + german + std::string(outcome.In(Language::german)),
                   name + ": " + english + std::string(outcome.In(Language::english))};
  };
  switch (error) {
    case EISDIR:
      return make("Das ist ein Ordner. Nennen Sie eine Datei.", "This is a folder. Name a file.");
    case ENOENT:
    case ENOTDIR:
      if (doing == Doing::reading)
        return make("Die Datei gibt es nicht. Prüfen Sie den Namen.",
                    "There is no such file. Check the name.");
      return make("Den Ordner der Datei gibt es nicht (mehr). Legen Sie ihn an.",
                  "The folder of the file does not exist (any more). Create it.");
    case EACCES:
    case EPERM:
      if (doing == Doing::reading)
        return make("Die Datei darf nicht gelesen werden. Prüfen Sie ihre Rechte.",
                    "The file may not be read. Check its permissions.");
      return make(
          "Die Datei oder ihr Ordner ist schreibgeschützt. Prüfen Sie die Rechte, oder wählen Sie "
          "mit -o ein anderes Ziel.",
          "The file or its folder is read-only. Check the permissions, or choose another target "
          "with -o.");
    case EROFS:
      return make("Das Laufwerk ist schreibgeschützt. Wählen Sie mit -o ein anderes Ziel.",
                  "The drive is read-only. Choose another target with -o.");
    case ENOSPC:
    case EDQUOT:
      return make("Der Datenträger ist voll. Schaffen Sie Platz, und versuchen Sie es noch einmal.",
                  "The disk is full. Make room and try again.");
    case EFBIG:
      return make(
          "Die Datei würde größer, als hier erlaubt ist. Erhöhen Sie die Grenze (ulimit -f).",
          "The file would become larger than allowed here. Raise the limit (ulimit -f).");
    case ELOOP:
      return make("Die symbolischen Links führen im Kreis. Berichtigen Sie sie.",
                  "The symbolic links go in a circle. Correct them.");
    default:
      break;
  }
  const std::string system = SystemText(error);
  if (doing == Doing::reading)
    return make("Die Datei kann nicht gelesen werden (" + system + "). Prüfen Sie den Datenträger.",
                "The file cannot be read (" + system + "). Check the drive.");
  return make(
      "Die Datei kann nicht geschrieben werden (" + system + "). Prüfen Sie Ziel und Datenträger.",
      "The file cannot be written (" + system + "). Check the target and its drive.");
}

[[noreturn]] void Throw(int error, Doing doing, const std::string& file) {
  throw FileError(file, MessageOf(error, doing, file));
}

// Repeats a system call while signals interrupt it.
template <class Call>
int Uninterrupted(Call call) {
  int result;
  do result = call();
  while (result < 0 && errno == EINTR);
  return result;
}

// An open file, closed on destruction.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  // Closes now to see errors that some file systems report only on close. An interrupted close has
  // closed the file.
  bool Close() { return close(std::exchange(number_, -1)) == 0 || errno == EINTR; }

 private:
  int number_ = -1;
};

// During its lifetime, exceeding the file size limit makes the write fail instead of killing the
// process with a signal.
class NoFileSizeSignal {
 public:
  NoFileSizeSignal() {
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signal_, &former_);
  }
  NoFileSizeSignal(const NoFileSizeSignal&) = delete;
  NoFileSizeSignal& operator=(const NoFileSizeSignal&) = delete;
  ~NoFileSizeSignal() {
    const timespec noWait{};
    if (sigismember(&former_, SIGXFSZ) == 0) sigtimedwait(&signal_, nullptr, &noWait);
    pthread_sigmask(SIG_SETMASK, &former_, nullptr);
  }

 private:
  sigset_t signal_;
  sigset_t former_;
};

void WriteBytes(int descriptor, std::string_view bytes, Doing doing, const std::string& file) {
  const NoFileSizeSignal guard;
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0) {
      Throw(EIO, doing, file);  // would loop forever without an error
    } else if (errno != EINTR) {
      Throw(errno, doing, file);
    }
  }
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

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

// Gives each of two files the name of the other; false where the system cannot.
bool Exchange([[maybe_unused]] const std::string& a, [[maybe_unused]] const std::string& b) {
#ifdef RENAME_EXCHANGE
  return renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
#else
  return false;
#endif
}

// The unfinished file to remove when a signal ends the program. Of several written at once, only
// the first.
std::atomic<const char*> g_unfinished = nullptr;

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

// An output of WriteAll.
class Replacement : public Output {
 public:
  // Writes everything, so that only the renaming can fail.
  virtual void Flush() = 0;
  virtual void PlaceKeepingFormer() = 0;
  // Undoes PlaceKeepingFormer(), if that was called.
  virtual void PutBack() noexcept = 0;
  virtual void FlushFolder() = 0;
};

// Writes a temporary file beside the target and renames it over the target on commit.
class FileReplacement final : public Replacement {
 public:
  // `existing` is nullptr for a new file.
  FileReplacement(std::string file, std::string target, const struct stat* existing,
                  Durable durable)
      : file_(std::move(file)),
        target_(std::move(target)),
        exists_(existing != nullptr),
        durable_(durable == Durable::yes) {
    Create(existing == nullptr ? 0666 : 0600);
    try {
      if (existing != nullptr) TakeOver(*existing);
    } catch (...) {
      Remove();
      throw;
    }
  }
  ~FileReplacement() override { Remove(); }

  void append(std::string_view bytes) override {
    WriteBytes(temporary_.Number(), bytes, Doing::writing, file_);
  }

  void Commit() override {
    Flush();
    Place();
    if (durable_) FlushFolder();
  }

  void Flush() override {
    if ((durable_ && Uninterrupted([&] { return fsync(temporary_.Number()); }) != 0) ||
        !temporary_.Close())
      Throw(errno, Doing::writing, file_);
  }

  void PlaceKeepingFormer() override {
    // After an exchange, the temporary name is that of the old file.
    if (!exists_ || !Exchange(temporaryName_, target_)) {
      if (exists_) former_ = FormerCopy();
      Place();
    }
    placed_ = true;
  }

  void PutBack() noexcept override {
    if (!std::exchange(placed_, false)) return;
    if (!exists_)
      unlink(target_.c_str());
    else if (former_ != nullptr)
      rename(former_->temporaryName_.c_str(), target_.c_str());
    else
      rename(temporaryName_.c_str(), target_.c_str());
  }

  // Makes the rename survive a power failure.
  void FlushFolder() override {
    const Descriptor folder(Uninterrupted(
        [&] { return open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (folder.IsOpen()) Uninterrupted([&] { return fsync(folder.Number()); });
  }

 private:
  void Place() {
    if (rename(temporaryName_.c_str(), target_.c_str()) != 0) Throw(errno, Doing::writing, file_);
    Forget();
  }

  // Copies the old file where the file system cannot exchange two names.
  std::unique_ptr<FileReplacement> FormerCopy() const {
    struct stat status;
    if (stat(target_.c_str(), &status) != 0) Throw(errno, Doing::writing, file_);
    auto copy = std::make_unique<FileReplacement>(file_, target_, &status, Durable::yes);
    copy->append(ReadFile(target_));
    copy->Flush();
    return copy;
  }

  // An entirely new file gets the default permissions.
  void Create(mode_t mode) {
    constexpr int kMostTries = 100;
    for (int tries = 0; tries < kMostTries && !temporary_.IsOpen(); ++tries) {
      temporaryName_ = TemporaryName(FolderOf(target_));
      if (temporaryName_.empty()) break;
      const char* none = nullptr;
      g_unfinished.compare_exchange_strong(none, temporaryName_.c_str());
      temporary_ = Descriptor(Uninterrupted([&] {
        return open(temporaryName_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      }));
      if (temporary_.IsOpen()) return;
      const int error = errno;
      Forget();
      errno = error;
      if (error != EEXIST) break;
    }
    Throw(errno, Doing::writing, file_);
  }

  // Copies owner, access list and mode from the old file.
  void TakeOver(const struct stat& existing) {
    struct stat own;
    if (fstat(temporary_.Number(), &own) != 0) Throw(errno, Doing::writing, file_);
    if (own.st_uid != existing.st_uid || own.st_gid != existing.st_gid) {
      const auto give = [&] {
        return fchown(temporary_.Number(), existing.st_uid, existing.st_gid);
      };
      if (Uninterrupted(give) != 0) Throw(errno, Doing::writing, file_);
    }
    // Before the mode: with a list, the mode's group bits limit what the list grants; without one,
    // they are the group's permissions.
    if (const int error = CopyAccessList(target_, temporary_.Number()); error != 0)
      Throw(error, Doing::writing, file_);
    if (Uninterrupted([&] { return fchmod(temporary_.Number(), existing.st_mode & 07777); }) != 0)
      Throw(errno, Doing::writing, file_);
  }

  void Remove() {
    if (temporaryName_.empty()) return;
    unlink(temporaryName_.c_str());
    Forget();
  }
  // Forgets the temporary file, which is gone or was never made.
  void Forget() {
    const char* own = temporaryName_.c_str();
    g_unfinished.compare_exchange_strong(own, nullptr);
    temporaryName_.clear();
  }

  std::string file_;    // as named by the caller
  std::string target_;  // the file it leads to
  bool exists_;
  bool durable_;
  Descriptor temporary_;
  std::string temporaryName_;                // empty when there is nothing to remove
  bool placed_ = false;                      // by PlaceKeepingFormer()
  std::unique_ptr<FileReplacement> former_;  // a copy of the old file, if that was necessary
};

// During its lifetime, signals that end the program wait.
class NoEnd {
 public:
  NoEnd() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGXCPU}) sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, &former_);
  }
  NoEnd(const NoEnd&) = delete;
  NoEnd& operator=(const NoEnd&) = delete;
  ~NoEnd() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

 private:
  sigset_t former_;
};

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

void ExpectBytes(const std::string& file, const std::string& bytes) {
  if (ReadFile(file) == bytes) return;
  throw FileError(file, {Quoted(file) + ": Die Datei hat sich geändert, seit sie gelesen wurde. "
                                        "Es wurde nichts geändert. Versuchen Sie es noch einmal.",
                         Quoted(file) + ": The file has changed since it was read. Nothing was "
                                        "changed. Try again."});
}

constexpr std::size_t kNoLimit = std::string::npos;

// Reads everything from the descriptor; FileError beyond `most` bytes.
std::string ReadAll(int descriptor, std::size_t most, const std::string& file) {
  std::string text;
  const auto expectRoom = [&](std::size_t size) {
    if (size > most)
      throw FileError(file, {Quoted(file) + ": Die Datei ist zu groß; mehr als " +
                                 std::to_string(most) + " Bytes werden nicht gelesen.",
                             Quoted(file) + ": The file is too large; no more than " +
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

void RemoveUnfinishedFile() noexcept {
  const char* const file = g_unfinished;
  if (file != nullptr) unlink(file);
}

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
    throw FileError(file, {Quoted(file) + ": Das ist eine Pipe oder ein Gerät. Nennen Sie eine "
                                          "gewöhnliche Datei.",
                           Quoted(file) + ": This is a pipe or a device. Name a regular file."});
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

void WriteAll(const std::vector<FileChange>& changes) {
  std::vector<std::unique_ptr<Output>> outputs;
  std::vector<Replacement*> files;
  for (const FileChange& change : changes) {
    outputs.push_back(OpenOutput(change.file));
    outputs.back()->append(change.bytes);
    if (auto* const file = dynamic_cast<Replacement*>(outputs.back().get())) files.push_back(file);
  }
  for (Replacement* file : files) file->Flush();
  const NoEnd uninterrupted;
  try {
    for (const FileChange& change : changes)
      if (change.formerBytes) ExpectBytes(change.file, *change.formerBytes);
    for (Replacement* file : files) file->PlaceKeepingFormer();
    // What cannot be replaced cannot be taken back either.
    for (const auto& output : outputs)
      if (dynamic_cast<Replacement*>(output.get()) == nullptr) output->Commit();
  } catch (...) {
    for (auto file = files.rbegin(); file != files.rend(); ++file) (*file)->PutBack();
    throw;
  }
  for (Replacement* file : files) file->FlushFolder();
}

}  // namespace kvo::page
