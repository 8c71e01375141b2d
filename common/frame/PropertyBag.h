// The host's property bag of one control instance: texts under keys.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Variant.h"

namespace kvo {

// The default of a write: a value equal to it is not stored. kAlwaysStored is "no default".
using WriteDefault = std::optional<std::string_view>;
inline constexpr WriteDefault kAlwaysStored = std::nullopt;

// A value on its way out of a bag: mostly a text, which is then not copied, or any other value.
class BagValue {
 public:
  // The text must live until the value is read.
  void Set(std::string_view text) {
    text_ = text;
    isText_ = true;
  }
  void Set(Variant value) {
    value_ = std::move(value);
    isText_ = false;
  }

  // Converts as an assignment does; valid until the next call.
  std::string_view Text() {
    if (!isText_) Set(std::string_view(converted_ = ToText(std::move(value_))));
    return text_;
  }
  Variant Take() { return isText_ ? Variant(text_) : std::move(value_); }

 private:
  bool isText_ = true;
  std::string_view text_;
  Variant value_;
  std::string converted_;
};

class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  // Reads the stored value, or the default when the key is absent, into `value`. Absent is not
  // empty: a stored empty text never turns into the default.
  void ReadProperty(std::string_view key, std::string_view readDefault, BagValue& value) {
    if (!Find(key, value)) value.Set(readDefault);
  }

  // The one place of the rule: equal to its default is not stored, no default is always stored.
  void WriteProperty(std::string_view key, std::string_view value, WriteDefault writeDefault) {
    if (writeDefault != value) Store(key, value);
  }

  // A key could not be read or assigned. Told before the load ends or, in the class that skips such
  // keys, goes on; a host that keeps a log of errors writes it down.
  virtual void KeyFailed(std::string_view /*key*/, const std::exception& /*error*/) {}

 protected:
  // Either may throw; the failure is the host's and reaches the caller of the load or save.
  // Find puts the value of a stored key into `value` and answers whether there is one.
  virtual bool Find(std::string_view key, BagValue& value) = 0;
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
  bool Find(std::string_view key, BagValue& value) override;
  void Store(std::string_view key, std::string_view value) override;

 private:
  std::vector<Entry> entries_;
  std::size_t next_ = 0;  // where the last hit ended: keys are mostly asked for in stored order
};

}  // namespace kvo
