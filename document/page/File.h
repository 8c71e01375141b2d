// Reads pages from files, and writes them so that an old file is either replaced whole or left
// untouched.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

// Reads the whole file; "-" is standard input. Throws FileError.
std::string ReadFile(const std::string& file);

// Reads a file that someone else may have placed there. FileError for a pipe or device, which may
// never end, and beyond `most` bytes. "-" is standard input, with the same limit.
std::string ReadRegularFile(const std::string& file, std::size_t most);

// A sink whose contents appear at the target all at once with `Commit`, or never. Throws FileError,
// from append as well. Leaves nothing behind without a commit.
class Output : public Sink {
 public:
  virtual void Commit() = 0;
};

// Whether a file has to survive a power failure right after it was written. That takes several
// milliseconds for each, too long for thousands of files that can be made again.
enum class Durable { yes, no };

// Opens a file for writing; "-" is standard output. Writes a file beside its target, flushes it and
// renames it over the target; keeps mode, owner and access list of the old file and follows
// symbolic links. Writes directly, on commit, to standard output, to anything that is not a regular
// file (a pipe, a device), and to files the process has open (/dev/stdout, /dev/fd/N). Throws
// FileError at once for a folder or a file that may not be written.
std::unique_ptr<Output> OpenOutput(const std::string& file, Durable durable = Durable::yes);

// Writes a whole file through OpenOutput.
void WriteFile(const std::string& file, std::string_view bytes, Durable durable = Durable::yes);

// Commits the outputs of many files with few flushes. The guarantee is that of single ones: each
// old file stands whole until its new one is safely on the drive, and after `Finish` all new ones
// are.
class FileGroup {
 public:
  FileGroup() = default;
  FileGroup(const FileGroup&) = delete;
  FileGroup& operator=(const FileGroup&) = delete;
  ~FileGroup() { Finish(); }

  // Flushes what was appended to the outputs. Their Commit() then only puts them in place, and
  // throws if the flush failed.
  void Flush(std::span<Output* const> outputs);
  // Makes the committed outputs' new names survive a power failure.
  void Finish();

 private:
  std::set<std::string> folders_;
};

// A file and what it is to hold.
struct FileChange {
  std::string file;
  std::string bytes;
  std::optional<std::string> formerBytes = {};  // what was read from it, to write only over that
};

// Writes all files or none. Writes and flushes each beside its target first, then renames them all;
// when one cannot be renamed, puts back the others. Follows the rules of OpenOutput otherwise.
// Throws FileError, also for a file that no longer holds the bytes that were read from it.
void WriteAll(const std::vector<FileChange>& changes);

// Opens placeholders for those of the descriptors 0, 1 and 2 that the program was started without.
// Otherwise the next opened file would get such a number and receive the output meant for standard
// error. Reading and writing the placeholders fails, as with closed descriptors. Every program that
// writes files calls this first; ends the program on failure.
void OccupyStandardStreams();

}  // namespace kvo::page
