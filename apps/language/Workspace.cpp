#include "apps/language/Workspace.h"

#include <algorithm>
#include <filesystem>

#include "apps/language/Framing.h"
#include "apps/language/Uri.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"

namespace kvo::language {
namespace {

namespace fs = std::filesystem;

// Clients write one address in several ways.
std::string KeyOf(const std::string& uri) {
  const auto path = PathOf(uri);
  return path ? fs::path(*path).lexically_normal().string() : uri;
}

bool IsBelow(const std::string& path, const std::string& folder) {
  return path.starts_with(folder) &&
         (folder.ends_with('/') || path.substr(folder.size(), 1) == "/");
}

}  // namespace

void Workspace::AddFolder(const std::string& uri) {
  auto path = PathOf(uri);
  if (!path) return;
  while (path->size() > 1 && path->ends_with('/')) path->pop_back();
  if (std::ranges::find(folders_, *path) == folders_.end()) folders_.push_back(*std::move(path));
}

void Workspace::RemoveFolder(const std::string& uri) {
  if (const auto path = PathOf(uri)) std::erase(folders_, *path);
}

OpenText& Workspace::Open(const std::string& uri, std::int64_t version, std::string utf8) {
  const auto [entry, isNew] = open_.insert_or_assign(
      KeyOf(uri), OpenText{uri, version, OpenPage(std::move(utf8), units_), std::nullopt});
  return entry->second;
}

void Workspace::Close(const std::string& uri) { open_.erase(KeyOf(uri)); }

OpenText* Workspace::Find(const std::string& uri) {
  const auto text = open_.find(KeyOf(uri));
  return text == open_.end() ? nullptr : &text->second;
}

std::vector<OpenText*> Workspace::OpenTexts() {
  std::vector<OpenText*> all;
  for (auto& [key, text] : open_) all.push_back(&text);
  return all;
}

bool Workspace::IsOffice(const std::string& uri) {
  const auto path = PathOf(uri);
  return path && fs::path(*path).filename() == office::kOfficeFile;
}

const OfficeText* Workspace::OfficeBeside(const std::string& uri) {
  const auto page = PathOf(uri);
  if (!page) return nullptr;
  const std::string path = fs::path(*page).replace_filename(office::kOfficeFile).string();
  std::optional<OfficeText>& known = offices_[path];
  std::string contents;
  if (const OpenText* open = Find(UriOf(path))) {
    contents = open->page.Utf8();
  } else if (std::error_code ignored; !fs::exists(path, ignored)) {
    known.reset();
    return nullptr;
  } else {
    try {
      contents = page::ReadRegularFile(path, office::kLargestJsonFile);
    } catch (const page::FileError& error) {
      known = {UriOf(path), {}, OpenPage({}, units_), nullptr, {}};
      page::ProblemList problems;
      problems.Add(0, office::kOfficeFileRule, {}, error.What());
      known->problems = problems.Take({}, {});
      return &*known;
    }
  }
  if (!known || known->contents != contents) known = ReadOfficeText(path, std::move(contents));
  return &*known;
}

OfficeText Workspace::ReadOfficeText(const std::string& path, std::string contents) const {
  OfficeText read{UriOf(path), std::move(contents), OpenPage({}, units_), nullptr, {}};
  read.text = OpenPage(read.contents, units_);
  try {
    read.office = std::make_shared<office::Office>(office::ReadOffice(read.contents, path));
  } catch (const office::JsonFileError& error) {
    read.problems = error.Problems();
  }
  return read;
}

std::string Workspace::FolderAround(const std::string& path) const {
  std::string around;
  for (const std::string& folder : folders_)
    if (IsBelow(path, folder) && folder.size() > around.size()) around = folder;
  return around.empty() ? fs::path(path).parent_path().string() : around;
}

void Workspace::ForEachPageAround(
    const std::string& uri,
    const std::function<void(const std::string& uri, const OpenPage&)>& each) {
  std::vector<std::string> uris;
  if (!IsOffice(uri)) uris.push_back(uri);
  if (const auto path = PathOf(uri))
    for (const std::string& file : pagesIn_(FolderAround(*path)))
      if (KeyOf(UriOf(file)) != KeyOf(uri)) uris.push_back(UriOf(file));
  for (const std::string& other : uris) {
    if (const OpenText* open = Find(other)) {
      each(open->uri, open->page);
      continue;
    }
    const auto path = PathOf(other);
    if (!path) continue;
    try {
      each(other, OpenPage::OfFile(page::Page(page::ReadRegularFile(*path, kMostContent)), units_));
    } catch (const page::FileError&) {
      continue;  // cannot be opened either
    }
  }
}

}  // namespace kvo::language
