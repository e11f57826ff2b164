// Other amounts in the place of those of a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sample/draw.h"

namespace tremvik::anonymizer {

/// The whole number of an amount field (cents) that is plain digits, a plus in front allowed; none else.
[[nodiscard]] std::optional<std::int64_t> PlainAmount(std::string_view field);

/// A number between a tenth of `amount` and all of it, a small one below 100; 0 for 0 alone.
[[nodiscard]] std::int64_t OtherAmount(std::int64_t amount, sample::Draw& draw);

/// `amount` as wide as `field`, its plus kept; none where it has no room.
[[nodiscard]] std::optional<std::string> Written(std::int64_t amount, std::string_view field);

/// Another amount as wide as `field`. One that is not plain keeps what is no digit.
[[nodiscard]] std::string OtherAmountField(std::string_view field, sample::Draw& draw);

}  // namespace tremvik::anonymizer
