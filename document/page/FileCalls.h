// System calls on files, and their errors as messages; used by this folder's own sources.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

namespace kvo::page {

std::string QuotedFile(std::string_view file);

// `passing` writes to a target that cannot be replaced: a pipe, a device, standard output.
enum class Doing { reading, writing, passing };

// Throws a FileError with a message for the error of a system call.
[[noreturn]] void Throw(int error, Doing doing, const std::string& file);

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

// Writes all bytes. `file` is for the message.
void WriteBytes(int descriptor, std::string_view bytes, Doing doing, const std::string& file);

std::string FolderOf(const std::string& path);

}  // namespace kvo::page
