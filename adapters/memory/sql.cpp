#include "adapters/memory/sql.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "host/runtime_error.h"

namespace tremvik::memory {
namespace {

using Operation = Condition::Operation;

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameName(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, Lower, Lower);
}

bool IsNameCharacter(char c) {
  return (Lower(c) >= 'a' && Lower(c) <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Parts a query text into words, texts in quotes, names in brackets and signs.
class Tokens {
 public:
  enum class Type : std::uint8_t { kWord, kText, kName, kSign, kEnd };

  explicit Tokens(std::string_view sql) : rest_(sql) { Next(); }

  [[nodiscard]] Type type() const { return type_; }
  [[nodiscard]] const std::string& value() const { return value_; }
  [[nodiscard]] bool Is(std::string_view word) const {
    return (type_ == Type::kWord || type_ == Type::kSign) && SameName(value_, word);
  }
  void Next();
  /// Goes on behind `word`, where it stands here.
  bool Take(std::string_view word) {
    const bool found = Is(word);
    if (found) Next();
    return found;
  }
  void Demand(std::string_view word) {
    if (!Take(word)) throw RuntimeError(erro::kSintaxeDaConsulta);
  }

 private:
  void SkipBlanks();
  void Quoted(char close);

  std::string_view rest_;
  Type type_ = Type::kEnd;
  std::string value_;
};

// Blanks, and comments up to the end of the line.
void Tokens::SkipBlanks() {
  while (!rest_.empty()) {
    const auto blank = rest_.find_first_not_of(" \t\r\n");
    rest_.remove_prefix(std::min(blank, rest_.size()));
    if (!rest_.starts_with("--")) return;
    rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
  }
}

// What stands up to `close`, which doubled stands for itself.
void Tokens::Quoted(char close) {
  rest_.remove_prefix(1);
  while (true) {
    const auto end = rest_.find(close);
    if (end == std::string_view::npos) throw RuntimeError(erro::kSintaxeDaConsulta);
    value_ += rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (close != '\'' || !rest_.starts_with(close)) return;
    value_ += close;
    rest_.remove_prefix(1);
  }
}

void Tokens::Next() {
  SkipBlanks();
  value_.clear();
  type_ = Type::kEnd;
  if (rest_.empty()) return;
  const char first = rest_.front();
  if (first == '\'' || first == '[') {
    type_ = first == '[' ? Type::kName : Type::kText;
    return Quoted(first == '[' ? ']' : first);
  }
  const auto end = std::ranges::find_if_not(rest_, IsNameCharacter);
  const auto length = std::max<std::size_t>(1, static_cast<std::size_t>(end - rest_.begin()));
  type_ = IsNameCharacter(first) ? Type::kWord : Type::kSign;
  value_ = rest_.substr(0, length);
  rest_.remove_prefix(length);
}

std::optional<std::int64_t> WholeNumber(const std::string& text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// One condition after the other, OR binding least.
class Parser {
 public:
  Parser(Tokens& tokens, const Table& table) : tokens_(tokens), table_(table) {}

  std::unique_ptr<Condition> Or() {
    auto left = And();
    while (tokens_.Take("or"))
      left = Make(Operation::kOr, std::move(left), And());
    return left;
  }

  // A column, with or without its table's name before it.
  std::size_t Column() {
    std::string name = Name();
    if (tokens_.Take(".")) {
      if (!SameName(name, table_.name)) throw RuntimeError(erro::kParametrosInsuficientes);
      name = Name();
    }
    return table_.Column(name);
  }

 private:
  static std::unique_ptr<Condition> Make(Operation operation, std::unique_ptr<Condition> left,
                                         std::unique_ptr<Condition> right) {
    auto made = std::make_unique<Condition>();
    made->operation = operation;
    made->left = std::move(left);
    made->right = std::move(right);
    return made;
  }

  std::unique_ptr<Condition> And() {
    auto left = Not();
    while (tokens_.Take("and"))
      left = Make(Operation::kAnd, std::move(left), Not());
    return left;
  }

  std::unique_ptr<Condition> Not() {
    if (tokens_.Take("not")) return Make(Operation::kNot, Not(), nullptr);
    auto left = Primary();
    while (true) {
      if (tokens_.Take("=")) {
        left = Make(Operation::kEqual, std::move(left), Primary());
      } else if (tokens_.Take(">")) {
        left = Make(Operation::kGreater, std::move(left), Primary());
      } else {
        return left;
      }
    }
  }

  std::unique_ptr<Condition> Primary() {
    if (tokens_.Take("(")) {
      auto inner = Or();
      tokens_.Demand(")");
      return inner;
    }
    auto made = std::make_unique<Condition>();
    if (tokens_.type() == Tokens::Type::kText) {
      made->literal = tokens_.value();
      tokens_.Next();
    } else if (const auto number =
                   tokens_.type() == Tokens::Type::kWord ? WholeNumber(tokens_.value()) : std::nullopt) {
      made->literal = *number;
      tokens_.Next();
    } else {
      made->operation = Operation::kColumn;
      made->column = Column();
    }
    return made;
  }

  std::string Name() {
    if (tokens_.type() != Tokens::Type::kWord && tokens_.type() != Tokens::Type::kName)
      throw RuntimeError(erro::kSintaxeDaConsulta);
    std::string name = tokens_.value();
    tokens_.Next();
    return name;
  }

  Tokens& tokens_;
  const Table& table_;
};

// The value of a condition; a comparison gives 1 or 0, and every number is smaller than every text.
Cell ValueOf(const Condition& condition, const std::vector<Cell>& row) {
  switch (condition.operation) {
    case Operation::kColumn:
      return row[condition.column];
    case Operation::kLiteral:
      return condition.literal;
    case Operation::kEqual:
      return std::int64_t{ValueOf(*condition.left, row) == ValueOf(*condition.right, row) ? 1 : 0};
    case Operation::kGreater:
      return std::int64_t{ValueOf(*condition.left, row) > ValueOf(*condition.right, row) ? 1 : 0};
    case Operation::kNot:
      return std::int64_t{condition.left->Holds(row) ? 0 : 1};
    case Operation::kAnd:
      return std::int64_t{condition.left->Holds(row) && condition.right->Holds(row) ? 1 : 0};
    case Operation::kOr:
      return std::int64_t{condition.left->Holds(row) || condition.right->Holds(row) ? 1 : 0};
  }
  return std::int64_t{0};
}

}  // namespace

std::size_t Table::Column(std::string_view column) const {
  const auto found = std::ranges::find_if(columns, [column](auto one) { return SameName(one, column); });
  if (found == columns.end()) throw RuntimeError(erro::kParametrosInsuficientes);
  return static_cast<std::size_t>(found - columns.begin());
}

bool Condition::Holds(const std::vector<Cell>& row) const {
  const Cell value = ValueOf(*this, row);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number != 0;
  return std::strtod(std::get<std::string>(value).c_str(), nullptr) != 0.0;
}

Query ParseQuery(std::string_view sql, const std::vector<Table>& tables) {
  Tokens tokens(sql);
  tokens.Demand("select");
  // The columns are known only once the table is: skip to its name, then look at the beginning again.
  Tokens ahead = tokens;
  while (ahead.type() != Tokens::Type::kEnd && !ahead.Is("from"))
    ahead.Next();
  ahead.Demand("from");
  const auto table =
      std::ranges::find_if(tables, [&ahead](const Table& one) { return SameName(one.name, ahead.value()); });
  if (table == tables.end()) throw RuntimeError(erro::kTabelaNaoEncontrada);

  Query query;
  query.table = &*table;
  query.column = Parser(tokens, *table).Column();
  tokens.Demand("from");
  tokens.Next();
  tokens.Demand("where");
  query.where = Parser(tokens, *table).Or();
  if (tokens.type() != Tokens::Type::kEnd) throw RuntimeError(erro::kSintaxeDaConsulta);
  return query;
}

}  // namespace tremvik::memory
