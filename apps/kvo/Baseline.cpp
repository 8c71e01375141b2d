#include "apps/kvo/Baseline.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "document/page/File.h"

namespace kvo {
namespace {

constexpr std::size_t kMostBytes = 64 << 20;
constexpr int kVersion = 1;

// FNV-1a. Skips CR, since version control may change the ends of lines.
std::string HashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text)
    if (c != '\r') hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  std::string hex;
  for (int shift = 60; shift >= 0; shift -= 4) hex += "0123456789abcdef"[(hash >> shift) & 0xFU];
  return hex;
}

}  // namespace

Baseline::Baseline(std::string file) : file_(std::move(file)) {}

std::string Baseline::NameOf(const std::string& page) const {
  namespace fs = std::filesystem;
  if (page == "-") return ShownName(page);
  const fs::path folder = fs::absolute(file_).lexically_normal().parent_path();
  const fs::path path = fs::absolute(page).lexically_normal();
  const fs::path relative = path.lexically_relative(folder);
  return (relative.empty() ? path : relative).generic_string();
}

Baseline::Key Baseline::KeyOf(const std::string& page, const page::Page& contents,
                              const page::Problem& problem) const {
  const std::size_t begin = std::min(problem.offset, contents.Bytes().size());
  const std::size_t end = std::max(begin, problem.end);
  return {page, std::string(problem.rule), problem.id,
          HashOf(contents.Bytes().substr(begin, end - begin))};
}

void Baseline::Read() {
  const auto fail = [this] {
    throw Failure(Say({"„{}“ ist keine Liste bekannter Probleme. Mit --write-baseline neu "
                       "schreiben.",
                       "\"{}\" is no list of known problems. Write it anew with "
                       "--write-baseline."},
                      {file_}));
  };
  try {
    const Json root = Json::parse(page::ReadRegularFile(file_, kMostBytes));
    if (root.at("version") != kVersion) fail();
    for (const Json& entry : root.at("problems")) {
      const auto count = entry.value("count", std::size_t{1});
      left_[{entry.at("file"), entry.at("rule"), entry.at("id"), entry.at("text")}] += count;
    }
  } catch (const Json::exception&) {
    fail();
  }
}

page::Problems Baseline::NewOf(const std::string& page, const page::Page& contents,
                               page::Problems problems) {
  const std::string name = NameOf(page);
  asked_.insert(name);
  std::erase_if(problems, [&](const page::Problem& problem) {
    const auto known = left_.find(KeyOf(name, contents, problem));
    if (known == left_.end() || known->second == 0) return false;
    --known->second;
    return true;
  });
  return problems;
}

std::vector<std::string> Baseline::Gone() const {
  std::vector<std::string> lines;
  for (const auto& [key, count] : left_) {
    if (count == 0 || !asked_.contains(key.page)) continue;
    std::string line = key.page + ": [" + key.rule + ']';
    if (!key.id.empty()) line += " \"" + key.id + '"';
    if (count > 1) line += " (" + std::to_string(count) + ')';
    lines.push_back(std::move(line));
  }
  return lines;
}

void Baseline::Note(const std::string& page, const page::Page& contents,
                    const page::Problems& problems) {
  const std::string name = NameOf(page);
  for (const page::Problem& problem : problems) ++left_[KeyOf(name, contents, problem)];
  noted_ += problems.size();
}

void Baseline::Write() const {
  Json problems = Json::array();
  for (const auto& [key, count] : left_) {
    Json entry = {{"file", key.page}, {"rule", key.rule}, {"id", key.id}, {"text", key.text}};
    if (count > 1) entry["count"] = count;
    problems.push_back(std::move(entry));
  }
  const Json root = {{"version", kVersion}, {"problems", std::move(problems)}};
  page::WriteFile(file_, root.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
}

}  // namespace kvo
