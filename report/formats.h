// The forms of report by name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "report/format.h"
#include "text/style.h"

namespace tremvik::report {

enum class FormatKind : std::uint8_t { kTexto, kConciso, kJson, kSarif, kJunit, kGithub, kCsv, kHtml };

/// A form as users choose it.
struct FormatInfo {
  FormatKind kind;
  std::string_view nome;        ///< "json"
  bool wants_digest;            ///< the files' SHA-256 is part of it
  bool for_people;              ///< its look counts: colours and width
  std::string_view finalidade;  ///< what it is for, in a few words
};

/// All forms, in the order of the help.
[[nodiscard]] std::span<const FormatInfo> Formats();

/// The form of that name; null where there is none.
[[nodiscard]] const FormatInfo* FindFormat(std::string_view nome);

/// A report in that form, not begun. `look` counts for people's forms only.
[[nodiscard]] std::unique_ptr<Format> MakeFormat(FormatKind kind, const text::Look& look = {});

}  // namespace tremvik::report
