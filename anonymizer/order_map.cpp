#include "anonymizer/order_map.h"

#include <algorithm>
#include <vector>

#include "runtime/text.h"

namespace tremvik::anonymizer {
namespace {

bool IsSmallLetter(char c) { return c >= 'a' && c <= 'z'; }

// As many of the characters from `first` to `last` as `count`, rising.
std::string Rising(char first, char last, std::size_t count, sample::Draw& draw) {
  std::vector<char> all;
  for (char c = first; c <= last; ++c)
    all.push_back(c);
  draw.Shuffle(all);
  all.resize(std::min(count, all.size()));
  std::ranges::sort(all);
  return {all.begin(), all.end()};
}

// What stands for each of `characters`, which rise: drawn within stretches of one class that `kept` parts.
std::string Images(const std::string& characters, std::string_view kept, sample::Draw& draw) {
  std::string images = characters;
  for (std::size_t begin = 0; begin < characters.size();) {
    const char c = characters[begin];
    const bool drawn = (IsDigit(c) || IsSmallLetter(c)) && kept.find(c) == std::string_view::npos;
    if (!drawn) {
      ++begin;
      continue;
    }
    char first = IsDigit(c) ? '0' : 'a';
    char last = IsDigit(c) ? '9' : 'z';
    for (const char wall : kept) {
      if (wall < c) first = std::max(first, static_cast<char>(wall + 1));
      if (wall > c) last = std::min(last, static_cast<char>(wall - 1));
    }
    std::size_t end = begin;
    while (end < characters.size() && characters[end] >= first && characters[end] <= last)
      ++end;
    images.replace(begin, end - begin, Rising(first, last, end - begin, draw));
    begin = end;
  }
  return images;
}

}  // namespace

OrderMap::OrderMap(const std::set<std::string>& texts, sample::Draw& draw, char kept_first)
    : draw_(draw), kept_first_(kept_first) {
  const std::vector<std::string> sorted(texts.begin(), texts.end());
  if (!sorted.empty()) Descend(sorted, {});
}

// `texts` rise and share what `image` stands for.
void OrderMap::Descend(std::span<const std::string> texts, const std::string& image) {
  const std::size_t depth = image.size();
  if (depth == texts.front().size()) {
    images_.emplace(texts.front(), image);
    return;
  }
  std::string characters;
  for (const std::string& text : texts) {
    if (characters.empty() || characters.back() != text[depth]) characters += text[depth];
  }
  std::string kept;
  if (texts.front().find_first_not_of('0') >= depth) kept += '0';
  if (depth == 0 && kept_first_ != '\0') kept += kept_first_;
  const std::string images = Images(characters, kept, draw_);
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto own = [&](const std::string& text) { return text[depth] == characters[i]; };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(texts, own));
    Descend(texts.first(count), image + images[i]);
    texts = texts.subspan(count);
  }
}

}  // namespace tremvik::anonymizer
