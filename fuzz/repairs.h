// A file taken apart into records, and what ties its records together set right again.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "layout/kinds.h"
#include "sample/draw.h"

namespace tremvik::fuzz {

/// Lines with their ends.
using Lines = std::vector<std::string>;

[[nodiscard]] Lines SplitLines(std::string_view file);
[[nodiscard]] std::string JoinLines(const Lines& lines);
/// The kind that a line's code names, null for none.
[[nodiscard]] const KindInfo* KindOf(std::string_view line);
/// The field's bytes; empty when the line is too short for it.
[[nodiscard]] std::string_view FieldText(std::string_view line, const FieldInfo& field);

/// Announces in every parent record how many records of each kind follow it.
void RepairQuantities(Lines& lines);
/// Sets the check digits of every IE and CNPJ right.
void RepairDocuments(Lines& lines);
/// Sets every occurrence's value to the sum of its details.
void RepairSums(Lines& lines);
/// Gives every accumulated-credit detail a code that fits its value, occurrence and taxpayer.
void RepairAuthorizations(Lines& lines, sample::Draw& draw);
/// Gives each declaration a reference one month after that of the one before when the taxpayer is the same.
void RepairOrder(Lines& lines);

}  // namespace tremvik::fuzz
