#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <initializer_list>
#include <memory>

#include "document/page/File.h"
#include "document/page/FileCalls.h"
#include "document/page/FileReplacement.h"

namespace kvo::page {
namespace {

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

void ExpectBytes(const std::string& file, const std::string& bytes) {
  if (ReadFile(file) == bytes) return;
  throw FileError(file,
                  {QuotedFile(file) + ": Die Datei hat sich geändert, seit sie gelesen wurde. "
                                      "Es wurde nichts geändert. Versuchen Sie es noch einmal.",
                   QuotedFile(file) + ": The file has changed since it was read. Nothing was "
                                      "changed. Try again."});
}

}  // namespace

void WriteAll(const std::vector<FileChange>& changes) {
  std::vector<std::unique_ptr<Output>> outputs;
  std::vector<FileReplacement*> files;
  for (const FileChange& change : changes) {
    outputs.push_back(OpenOutput(change.file));
    outputs.back()->append(change.bytes);
    if (auto* const file = dynamic_cast<FileReplacement*>(outputs.back().get()))
      files.push_back(file);
  }
  for (FileReplacement* file : files) file->Flush();
  const NoEnd uninterrupted;
  try {
    for (const FileChange& change : changes)
      if (change.formerBytes) ExpectBytes(change.file, *change.formerBytes);
    for (FileReplacement* file : files) file->PlaceKeepingFormer();
    // What cannot be replaced cannot be taken back either.
    for (const auto& output : outputs)
      if (dynamic_cast<FileReplacement*>(output.get()) == nullptr) output->Commit();
  } catch (...) {
    for (auto file = files.rbegin(); file != files.rend(); ++file) (*file)->PutBack();
    throw;
  }
  for (FileReplacement* file : files) file->FlushFolder();
}

}  // namespace kvo::page
