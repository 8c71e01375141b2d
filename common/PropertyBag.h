// The host's property bag of one control instance: texts under keys.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/Variant.h"

namespace kvo {

// The default of a write: a value equal to it is not stored. kAlwaysStored is "no default".
using WriteDefault = std::optional<std::string_view>;
inline constexpr WriteDefault kAlwaysStored = std::nullopt;

class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  // Reads the stored value, or the default when the key is absent, into `value`. Absent is not
  // empty: a stored empty text never turns into the default.
  void ReadProperty(std::string_view key, std::string_view readDefault, Variant& value) {
    if (!Find(key, value)) value.AssignText(readDefault);
  }

  // The one place of the rule: equal to its default is not stored, no default is always stored.
  void WriteProperty(std::string_view key, std::string_view value, WriteDefault writeDefault) {
    if (writeDefault != value) Store(key, value);
  }

 protected:
  // Either may throw; the failure is the host's and reaches the caller of the load or save.
  // Find puts the value of a stored key into `value` and answers whether there is one.
  virtual bool Find(std::string_view key, Variant& value) = 0;
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
  bool Find(std::string_view key, Variant& value) override;
  void Store(std::string_view key, std::string_view value) override;

 private:
  std::vector<Entry> entries_;
  std::size_t next_ = 0;  // where the last hit ended: keys are mostly asked for in stored order
};

}  // namespace kvo
