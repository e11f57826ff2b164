// Changes "Pré-Formatado" files the way their makers get them wrong: by record, field and quantity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tremvik::fuzz {

/// Changes bytes without knowing what they mean.
using RawMutator = std::function<void(std::string& bytes)>;

/// A changed copy of `file`: one to four changes (fields, records, line ends, bytes), after which mostly the
/// quantities, and often check digits, sums and authorization codes are set right again, so that the change
/// meets rules behind the first ones. The same arguments give the same result.
[[nodiscard]] std::string MutateFile(std::string_view file, std::uint64_t seed, const RawMutator& raw);

}  // namespace tremvik::fuzz
