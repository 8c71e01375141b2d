// The host's property bag of one control instance: texts under keys.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvo {

// The default of a write: a value equal to it is not stored. kAlwaysStored means no default.
using WriteDefault = std::optional<std::string_view>;
inline constexpr WriteDefault kAlwaysStored = std::nullopt;

class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  // The stored text, or the default when the key is absent; valid until the next call. Absent is
  // not empty: a stored empty text never turns into the default.
  std::string_view ReadProperty(std::string_view key, std::string_view readDefault) {
    return Find(key).value_or(readDefault);
  }

  // Decides alone what is stored: every value that does not equal its default.
  void WriteProperty(std::string_view key, std::string_view value, WriteDefault writeDefault) {
    if (writeDefault != value) Store(key, value);
  }

  // Reports a key that could not be read or assigned, before the load ends or skips it. For hosts
  // that keep an error log.
  virtual void KeyFailed(std::string_view /*key*/, const std::exception& /*error*/) {}

 protected:
  // Both may throw; the caller of the load or save gets the host's failure. The result of Find is
  // valid until the next call.
  virtual std::optional<std::string_view> Find(std::string_view key) = 0;
  virtual void Store(std::string_view key, std::string_view value) = 0;
};

// A bag in memory that keeps the order in which the keys were stored.
class MemoryBag : public PropertyBag {
 public:
  using Entry = std::pair<std::string, std::string>;

  MemoryBag() = default;
  explicit MemoryBag(std::vector<Entry> entries) : entries_(std::move(entries)) {}

  const std::vector<Entry>& Entries() const { return entries_; }

 protected:
  std::optional<std::string_view> Find(std::string_view key) override;
  void Store(std::string_view key, std::string_view value) override;

 private:
  std::vector<Entry> entries_;
};

}  // namespace kvo
