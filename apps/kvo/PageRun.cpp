#include "apps/kvo/PageRun.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <utility>

#include "document/page/File.h"

namespace kvo {
namespace {

constexpr std::string_view kStandardStream = "-";

// Identifies a file, whatever its name.
using FileIdentity = std::pair<dev_t, ino_t>;

// Returns a file's identity; nothing if it does not exist or is not a regular file. "-" is the
// given stream.
std::optional<FileIdentity> IdentityOf(const std::string& file, int stream) {
  struct stat status;
  const bool found =
      file == kStandardStream ? fstat(stream, &status) == 0 : stat(file.c_str(), &status) == 0;
  if (!found || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity(status.st_dev, status.st_ino);
}

// Returns a target's name for messages.
std::string ShownTarget(const std::string& target) {
  return target == kStandardStream ? "<stdout>" : target;
}

}  // namespace

void Progress::Next(const std::string& name) {
  ++current_;
  const Clock::time_point now = Clock::now();
  if (now - told_ < std::chrono::seconds(1)) return;
  told_ = now;
  Tell(Say({"kvo: {} von {}: {}", "kvo: {} of {}: {}"},
           {std::to_string(current_), std::to_string(total_()), name}));
}

std::string ShownName(const std::string& file) {
  return file == kStandardStream ? "<stdin>" : file;
}

std::optional<std::string> FileBeside(const std::string& page, std::string_view name) {
  if (page == kStandardStream) return std::nullopt;
  const std::filesystem::path beside = std::filesystem::path(page).replace_filename(name);
  std::error_code ignored;
  if (!std::filesystem::exists(beside, ignored)) return std::nullopt;
  return beside.string();
}

std::string FileNamePart(std::string_view name) {
  constexpr std::size_t kMost = 100;
  const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; };
  if (name.size() > kMost) {
    std::size_t end = kMost;  // do not cut a character in half
    while (end > 0 && isInside(name[end])) --end;
    name = name.substr(0, end);
  }
  std::string safe;
  for (const char c : name) {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' ||
                       static_cast<unsigned char>(c) >= 0x80;
    safe += plain ? c : '_';
  }
  return safe;
}

ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<PageResult(const std::string& page)>& work) {
  ExitCode code = ExitCode::good;
  Progress progress([&] { return static_cast<std::int64_t>(pages.size()); });
  for (const std::string& file : pages) {
    progress.Next(ShownName(file));
    try {
      const PageResult result = work(file);
      if (result.show) result.show();
      code = Worse(code, result.code);
    } catch (const page::FileError& error) {
      PrintError(error.Text(UserLanguage()));
      code = ExitCode::failure;
    }
  }
  return code;
}

std::vector<std::string> Targets(const NamedPages& pages, const std::string& output,
                                 OverPage over) {
  std::error_code ignored;
  const bool folder = output != kStandardStream && !output.empty() &&
                      (output.ends_with('/') || std::filesystem::is_directory(output, ignored));
  if (!output.empty() && !folder && pages.size() > 1)
    throw Failure(Say({"Mehrere Seiten passen nicht in „{}“. Hinter -o einen vorhandenen Ordner "
                       "angeben.",
                       "Several pages do not fit into \"{}\". Name an existing folder behind -o."},
                      {output}));
  std::vector<std::string> targets;
  std::map<std::string, std::string> taken;
  for (const auto& [file, below] : pages) {
    std::string target = output.empty() ? file : output;
    if (folder) {
      if (file == kStandardStream)
        throw Failure(Say({"Die Standardeingabe hat keinen Dateinamen. Hinter -o eine Datei "
                           "angeben statt des Ordners „{}“.",
                           "Standard input has no file name. Name a file behind -o instead of the "
                           "folder \"{}\"."},
                          {output}));
      target = (std::filesystem::path(output) / below).string();
    }
    const auto [other, isNew] = taken.emplace(target, file);
    if (!isNew)
      throw Failure(Say({"„{}“ und „{}“ würden beide nach „{}“ geschrieben. Einzeln aufrufen.",
                         "\"{}\" and \"{}\" would both be written to \"{}\". Call kvo for each."},
                        {other->second, file, target}));
    targets.push_back(target);
  }
  ProtectPages(FilesOf(pages), targets, over);
  for (std::size_t i = 0; folder && i < pages.size(); ++i)
    if (std::filesystem::path(pages[i].below).has_parent_path())
      MakeFolder(std::filesystem::path(targets[i]).parent_path().string());
  return targets;
}

void ProtectPages(const std::vector<std::string>& pages, const std::vector<std::string>& targets,
                  OverPage over) {
  // A page cannot be replaced on standard output, which is not written in place.
  const auto inPlace = [over](const std::string& page, const std::string& target) {
    return over == OverPage::itself && target == page && target != kStandardStream;
  };
  if (std::ranges::equal(pages, targets, inPlace)) return;
  std::map<FileIdentity, std::string> sources;
  for (const std::string& file : pages)
    if (const auto identity = IdentityOf(file, STDIN_FILENO)) sources.emplace(*identity, file);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const std::string& target = targets[i];
    const auto identity = IdentityOf(target, STDOUT_FILENO);
    if (!identity || !sources.contains(*identity)) continue;
    const bool own = over == OverPage::itself && target != kStandardStream &&
                     identity == IdentityOf(pages[i], STDIN_FILENO);
    if (own) continue;
    throw Failure(Say({"„{}“ ist die Seite „{}“ selbst, und die ginge verloren. Hinter -o ein "
                       "anderes Ziel angeben.",
                       "\"{}\" is the page \"{}\" itself, which would be lost. Name another target "
                       "behind -o."},
                      {ShownTarget(target), ShownName(sources.at(*identity))}));
  }
}

ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write) {
  const page::Page page(page::ReadFile(file));
  const auto output = page::OpenOutput(target);
  const page::Problems problems = write(page, *output);
  ShowProblems(Stream::error, ShownName(file), problems);
  if (page::HasErrors(problems)) {
    PrintError(Say({"{} wurde nicht geschrieben; erst die genannten Fehler beheben.",
                    "{} was not written; mend the errors named above first."},
                   {target == kStandardStream ? Say({"Die Ausgabe", "The output"}) : target}));
    return ExitCode::problemsFound;
  }
  output->Commit();
  return ExitCode::good;
}

ExitCode WritePages(const NamedPages& pages, const std::vector<std::string>& targets,
                    const PageWriter& write) {
  using Written = std::map<FileIdentity, std::string>;
  Written written;
  auto next = targets.begin();
  const auto writeNext = [&](const std::string& file) {
    const std::string& target = *next++;
    if (target == file) return WritePage(file, target, write);
    const auto taken = written.find(IdentityOf(target, STDOUT_FILENO).value_or(FileIdentity()));
    if (taken != written.end()) {
      PrintError(Say({"„{}“ wurde nicht geschrieben: dort steht schon, was aus „{}“ wurde. Einzeln "
                      "aufrufen.",
                      "\"{}\" was not written: what \"{}\" became is there already. Call kvo for "
                      "each."},
                     {target, taken->second}));
      return ExitCode::failure;
    }
    // Allocated in advance: nothing may fail once the page is in place.
    Written::node_type entry = Written{{FileIdentity(), file}}.extract(FileIdentity());
    const ExitCode code = WritePage(file, target, write);
    if (const auto identity = IdentityOf(target, STDOUT_FILENO);
        identity && code == ExitCode::good) {
      entry.key() = *identity;
      written.insert(std::move(entry));
    }
    return code;
  };
  return ForEachPage(FilesOf(pages),
                     [&](const std::string& file) { return PageResult{writeNext(file)}; });
}

void MakeFolder(const std::string& folder) {
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  if (failed)
    throw Failure(Say({"Der Ordner „{}“ lässt sich nicht anlegen: {}. Einen anderen hinter -o "
                       "angeben.",
                       "The folder \"{}\" can't be made: {}. Name another one behind -o."},
                      {folder, failed.message()}));
}

}  // namespace kvo
