// Records taken out of a file to be examined: mended or left out one by one, and put together again for a
// trial.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "examination/lines.h"
#include "layout/kinds.h"

namespace tremvik {

/// One record under examination.
struct Piece {
  int linha = 0;  ///< in the file
  std::string content;
  std::string end;                 ///< what the run over the records reads for its separators
  const KindInfo* kind = nullptr;  ///< null where the code is unknown
  std::optional<std::size_t> parent = std::nullopt;  ///< the record that announces it
  bool out = false;
  bool tainted = false;   ///< it lacks a child now, which its quantities and its sum show
  bool restored = false;  ///< its shift was undone
  bool suspect = false;   ///< told to be out of place: what it is refused for next follows from that
};

/// What a trial reads, and which record stands on each of its lines.
struct TrialText {
  std::string text;
  std::string blocks;
  std::vector<std::optional<std::size_t>>
      pieces;  ///< by line of the trial, from 0; none where it is no piece

  /// The record on a line of the trial, from 1; none where it is no piece.
  [[nodiscard]] std::optional<std::size_t> PieceAt(int linha) const {
    const auto index = static_cast<std::size_t>(linha) - 1;
    return linha >= 1 && index < pieces.size() ? pieces[index] : std::nullopt;
  }
};

/// The records of one declaration, or those before the first one.
class Workpiece {
 public:
  /// `first` is the number of the first of `lines` in the file.
  Workpiece(std::span<const Line> lines, int first);

  /// Records taken out that nothing told the kind of: as many may be missing under a quantity.
  std::vector<std::size_t> lost;
  /// What should follow the last record is not there, so anything may be missing.
  bool cut = false;

  [[nodiscard]] std::size_t size() const { return pieces_.size(); }
  [[nodiscard]] Piece& operator[](std::size_t index) { return pieces_[index]; }
  [[nodiscard]] const Piece& operator[](std::size_t index) const { return pieces_[index]; }

  /// The records that `parent` announces and that are there, of kind `kind`.
  [[nodiscard]] std::vector<std::size_t> Children(std::optional<std::size_t> parent, Kind kind) const;
  /// Leaves a record out, with all that stand under it.
  void TakeOut(std::size_t index);
  /// Leaves a record out and takes it from the quantity that announces it, where that is a number.
  void TakeOutAnnounced(std::size_t index);
  /// Writes how many records are there into the field of `parent` that announces kind `kind`.
  void Announce(std::size_t parent, Kind kind);
  /// The records that stand under `index` and are there.
  [[nodiscard]] std::vector<std::size_t> Descendants(std::size_t index) const;
  /// Appends the records that are there to a trial.
  void Append(TrialText& trial) const;

 private:
  void SetQuantity(std::size_t parent, const KindInfo& kind, int quantity);

  std::vector<Piece> pieces_;
};

/// Appends a record that belongs to no piece.
void AppendRecord(TrialText& trial, std::string_view content);

/// The text of `field` of a record's content, as far as it goes, and its replacement, filled up by the
/// caller.
[[nodiscard]] std::string_view FieldText(std::string_view content, const FieldInfo& field);
void SetFieldText(std::string& content, const FieldInfo& field, std::string_view text);

/// The field of `kind` with that name, or null.
[[nodiscard]] const FieldInfo* FindField(const KindInfo& kind, std::string_view name);

/// The content with zeros in every quantity field.
[[nodiscard]] std::string WithoutQuantities(const KindInfo& kind, std::string content);

}  // namespace tremvik
