// Lines whose fields stand further right or left than they should.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "examination/lines.h"

namespace tremvik {

/// Fields `colunas` columns further right than they should be (to the left where negative), from one of the
/// columns `de` to `ate` on; up to column `fim` of a line whose length is right all the same, 0 for the rest
/// of the line.
struct Shift {
  int colunas = 0;
  int de = 0;
  int ate = 0;
  int fim = 0;
  friend bool operator==(const Shift&, const Shift&) = default;
};

/// The shift of a line, found by trying which one makes its numeric fields plain; nothing where none does or
/// where a wrong character explains as much.
[[nodiscard]] std::optional<Shift> FindShift(std::string_view content);

/// How many blanks stand before the code of an otherwise whole line; 0 for none.
[[nodiscard]] std::size_t LeadingBlanks(std::string_view content);

/// The shifted lines of a file. Where most lines of a kind have the same shift, it is one cause of them all.
class Shifts {
 public:
  Shifts() = default;
  explicit Shifts(std::span<const Line> lines);

  [[nodiscard]] bool empty() const { return by_line_.empty(); }
  /// True for a line that can be put right with nothing guessed: what is too much goes.
  [[nodiscard]] bool Holds(int linha) const;
  /// What to tell beside a fault of `linha`: the cause, an empty text on a line that is not shifted, nothing
  /// where the cause was told already, from which the fault follows.
  [[nodiscard]] std::optional<std::string> Tell(int linha);
  /// The line as it should be, once its cause was told; nothing for one that cannot be put right.
  [[nodiscard]] std::optional<std::string> Undone(int linha, std::string_view content) const;

 private:
  struct Cause {
    const KindInfo* kind = nullptr;
    Shift shift;
    std::size_t length = 0;  ///< of its lines
    int linhas = 0;
    bool told = false;
  };
  [[nodiscard]] std::optional<std::size_t> KnownCause(std::string_view content) const;
  void Collect(std::span<const Line> lines);
  void PartTheFew(std::span<const Line> lines);

  std::vector<Cause> causes_;
  std::map<int, std::size_t> by_line_;
};

}  // namespace tremvik
