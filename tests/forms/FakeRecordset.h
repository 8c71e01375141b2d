// A database with one table in memory. Implements the late-bound members of
// common/values/Recordset.h.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/values/Object.h"

namespace kvo {

struct FakeTable {
  struct Opened {
    std::string source;
    Variant connection;
    std::vector<Variant> numbers;  // cursor type, lock type, options
  };
  std::vector<std::map<std::string, Variant>> rows;
  bool knowsCount = true;
  bool gone = false;  // every access fails
  std::size_t fetched = 0;
  std::vector<Opened> opened;

  void Access() const {
    if (gone) throw std::runtime_error("the database is gone");
  }
};

class FakeCell final : public Object {
 public:
  explicit FakeCell(Variant value) : value_(std::move(value)) {}
  Variant Get(std::string_view name) override {
    return name == "Value" ? value_ : Object::Get(name);
  }

 private:
  Variant value_;
};

class FakeRecordset final : public Object {
 public:
  explicit FakeRecordset(FakeTable& table) : table_(table) {}

  Variant Get(std::string_view name) override {
    table_.Access();
    if (name == "Source") return source_;
    if (name == "RecordCount")
      return table_.knowsCount ? static_cast<std::int32_t>(table_.rows.size()) : -1;
    if (name == "EOF") return at_ >= table_.rows.size();
    if (name == "Bookmark") return static_cast<double>(at_);
    return Object::Get(name);
  }
  void Let(std::string_view name, Variant value) override {
    table_.Access();
    if (name != "Bookmark") return Object::Let(name, std::move(value));
    at_ = static_cast<std::size_t>(*value.If<double>());
  }
  Variant Call(std::string_view name, std::span<const Variant> arguments) override {
    table_.Access();
    if (name == "Open" && arguments.size() == 5) {
      source_ = ToText(arguments[0]);
      table_.opened.push_back({source_, arguments[1], {}});
      table_.opened.back().numbers.assign(arguments.begin() + 2, arguments.end());
      return {};
    }
    if (name == "Move" && arguments.size() == 2 && ToInteger(arguments[1]) == 1) {
      at_ = static_cast<std::size_t>(ToInteger(arguments[0]));
      return {};
    }
    if (name == "MoveNext" && arguments.empty()) {
      ++at_;
      ++table_.fetched;
      return {};
    }
    if (name == "Fields" && arguments.size() == 1)
      return ObjectRef(std::make_shared<FakeCell>(table_.rows.at(at_).at(ToText(arguments[0]))));
    return Object::Call(name, arguments);
  }

 private:
  FakeTable& table_;
  std::string source_;
  std::size_t at_ = 0;
};

// A connection to the table, open or closed.
class FakeConnection final : public Object {
 public:
  std::int32_t state = 1;
  Variant Get(std::string_view name) override {
    if (name == "State") return state;
    if (name == "ConnectionString") return "sqlite3://shop.db";
    return Object::Get(name);
  }
};

}  // namespace kvo
