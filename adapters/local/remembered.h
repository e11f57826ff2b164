// Answers that are kept by the questions that they were given to.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tremvik {

/// A map by texts that finds a text without making a string of it.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
template <typename V>
using TextMap = std::unordered_map<std::string, V, TextHash, std::equal_to<>>;

/// The answers to thousands of questions; an answer stays where it is as long as it is kept.
template <typename Answer>
class Remembered {
 public:
  /// The answer to `question`; `make` gives one that is not remembered, and what it throws leaves all as it
  /// was. The answers of before go one generation after they were last asked for, so that one that is still
  /// in use stays.
  template <typename Make>
  Answer& To(std::string_view question, const Make& make) {
    if (const auto known = answers_.find(question); known != answers_.end()) return known->second;
    if (answers_.size() == kMost) older_ = std::exchange(answers_, {});
    if (const auto older = older_.find(question); older != older_.end())
      return answers_.insert(older_.extract(older)).position->second;
    return answers_.try_emplace(std::string(question), make()).first->second;
  }

 private:
  // Far more than the different look-ups of a file that is right; only spoilt values make more.
  static constexpr std::size_t kMost = 4096;

  TextMap<Answer> answers_;
  TextMap<Answer> older_;
};

}  // namespace tremvik
