#include "document/page/FileCalls.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <cstring>

#include "document/page/File.h"

namespace kvo::page {
namespace {

// Returns the system's text for an error that has no advice of its own; in English where possible.
std::string SystemText(int error) {
#ifdef __GLIBC__
  const char* const text = strerrordesc_np(error);
#else
  const char* const text = std::strerror(error);
#endif
  return text != nullptr ? text : "?";
}

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
  const std::string name = QuotedFile(file);
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

}  // namespace

std::string QuotedFile(std::string_view file) { return '"' + std::string(file) + '"'; }

void Throw(int error, Doing doing, const std::string& file) {
  throw FileError(file, MessageOf(error, doing, file));
}

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

}  // namespace kvo::page
