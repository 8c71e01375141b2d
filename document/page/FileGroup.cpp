#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <vector>

#include "document/page/File.h"
#include "document/page/FileCalls.h"
#include "document/page/FileReplacement.h"

namespace kvo::page {
namespace {

// Fewer are flushed one by one: a flush of the whole drive also waits for what others wrote.
constexpr std::size_t kFewest = 8;

// Whether flushing the whole drive is known to do what fsync does for each of its files. Network
// and user-space drives may answer without asking their server.
bool FlushesWhole(int descriptor) {
  constexpr std::array<long, 5> kDrives = {0xEF53, 0x58465342, 0x9123683E, 0xF2F52010,
                                           0x01021994};  // ext4, XFS, Btrfs, F2FS, tmpfs
  struct statfs status;
  return fstatfs(descriptor, &status) == 0 &&
         std::ranges::find(kDrives, static_cast<long>(status.f_type)) != kDrives.end();
}

// Flushes files of one drive. Returns 0 or an error for all of them.
int FlushDrive(int descriptor) {
  return Uninterrupted([&] { return syncfs(descriptor); }) == 0 ? 0 : errno;
}

// Returns the error of a file that was flushed with its drive, or 0. Kernels before 5.8 report
// errors only here.
int WrittenError(int descriptor) {
  const auto wait = [&] {
    return sync_file_range(
        descriptor, 0, 0,
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
  };
  return Uninterrupted(wait) == 0 ? 0 : errno;
}

int FlushFile(int descriptor) {
  return Uninterrupted([&] { return fsync(descriptor); }) == 0 ? 0 : errno;
}

}  // namespace

void FileGroup::Flush(std::span<Output* const> outputs) {
  std::map<dev_t, std::vector<FileReplacement*>> drives;
  for (Output* output : outputs) {
    auto* const file = dynamic_cast<FileReplacement*>(output);
    if (file == nullptr || !file->IsDurable()) continue;
    struct stat status;
    const bool known = fstat(file->Number(), &status) == 0;
    drives[known ? status.st_dev : 0].push_back(file);
    folders_.insert(FolderOf(file->TargetPath()));
  }
  for (const auto& [device, files] : drives) {
    const bool whole =
        device != 0 && files.size() >= kFewest && FlushesWhole(files.front()->Number());
    const int error = whole ? FlushDrive(files.front()->Number()) : 0;
    for (FileReplacement* file : files) {
      if (error != 0)
        file->NoteFlushed(error);
      else
        file->NoteFlushed(whole ? WrittenError(file->Number()) : FlushFile(file->Number()));
    }
  }
}

void FileGroup::Finish() {
  for (const std::string& folder : folders_) {
    const Descriptor open(
        Uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (open.IsOpen()) FlushFile(open.Number());
  }
  folders_.clear();
}

}  // namespace kvo::page
