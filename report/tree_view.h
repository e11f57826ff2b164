// A file's records for people and for programs, with what was found in them.
#pragma once

#include <cstddef>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "examination/findings.h"
#include "report/file_tree.h"
#include "text/style.h"

namespace tremvik::report {

/// The findings of an examination by their lines; they must outlive it.
using FindingsByLine = std::map<int, std::vector<const Finding*>>;
[[nodiscard]] FindingsByLine ByLine(const std::vector<Finding>& findings);

/// How a record's fields are laid out.
enum class FieldLayout { kFlowing, kOneALine };

/// One record: its line number and what it is, its fields by name and value, those that are refused marked,
/// and what was found in it. Ends in a line end; no line is wider than the look.
[[nodiscard]] std::string RenderRecord(const FileTree& tree, const TreeRecord& record,
                                       const FindingsByLine& findings, FieldLayout layout,
                                       const text::Look& look);

/// The records that a record stands under, one line each, to be shown above it; empty for none.
[[nodiscard]] std::string RenderAncestors(const FileTree& tree, const TreeRecord& record,
                                          const text::Look& look);

/// A finding in few words behind a margin of that many blanks: its rule, message and reason.
[[nodiscard]] std::string RenderFindingShort(const Finding& finding, std::size_t margin,
                                             const text::Look& look);

/// A record as an object of docs/json.md.
[[nodiscard]] nlohmann::ordered_json RecordAsJson(const FileTree& tree, const TreeRecord& record,
                                                  const FindingsByLine& findings);

/// A finding as every JSON output has it.
[[nodiscard]] nlohmann::ordered_json FindingAsJson(const Finding& finding);

}  // namespace tremvik::report
