// Compares `kvo check` and `kvo save` on a folder of many pages with reading and copying its files.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <thread>

#include "bench/Sections.h"
#include "bench/Stopwatch.h"

namespace kvo::bench {
namespace {

namespace fs = std::filesystem;

// The goals.
constexpr double kMostOfReading = 1.5;
constexpr double kMostOfCopying = 1.5;

constexpr std::size_t kPages = 10'000;
constexpr std::size_t kControls = 10;  // in a page
constexpr std::size_t kPartsOfAControl = 3;
constexpr std::size_t kFilesOfAFlush = 256;

constexpr std::string_view kPart =
    R"(<tr>
  <td align="left" valign="top" bgcolor="#ffffff" style="padding:12px 20px 12px 20px;border-bottom:1px solid #dddddd;font-family:Tahoma,Arial,sans-serif;font-size:13px;line-height:18px;color:#333333;">
    <!--[if mso]><table width="560" cellpadding="0" cellspacing="0" border="0"><tr><td><![endif]-->
    <a href="https://shop.example/angebot?nr=4711&amp;quelle=newsletter" title="Zum Angebot"><img src="https://shop.example/bilder/4711.jpg" width="120" height="90" alt="Gartenstuhl &quot;Lausitz&quot;" border="0" style="display:block"></a>
    <h3 style="margin:0 0 6px 0;font-size:15px;color:#003366">Gartenst)"
    "\xC3\xBC"
    R"(hle</h3>
    <p>Wetterfest, stapelbar und in drei Farben lieferbar. Nur solange der Vorrat reicht!</p>
    <font size="1" color="#777777">inkl. MwSt., zzgl. <a href="https://shop.example/versand">Versand</a></font>
    <!--[if mso]></td></tr></table><![endif]-->
  </td>
</tr>
)";

std::string Page() {
  std::string page = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body><table>\r\n";
  for (std::size_t i = 0; i < kControls; ++i) {
    for (std::size_t part = 0; part < kPartsOfAControl; ++part) page += kPart;
    page +=
        R"(<tr><td><object classid="progid:KVOPDesignObjects.DTCPrint" id="Preis)" +
        std::to_string(i) +
        R"("><param name="value" value="#order.total#"><param name="format" value="#,##0.00"></object></td></tr>)"
        "\r\n";
  }
  return page + "</table></body></html>\r\n";
}

// A temporary folder of pages in ten subfolders.
class Pages {
 public:
  Pages() {
    std::string name = (fs::temp_directory_path() / "kvo-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder_ = name;
    const std::string page = Page();
    for (std::size_t i = 0; i < kPages; ++i) {
      const fs::path folder = folder_ / std::to_string(i % 10);
      fs::create_directory(folder);
      files_.push_back((folder / (std::to_string(i) + ".html")).string());
      std::ofstream(files_.back()) << page;
    }
  }
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;
  ~Pages() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string Folder() const { return folder_.string(); }
  const std::vector<std::string>& Files() const { return files_; }

 private:
  fs::path folder_;
  std::vector<std::string> files_;
};

void Expect(bool good, const char* what) {
  if (!good) throw std::runtime_error(what);
}

void Start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));  // not written to
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 1;
  Expect(posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0 &&
             waitpid(child, &status, 0) == child && status == 0,
         "kvo failed");
  posix_spawn_file_actions_destroy(&actions);
}

// Calls `work` for the files [begin, end), on so many cores.
void Spread(std::size_t cores, std::size_t begin, std::size_t end,
            const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next = begin;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < cores; ++i)
    threads.emplace_back([&] {
      for (std::size_t at = next++; at < end; at = next++) work(at);
    });
  for (std::thread& thread : threads) thread.join();
}

std::string ReadWhole(const std::string& file) {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  std::string bytes(std::size_t{64} << 10U, '\0');
  const ssize_t size = read(descriptor, bytes.data(), bytes.size());
  Expect(size > 0 && close(descriptor) == 0, "reading failed");
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

void ReadAll(const Pages& pages, std::size_t cores) {
  Spread(cores, 0, kPages,
         [&](std::size_t at) { benchmark::DoNotOptimize(ReadWhole(pages.Files()[at]).size()); });
}

// Drops the files from the file cache, so that the next reading waits for the drive.
void Forget(const Pages& pages) {
  for (const std::string& file : pages.Files()) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    Expect(fdatasync(descriptor) == 0 &&
               posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED) == 0 && close(descriptor) == 0,
           "forgetting failed");
  }
}

enum class Flush { each, group };

// Copies each page over itself, so that a power cut leaves the old or the new file.
void CopyAll(const Pages& pages, std::size_t cores, Flush flush) {
  const auto aside = [&](std::size_t at) { return pages.Files()[at] + ".new"; };
  const auto put = [&](std::size_t at) {
    Expect(rename(aside(at).c_str(), pages.Files()[at].c_str()) == 0, "renaming failed");
  };
  const int folder = open(pages.Folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (std::size_t begin = 0; begin < kPages; begin += kFilesOfAFlush) {
    const std::size_t end = std::min(begin + kFilesOfAFlush, kPages);
    Spread(cores, begin, end, [&](std::size_t at) {
      const std::string bytes = ReadWhole(pages.Files()[at]);
      const int copy = open(aside(at).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
      Expect(write(copy, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                 (flush == Flush::group || fsync(copy) == 0) && close(copy) == 0,
             "writing failed");
      if (flush == Flush::each) put(at);
    });
    if (flush == Flush::each) continue;
    Expect(syncfs(folder) == 0, "flushing failed");
    for (std::size_t at = begin; at < end; ++at) put(at);
  }
  Expect(syncfs(folder) == 0 && close(folder) == 0, "flushing failed");
}

}  // namespace

void MeasureFolders(Report& report, const std::string& kvo) {
  const Pages pages;
  const std::size_t cores = std::max(2U, std::thread::hardware_concurrency());
  Start({kvo, "save", pages.Folder()});  // from now on, saving gives the same bytes
  const char* const kReadDrive = "reading from the drive, all cores";
  const char* const kCheckDrive = "`kvo check`, from the drive";
  const char* const kReadOne = "reading from the cache, one core";
  const char* const kRead = "reading from the cache, all cores";
  const char* const kCheck = "`kvo check`, from the cache";
  const char* const kCopyEach = "copying, all cores, each file flushed";
  const char* const kCopy = "copying, all cores, flushed in groups";
  const char* const kSave = "`kvo save`";
  Stopwatch stopwatch(Clock::wall);
  const auto forget = [&] { Forget(pages); };
  const auto check = [&] { Start({kvo, "check", pages.Folder()}); };
  stopwatch.Add(kReadDrive, forget, [&] { ReadAll(pages, 2 * cores); });
  stopwatch.Add(kCheckDrive, forget, check);
  stopwatch.Add(kReadOne, [&] { ReadAll(pages, 1); });
  stopwatch.Add(kRead, [&] { ReadAll(pages, cores); });
  stopwatch.Add(kCheck, check);
  stopwatch.Add(kCopyEach, [&] { CopyAll(pages, cores, Flush::each); });
  stopwatch.Add(kCopy, [&] { CopyAll(pages, cores, Flush::group); });
  stopwatch.Add(kSave, [&] { Start({kvo, "save", pages.Folder()}); });
  const Times times = stopwatch.Run();

  report.Heading("Folders");
  report.Paragraph(
      "Wall-clock time for a folder of " + std::to_string(kPages) + " pages of " +
      Size(static_cast<double>(ReadWhole(pages.Files()[0]).size())) + " with " +
      std::to_string(kControls) +
      " controls each. `kvo check` is compared with reading the files, `kvo save` with copying "
      "each over itself with the same guarantee: written beside, flushed to the "
      "drive and renamed. The goals are at most " +
      Figure(kMostOfReading) + " and " + Figure(kMostOfCopying) +
      " times as long as that takes on all cores.");
  const auto row = [&](const char* name, const std::string& reading, const std::string& copying) {
    return std::vector<std::string>{name, Duration(times.at(name)), reading, copying};
  };
  const double fromDrive = times.at(kCheckDrive) / times.at(kReadDrive);
  const double fromCache = times.at(kCheck) / times.at(kRead);
  const double save = times.at(kSave) / times.at(kCopy);
  report.Table(
      {"work", "time", "/ reading", "/ copying"},
      {row(kReadDrive, "1", ""), row(kCheckDrive, report.AtMost(fromDrive, kMostOfReading), ""),
       row(kReadOne, Figure(times.at(kReadOne) / times.at(kRead)), ""), row(kRead, "1", ""),
       row(kCheck, report.AtMost(fromCache, kMostOfReading), ""),
       row(kCopyEach, "", Figure(times.at(kCopyEach) / times.at(kCopy))), row(kCopy, "", "1"),
       row(kSave, "", report.AtMost(save, kMostOfCopying))});
}

}  // namespace kvo::bench
