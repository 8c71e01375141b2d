// Reading pages from files and writing them so that an old file is either replaced whole or stands
// untouched.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "document/page/Problem.h"
#include "document/page/Sink.h"

namespace kvo::page {

// A file that cannot be read or written. The message names the file and says what to do.
class FileError : public LocalizedError {
 public:
  FileError(std::string file, Message message)
      : LocalizedError(std::move(message)), file_(std::move(file)) {}

  const std::string& File() const { return file_; }

 private:
  std::string file_;
};

// The whole file; "-" is standard input. Throws FileError.
std::string ReadFile(const std::string& file);

// The same of a file that somebody else may have put there: no pipe or device, which may never end,
// and at most `most` bytes; else a FileError. "-" is standard input, with the same limit.
std::string ReadRegularFile(const std::string& file, std::size_t most);

// A sink whose contents appear at their place with `Commit`, all at once, or never. Throws
// FileError, also from append. Without a commit nothing is left behind.
class Output : public Sink {
 public:
  virtual void Commit() = 0;
};

// "-" is standard output (held back until the commit). A file is written beside its place, flushed
// and renamed over it; mode, owner and access list of the old file stay, symbolic links are
// followed. What is no regular file (a pipe, a device), and what the process has open already
// (/dev/stdout, /dev/fd/N), is written to directly, at the commit. A file that may not be written,
// or a folder, is a FileError at once.
std::unique_ptr<Output> OpenOutput(const std::string& file);

// Writes a whole file that way.
void WriteFile(const std::string& file, std::string_view bytes);

// Removes the file that is just being written beside its place, for programs that are about to be
// ended by a signal: it may be called in a signal's handler.
void RemoveUnfinishedFile() noexcept;

// For the start of every program that writes files: occupies those of the descriptors 0, 1 and 2
// that the program was started without. Otherwise the next file that is opened gets such a number,
// and what is meant for standard error ends up in it. Reading from them and writing to them fails,
// as it does with closed ones. To be called first of all; ends the program when that is not
// possible.
void OccupyStandardStreams();

}  // namespace kvo::page
