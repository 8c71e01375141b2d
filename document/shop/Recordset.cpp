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

// One column of the record on which its recordset stands.
class Field final : public Object {
 public:
  Field(std::shared_ptr<Recordset> recordset, std::size_t column)
      : recordset_(std::move(recordset)), column_(column) {}

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "Value")) return recordset_->Value(column_);
    if (EqualIgnoringCase(name, "Name")) return recordset_->Columns().at(column_).name;
    return Object::Get(name);
  }

 private:
  std::shared_ptr<Recordset> recordset_;
  std::size_t column_;
};

class FieldList final : public Object {
 public:
  explicit FieldList(std::shared_ptr<Recordset> recordset) : recordset_(std::move(recordset)) {}

  Variant Get(std::string_view name) override {
    if (EqualIgnoringCase(name, "Count"))
      return static_cast<std::int32_t>(recordset_->Columns().size());
    return Object::Get(name);
  }

  Variant Call(std::string_view name, std::span<const Variant> arguments) override {
    if (EqualIgnoringCase(name, "Item") && arguments.size() == 1) return Item(arguments[0]);
    return Object::Call(name, arguments);
  }

  Variant Item(const Variant& key) override { return recordset_->Item(key); }

  std::unique_ptr<Enumerator> Enumerate() override { return std::make_unique<Walk>(recordset_); }

 private:
  class Walk final : public Enumerator {
   public:
    explicit Walk(std::shared_ptr<Recordset> recordset) : recordset_(std::move(recordset)) {}
    std::optional<Variant> Next() override {
      if (next_ == recordset_->Columns().size()) return std::nullopt;
      return recordset_->Item(static_cast<std::int32_t>(next_++));
    }

   private:
    std::shared_ptr<Recordset> recordset_;
    std::size_t next_ = 0;
  };

  std::shared_ptr<Recordset> recordset_;
};

// A number for the contents of a record; equal records have equal ones.
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
  std::int64_t at = 0;  // -1 in front of the first record
  std::optional<std::int64_t> count{};
  bool counted = false;
};

Recordset::Opened& Recordset::Open() {
  if (opened_ == nullptr) throw RuntimeError(ErrorNumber::closed, "Recordset");
  return *opened_;
}

const Recordset::Opened& Recordset::Open() const { return const_cast<Recordset*>(this)->Open(); }

const std::vector<Column>& Recordset::Columns() const { return Open().columns; }

const Traffic& Recordset::Asked() const { return Open().connection->Asked(); }

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
  if (is("State")) return opened_ != nullptr ? ado::kStateOpen : ado::kStateClosed;
  if (is("ActiveConnection"))
    return opened_ != nullptr ? Variant(ObjectRef(opened_->connection)) : Variant();
  if (is("EOF")) return Open().at >= 0 ? Current() == nullptr : Open().cache.At(0) == nullptr;
  if (is("BOF")) return Open().at < 0 || (Open().at == 0 && Current() == nullptr);
  if (is("RecordCount")) {
    const std::int64_t count = RecordCount();
    return count <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(count)
                                                             : std::int32_t{-1};
  }
  if (is("Bookmark"))
    return std::to_string(Open().at) + kBookmarkMark + std::to_string(ContentsOf(Required()));
  if (is("Fields")) return Fields();
  return Object::Get(name);
}

void Recordset::Let(std::string_view name, Variant value) {
  if (!EqualIgnoringCase(name, "Bookmark")) return Object::Let(name, std::move(value));
  GoTo(value);
}

Variant Recordset::Call(std::string_view name, std::span<const Variant> arguments) {
  const std::size_t count = arguments.size();
  const auto is = [&](std::string_view member, std::size_t least, std::size_t most) {
    return EqualIgnoringCase(name, member) && count >= least && count <= most;
  };
  if (is("Fields", 1, 1)) return Item(arguments[0]);
  if (is("Fields", 0, 0)) return Fields();
  if (is("Open", 2, 5)) {
    Open(arguments);
  } else if (is("MoveFirst", 0, 0)) {
    MoveTo(0);
  } else if (is("MoveNext", 0, 0)) {
    if (Open().at >= 0) Required();
    MoveTo(Open().at + 1);
  } else if (is("MovePrevious", 0, 0)) {
    if (Open().at < 0) throw RuntimeError(ErrorNumber::noCurrentRecord);
    MoveTo(Standing() - 1);
  } else if (is("MoveLast", 0, 0)) {
    MoveTo(Last());
  } else if (is("Move", 1, 2)) {
    Move(arguments);
  } else if (is("Close", 0, 0)) {
    Open();
    opened_.reset();
  } else {
    return Object::Call(name, arguments);
  }
  return {};
}

Variant Recordset::Item(const Variant& key) {
  const auto& columns = Columns();
  std::size_t column = 0;
  if (const std::string* name = key.If<std::string>()) {
    while (column < columns.size() && !EqualIgnoringCase(columns[column].name, *name)) ++column;
    if (column == columns.size()) throw RuntimeError(ErrorNumber::fieldNotFound, '"' + *name + '"');
  } else {
    const std::int32_t number = ToInteger(key);
    if (number < 0 || static_cast<std::size_t>(number) >= columns.size())
      throw RuntimeError(ErrorNumber::fieldNotFound, std::to_string(number));
    column = static_cast<std::size_t>(number);
  }
  return ObjectRef(
      std::make_shared<Field>(std::static_pointer_cast<Recordset>(shared_from_this()), column));
}

Variant Recordset::Fields() {
  Open();
  return ObjectRef(
      std::make_shared<FieldList>(std::static_pointer_cast<Recordset>(shared_from_this())));
}

Variant Recordset::Value(std::size_t column) { return Required().at(column); }

const Record* Recordset::Current() { return Open().cache.At(Open().at); }

const Record& Recordset::Required() {
  const Record* record = Current();
  if (record == nullptr) throw RuntimeError(ErrorNumber::noCurrentRecord);
  return *record;
}

// Beyond the last record all places are the same, and so are those in front of the first one.
void Recordset::MoveTo(std::int64_t index) { Open().at = std::max<std::int64_t>(index, -1); }

// Where it stands; right behind the last record when that is somewhere beyond.
std::int64_t Recordset::Standing() {
  if (Open().at < 0 || Current() != nullptr) return Open().at;
  return Open().cache.At(0) == nullptr ? 0 : Last() + 1;
}

void Recordset::Move(std::span<const Variant> arguments) {
  const std::int64_t by = ToInteger(arguments[0]);
  std::int64_t start = -1;
  if (arguments.size() == 2 && !arguments[1].IsEmpty()) {
    if (const std::string* bookmark = arguments[1].If<std::string>()) {
      start = IndexOf(*bookmark);
    } else {
      const std::int32_t from = ToInteger(arguments[1]);
      if (from == ado::kBookmarkFirst) start = 0;
      if (from == ado::kBookmarkLast) start = Last();
      if (from < 0 || from > ado::kBookmarkLast)
        throw RuntimeError(ErrorNumber::invalidCall, "Move");
      if (from == ado::kBookmarkCurrent) start = Standing();
    }
  } else {
    start = Standing();
  }
  MoveTo(start + by);
}

std::int64_t Recordset::RecordCount() {
  Opened& opened = Open();
  if (!opened.counted) {
    opened.count = opened.connection->Count(opened.statement);
    opened.counted = true;
  }
  return opened.count.value_or(-1);
}

std::int64_t Recordset::Last() {
  RecordCache& cache = Open().cache;
  std::int64_t index = RecordCount() - 1;
  if (index >= 0 && cache.At(index) != nullptr) return index;
  // Not known, or not true any more: between a record and none, halve.
  std::int64_t inside = -1;
  std::int64_t beyond = 1;
  while (cache.At(beyond - 1) != nullptr) {
    inside = beyond - 1;
    beyond *= 2;
  }
  --beyond;
  while (beyond - inside > 1) {
    index = inside + (beyond - inside) / 2;
    (cache.At(index) != nullptr ? inside : beyond) = index;
  }
  return std::max<std::int64_t>(inside, 0);
}

void Recordset::GoTo(const Variant& bookmark) {
  const std::string* text = bookmark.If<std::string>();
  if (text == nullptr) throw RuntimeError(ErrorNumber::invalidCall, "Bookmark");
  MoveTo(IndexOf(*text));
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
  // Others came or went in front of it: it is not far.
  constexpr std::int64_t kNear = 128;
  cache.At(index + kNear);
  cache.At(std::max<std::int64_t>(index - kNear, 0));
  if (const auto found = cache.FindNear(index, same)) return *found;
  throw RuntimeError(ErrorNumber::noCurrentRecord, "Bookmark");
}

}  // namespace kvo::shop
