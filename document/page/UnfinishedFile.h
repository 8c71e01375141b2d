// Temporary files that a signal which ends the program removes.
#pragma once

#include <sys/types.h>

#include <string>

namespace kvo::page {

struct UnfinishedEntry;

// A temporary file; removed on destruction unless it got another name. Any number may exist, on
// several threads.
class UnfinishedFile {
 public:
  UnfinishedFile() = default;
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  ~UnfinishedFile() { Remove(); }

  // Creates the file for writing. Returns its descriptor, or -1 with errno: it must not exist yet.
  // Does not return once RemoveUnfinishedFiles() was called.
  int Create(const std::string& name, mode_t mode);
  // Of the created file.
  const char* Name() const;
  void Remove();
  // The file has another name now.
  void Forget();

 private:
  UnfinishedEntry* entry_ = nullptr;  // nullptr for none
};

// Removes all of them, for a signal handler that is about to end the program. The signals that it
// handles must be blocked in all threads but one.
void RemoveUnfinishedFiles() noexcept;

}  // namespace kvo::page
