// What a rule answers, and what it says when it refuses.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "checks/rule_code.h"
#include "host/diagnostics.h"
#include "host/record_kind.h"
#include "layout/record.h"

namespace tremvik {

/// A fault as the user reads it and, apart from the words, which rule found it and where it really is. The
/// place refers to the record's buffer, so it holds until the next read.
struct Refusal {
  RuleCode regra;
  std::string first;
  std::string second;  ///< empty where the whole message is one text
  FaultLocation where;
  std::string porque = {};  ///< the reason in figures; empty for none
  bool answered = false;    ///< the user was asked and said No: not to be told again

  /// The texts as one message, joined by CR LF.
  [[nodiscard]] std::string Mensagem() const;
  /// The same refusal with its reason.
  [[nodiscard]] Refusal Porque(std::string figures) && {
    porque = std::move(figures);
    return std::move(*this);
  }
};

/// An optional `Refusal`, true when a problem was found.
class [[nodiscard]] Verdict {
 public:
  Verdict() = default;
  Verdict(Refusal refusal) : refusal_(std::make_unique<Refusal>(std::move(refusal))) {}

  explicit operator bool() const { return refusal_ != nullptr; }
  [[nodiscard]] const Refusal& refusal() const { return *refusal_; }

 private:
  std::unique_ptr<Refusal> refusal_;
};

/// Nothing found.
struct AcceptedType {
  operator Verdict() const { return {}; }
};
inline constexpr AcceptedType Accepted;

/// The true place of `field` of `record`.
template <typename R>
FaultLocation Where(const Record<R>& record, const Field<R>& field) {
  return {record.linha(), Codigo(R::kKind), field.name, field.position, field.width, record[field]};
}

// An accepted record passes by all of these, so the compiler lays them, and the reasons behind them, aside.

/// A refusal of `field` by rule `regra`, with the two texts as they stand.
template <typename R>
[[gnu::cold]] Refusal Refuse(RuleCode regra, const Record<R>& record, const Field<R>& field,
                             std::string_view first, std::string_view second) {
  return {regra, std::string(first), std::string(second), Where(record, field)};
}

/// A refusal of `field` by rule `regra` whose whole message is one text.
template <typename R>
[[gnu::cold]] Refusal Refuse(RuleCode regra, const Record<R>& record, const Field<R>& field,
                             std::string_view text) {
  return {regra, std::string(text), {}, Where(record, field)};
}

}  // namespace tremvik
