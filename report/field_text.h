// A field's bytes as people read them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "layout/kinds.h"

namespace tremvik::report {

/// What a record of that kind is, in a few words: "pagamento".
[[nodiscard]] std::string_view NameOfKind(Kind kind);

/// `bytes` (Windows-1252) of `field` as UTF-8: amounts as "1.234,56", dates as "31/03/2012", periods as
/// "03/2012", registrations with their points, texts without the blanks at their end. What has not the form
/// of its field stands in double quotes, each byte visible, a field that is not there as "(falta)".
[[nodiscard]] std::string FieldForPeople(const FieldInfo& field, std::string_view bytes);

}  // namespace tremvik::report
