#include "document/shop/Recordset.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

#include "common/values/Ascii.h"
#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

// One column of a recordset's current record.
class Field final : public Object {
 public:
  Field(std::shared_ptr<Recordset> recordset, std::size_t column)
      : recordset_(std::move(recordset)), column_(column) {}

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "Value")) return recordset_->Value(column_);
    return EqualIgnoringCase(name, "Name") ? recordset_->Name(column_) : Object::Get(name);
  }

 private:
  std::shared_ptr<Recordset> recordset_;
  std::size_t column_;
};

// Hashes the contents of a record.
std::uint64_t ContentsOf(const Record& record) {
  constexpr std::uint64_t kStart = 14695981039346656037U;  // FNV-1a
  constexpr std::uint64_t kFactor = 1099511628211U;
  std::uint64_t hash = kStart;
  const auto add = [&hash](std::string_view bytes) {
    for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * kFactor;
  };
  for (const Variant& value : record) {
    const std::string text = ToText(value);
    add(value.IsEmpty() ? "-" : std::to_string(text.size()) + ':');
    add(text);
  }
  return hash;
}

// "index:contents"
constexpr char kBookmarkMark = ':';

std::shared_ptr<Connection> ConnectionOf(const Variant& active) {
  if (const std::string* text = active.If<std::string>())
    return std::make_shared<Connection>(*text);
  const ObjectRef object = ToObject(active);
  if (auto connection = std::dynamic_pointer_cast<Connection>(object)) return connection;
  return std::make_shared<Connection>(ToText(object->Get("ConnectionString")));
}

std::int32_t IntegerOr(std::span<const Variant> arguments, std::size_t index,
                       std::int32_t missing) {
  if (index >= arguments.size() || arguments[index].IsEmpty()) return missing;
  return ToInteger(arguments[index]);
}

}  // namespace

struct Recordset::Opened {
  Opened(std::shared_ptr<Connection> active, std::string_view source)
      : connection(std::move(active)),
        statement(source),
        columns(connection->Describe(statement)),
        cache([this](std::int64_t first, std::int64_t asked) {
          return connection->Fetch(statement, columns, first, asked);
        }) {}

  std::shared_ptr<Connection> connection;
  Statement statement;
  std::vector<Column> columns;
  RecordCache cache;
  std::int64_t at = 0;
  std::optional<std::int64_t> count{};
  bool counted = false;
};

Recordset::Opened& Recordset::Open() {
  if (opened_ == nullptr) throw RuntimeError(ErrorNumber::closed, "Recordset");
  return *opened_;
}

const Traffic& Recordset::Asked() { return Open().connection->Asked(); }

void Recordset::Open(std::span<const Variant> arguments) {
  if (opened_ != nullptr) throw RuntimeError(ErrorNumber::alreadyOpen, "Recordset");
  const std::int32_t cursorType = IntegerOr(arguments, 2, ado::kOpenDynamic);
  const std::int32_t lockType = IntegerOr(arguments, 3, ado::kLockReadOnly);
  const std::int32_t options = IntegerOr(arguments, 4, ado::kOptionsUnspecified);
  if (cursorType < ado::kOptionsUnspecified || cursorType > ado::kOpenStatic)
    throw RuntimeError(ErrorNumber::invalidCall, "CursorType " + std::to_string(cursorType));
  if (lockType != ado::kLockReadOnly && lockType != ado::kOptionsUnspecified)
    throw RuntimeError(ErrorNumber::invalidCall, "LockType " + std::to_string(lockType));
  if (options != ado::kOptionsUnspecified && options != ado::kOptionsText)
    throw RuntimeError(ErrorNumber::invalidCall, "Options " + std::to_string(options));
  const std::string source = ToText(arguments[0]);
  opened_ = std::make_shared<Opened>(ConnectionOf(arguments[1]), source);
  source_ = source;
}

Variant Recordset::Get(std::string_view name) {
  const auto is = [name](std::string_view member) { return EqualIgnoringCase(name, member); };
  if (is("Source")) return source_;
  if (is("EOF")) return Current() == nullptr;
  if (is("RecordCount")) return RecordCount();
  if (is("Fields")) return Fields();
  if (is("Bookmark"))
    return std::to_string(Open().at) + kBookmarkMark + std::to_string(ContentsOf(Required()));
  return Object::Get(name);
}

void Recordset::Let(std::string_view name, Variant value) {
  if (!EqualIgnoringCase(name, "Bookmark")) return Object::Let(name, std::move(value));
  const std::string* bookmark = value.If<std::string>();
  if (bookmark == nullptr) throw RuntimeError(ErrorNumber::invalidCall, "Bookmark");
  Open().at = IndexOf(*bookmark);
}

Variant Recordset::Call(std::string_view name, std::span<const Variant> arguments) {
  const std::size_t count = arguments.size();
  const auto is = [&](std::string_view member, std::size_t least, std::size_t most) {
    return EqualIgnoringCase(name, member) && count >= least && count <= most;
  };
  if (is("Fields", 1, 1)) return FieldNamed(ToText(arguments[0]));
  if (is("Open", 2, 5)) {
    Open(arguments);
  } else if (is("Move", 2, 2)) {
    const std::int32_t index = ToInteger(arguments[0]);
    if (index < 0 || ToInteger(arguments[1]) != ado::kBookmarkFirst)
      throw RuntimeError(ErrorNumber::invalidCall, "Move");
    Open().at = index;
  } else if (is("MoveNext", 0, 0)) {
    Required();
    ++Open().at;
  } else {
    return Object::Call(name, arguments);
  }
  return {};
}

ObjectRef Recordset::FieldNamed(const std::string& name) {
  const auto& columns = Open().columns;
  const auto column = std::ranges::find_if(
      columns, [&](const Column& each) { return EqualIgnoringCase(each.name, name); });
  if (column == columns.end()) throw RuntimeError(ErrorNumber::fieldNotFound, '"' + name + '"');
  return FieldAt(static_cast<std::size_t>(column - columns.begin()));
}

ObjectRef Recordset::Fields() {
  const auto fields = std::make_shared<Collection>();
  for (std::size_t column = 0; column < Open().columns.size(); ++column)
    fields->Add(FieldAt(column));
  return fields;
}

ObjectRef Recordset::FieldAt(std::size_t column) {
  return std::make_shared<Field>(std::static_pointer_cast<Recordset>(shared_from_this()), column);
}

Variant Recordset::Name(std::size_t column) { return Open().columns.at(column).name; }
Variant Recordset::Value(std::size_t column) { return Required().at(column); }

const Record* Recordset::Current() { return Open().cache.At(Open().at); }

const Record& Recordset::Required() {
  const Record* record = Current();
  if (record == nullptr) throw RuntimeError(ErrorNumber::noCurrentRecord);
  return *record;
}

std::int32_t Recordset::RecordCount() {
  Opened& opened = Open();
  if (!opened.counted) {
    opened.count = opened.connection->Count(opened.statement);
    opened.counted = true;
  }
  const std::int64_t count = opened.count.value_or(-1);
  return count <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(count) : -1;
}

std::int64_t Recordset::IndexOf(const std::string& bookmark) {
  std::int64_t index = 0;
  std::uint64_t contents = 0;
  const char* end = bookmark.data() + bookmark.size();
  const auto first = std::from_chars(bookmark.data(), end, index);
  if (first.ec != std::errc() || first.ptr == end || *first.ptr != kBookmarkMark || index < 0)
    throw RuntimeError(ErrorNumber::invalidCall, "Bookmark");
  const auto second = std::from_chars(first.ptr + 1, end, contents);
  if (second.ec != std::errc() || second.ptr != end)
    throw RuntimeError(ErrorNumber::invalidCall, "Bookmark");

  RecordCache& cache = Open().cache;
  const auto same = [contents](const Record& record) { return ContentsOf(record) == contents; };
  if (const Record* record = cache.At(index); record != nullptr && same(*record)) return index;
  // Records were added or removed before it: search nearby.
  constexpr std::int64_t kNear = 128;
  cache.At(index + kNear);
  cache.At(std::max<std::int64_t>(index - kNear, 0));
  if (const auto found = cache.FindNear(index, same)) return *found;
  throw RuntimeError(ErrorNumber::noCurrentRecord, "Bookmark");
}

}  // namespace kvo::shop
