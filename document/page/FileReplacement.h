// A file written beside its target and renamed over it; used by this folder's own sources.
#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>
#include <string_view>

#include "document/page/File.h"
#include "document/page/FileCalls.h"
#include "document/page/UnfinishedFile.h"

namespace kvo::page {

class FileReplacement final : public Output {
 public:
  // `existing` is nullptr for a new file.
  FileReplacement(std::string file, std::string target, const struct stat* existing,
                  Durable durable);

  void append(std::string_view bytes) override;
  void Commit() override;

  // The steps of a commit, for those of many files at once. `Flush` does what may still fail for
  // lack of space, and need not be called twice.
  void Flush();
  void FlushFolder() const;
  // Flushing was left to FileGroup, which also flushes the folder; the commit fails with `error`
  // unless that is 0.
  void NoteFlushed(int error);
  bool IsDurable() const { return durable_; }
  const std::string& TargetPath() const { return target_; }
  int Number() const { return temporary_.Number(); }

  // Puts the file in place, and takes it back if it was. After that, the destructor removes what is
  // left of the old or the new file.
  void PlaceKeepingFormer();
  void PutBack() noexcept;

 private:
  void Create(mode_t mode);
  void TakeOver(const struct stat& existing);
  void Place();
  std::unique_ptr<FileReplacement> FormerCopy() const;

  std::string file_;    // as named by the caller
  std::string target_;  // the file it leads to
  bool exists_;
  bool durable_;
  Descriptor temporary_;
  UnfinishedFile unfinished_;
  bool flushed_ = false;
  bool inGroup_ = false;
  int flushError_ = 0;
  bool placed_ = false;                      // by PlaceKeepingFormer()
  std::unique_ptr<FileReplacement> former_;  // a copy of the old file, if that was necessary
};

}  // namespace kvo::page
