#include "report/search.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

#include "text/folding.h"

namespace tremvik::report {
namespace {

constexpr char kAnything = '*';  // what a run fills in
constexpr std::size_t kLongestQuery = 1000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Letters and digits without what is between them, numbers without leading zeros.
std::string Squeezed(std::string_view text) {
  std::string squeezed;
  bool in_number = false;  // past its leading zeros
  const std::string folded = text::Folded(text);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    const char c = folded[i];
    const bool more_digits = i + 1 < folded.size() && IsDigit(folded[i + 1]);
    const bool leading_zero = c == '0' && !in_number && more_digits;
    in_number = IsDigit(c) && (in_number || c != '0');
    if (c != ' ' && !leading_zero) squeezed += c;
  }
  return squeezed;
}

// A rule's message to be looked for: its own text, and behind it the line that is told with every message.
struct Pattern {
  std::string text;
  std::size_t own = 0;  ///< characters of the rule's own text
  float own_weight = 0;
};

// Figures tell messages apart that have the same words.
float Weight(char c) {
  if (c == kAnything) return 0;
  return IsDigit(c) ? 2 : 1;
}

float WeightOf(std::string_view text) {
  float sum = 0;
  for (const char c : text)
    sum += Weight(c);
  return sum;
}

Pattern PatternOf(const Rule& rule) {
  Pattern pattern;
  const std::string message = rule.texto1 + " " + rule.texto2;
  for (std::string_view rest = message;;) {
    const auto gap = rest.find("{}");
    pattern.text += Squeezed(rest.substr(0, gap));
    if (gap == std::string_view::npos) break;
    if (!pattern.text.ends_with(kAnything)) pattern.text += kAnything;
    rest.remove_prefix(gap + 2);
  }
  pattern.own = pattern.text.size();
  pattern.own_weight = WeightOf(pattern.text);
  pattern.text.append("linhano").append(1, kAnything);
  return pattern;
}

// Prices of what differs. A missing word costs less than as many single letters; what stands before and
// behind costs least.
constexpr float kOpenGap = 1.5F;
constexpr float kLeftOut = 0.3F;   // of the rule's text, by weight
constexpr float kPutIn = 0.4F;     // in the query, by character
constexpr float kFilledIn = 0.1F;  // in the place of what a run fills in
constexpr float kPatternEnds = 0.25F;
constexpr float kQueryEnds = 0.1F;
constexpr float kNever = -1e9F;

float Pair(char a, char b) {
  if (a == b) return Weight(a);
  return IsDigit(a) && IsDigit(b) ? -1.5F : -1.0F;
}

// The alignments of the pattern's first characters with each beginning of the query: those that end with a
// pair, with characters left out, with characters put in.
struct Row {
  explicit Row(std::size_t size) : paired(size, kNever), left_out(size, kNever), put_in(size, kNever) {}
  [[nodiscard]] float Best(std::size_t j) const { return std::max({paired[j], left_out[j], put_in[j]}); }

  std::vector<float> paired, left_out, put_in;
};

void FillIn(const Row& above, Row& row) {
  for (std::size_t j = 0; j < row.paired.size(); ++j) {
    row.paired[j] = above.Best(j);
    if (j > 0) row.paired[j] = std::max(row.paired[j], row.paired[j - 1] - kFilledIn);
    row.left_out[j] = row.put_in[j] = kNever;
  }
}

// `begun` is the price of beginning with this character of the pattern.
void Fill(const Row& above, Row& row, char c, std::string_view query, float begun) {
  const float weight = kLeftOut * Weight(c);
  row.paired[0] = row.put_in[0] = kNever;
  row.left_out[0] = std::max(above.paired[0] - kOpenGap, above.left_out[0]) - weight;
  for (std::size_t j = 1; j < row.paired.size(); ++j) {
    const float start = -begun - kQueryEnds * static_cast<float>(j - 1);
    row.paired[j] = std::max(start, above.Best(j - 1)) + Pair(c, query[j - 1]);
    row.left_out[j] = std::max(above.paired[j] - kOpenGap, above.left_out[j]) - weight;
    row.put_in[j] = std::max(row.paired[j - 1] - kOpenGap, row.put_in[j - 1]) - kPutIn;
  }
}

// How well the pattern stands in the query: its weight for a query that is the pattern.
float Align(const Pattern& pattern, std::string_view query) {
  Row above(query.size() + 1);
  Row row(query.size() + 1);
  float best = kNever;
  float before = 0;  // weight of the pattern so far
  for (std::size_t i = 0; i < pattern.text.size(); ++i) {
    const char c = pattern.text[i];
    if (c == kAnything) {
      FillIn(above, row);
    } else {
      Fill(above, row, c, query, kPatternEnds * before);
    }
    before += Weight(c);
    const float missing = kPatternEnds * std::max(0.0F, pattern.own_weight - before);
    for (std::size_t j = 0; j <= query.size(); ++j)
      best = std::max(best, row.paired[j] - missing - kQueryEnds * static_cast<float>(query.size() - j));
    std::swap(above, row);
  }
  return best;
}

// What an alignment gains that finds half of the shorter one of the two in the other.
float LeastFor(const Pattern& pattern, std::string_view query, float query_weight) {
  constexpr float kShare = 0.5F;
  const float pattern_more = std::max(0.0F, pattern.own_weight - query_weight);
  const auto query_more = static_cast<float>(query.size() - std::min(query.size(), pattern.own));
  return kShare * std::min(pattern.own_weight, query_weight) - kPatternEnds * pattern_more -
         kQueryEnds * query_more;
}

std::string WithoutBlanks(std::string_view text) {
  std::string out;
  std::ranges::copy_if(text, std::back_inserter(out),
                       [](char c) { return std::string_view(" \t\r\n").find(c) == std::string_view::npos; });
  return out;
}

// True when the rule's own text stands in `typed` character by character, blanks aside.
bool StandsIn(const Rule& rule, std::string_view typed) {
  const std::string text = WithoutBlanks(rule.texto1 + rule.texto2);
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view piece = rest.substr(0, rest.find("{}"));
    const auto at = typed.find(piece);
    if (at == std::string_view::npos) return false;
    typed.remove_prefix(at + piece.size());
    rest.remove_prefix(std::min(rest.size(), piece.size() + 2));
  }
  return true;
}

struct Scored {
  const Rule* rule = nullptr;
  float score = 0;
  bool literal = false;
  const Pattern* pattern = nullptr;
};

// The patterns of the catalogue, rules with the same one side by side.
const std::vector<std::pair<Pattern, std::vector<const Rule*>>>& Patterns() {
  static const auto kPatterns = [] {
    std::vector<std::pair<Pattern, std::vector<const Rule*>>> patterns;
    std::map<std::string, std::size_t> places;
    for (const Rule& rule : Catalogue()) {
      Pattern pattern = PatternOf(rule);
      const auto [place, added] = places.try_emplace(pattern.text, patterns.size());
      if (added) patterns.emplace_back(std::move(pattern), std::vector<const Rule*>{});
      patterns[place->second].second.push_back(&rule);
    }
    return patterns;
  }();
  return kPatterns;
}

bool IsNearer(const Scored& one, const Scored& other) {
  if (one.score != other.score) return one.score > other.score;
  if (one.literal != other.literal) return one.literal;
  return one.pattern->own > other.pattern->own;
}

// "CR" and two numbers, "ARQ" or "ERR" and one, as the catalogue spells them.
std::string Code(std::string_view letters, const std::vector<std::string>& numbers) {
  const auto two = [](const std::string& number) { return number.size() < 2 ? "0" + number : number; };
  if (letters == "cr" && numbers.size() == 2) return "CR" + two(numbers[0]) + "-" + two(numbers[1]);
  if (numbers.size() != 1) return {};
  if (letters == "cr" && numbers[0].size() >= 3)
    return "CR" + numbers[0].substr(0, 2) + "-" + two(numbers[0].substr(2));
  if (letters == "arq") return "ARQ-" + two(numbers[0]);
  if (letters == "err" || letters == "erro") return "ERR-" + Squeezed(numbers[0]);
  return {};
}

}  // namespace

std::vector<Candidate> FindByMessage(std::string_view typed) {
  constexpr float kEqual = 0.01F;
  const std::string query = Squeezed(typed).substr(0, kLongestQuery);
  const std::string literal = WithoutBlanks(typed);
  const float query_weight = WeightOf(query);
  if (query.size() < 2) return {};
  std::vector<Scored> found;
  for (const auto& [pattern, rules] : Patterns()) {
    const float score = Align(pattern, query);
    if (score < LeastFor(pattern, query, query_weight)) continue;
    for (const Rule* const rule : rules)
      found.push_back({rule, score, StandsIn(*rule, literal), &pattern});
  }
  std::ranges::stable_sort(found, IsNearer);
  std::vector<Candidate> candidates;
  for (const Scored& one : found) {
    const float best = found.front().score;
    const float most_behind = 2 + 0.2F * std::min(query_weight, found.front().pattern->own_weight);
    if (one.score < best - most_behind) break;
    const bool nearest = one.score > best - kEqual && one.literal == found.front().literal;
    const float share = std::clamp(one.score / one.pattern->own_weight, 0.0F, 1.0F);
    candidates.push_back({one.rule, static_cast<double>(share), nearest});
  }
  return candidates;
}

std::string CodeIn(std::string_view typed) {
  std::string letters;
  std::vector<std::string> numbers;
  char before = ' ';
  for (const char c : text::Folded(typed)) {
    if (IsDigit(c)) {
      if (!IsDigit(before)) numbers.emplace_back();
      numbers.back() += c;
    } else if (c != ' ') {
      if (!numbers.empty()) return {};
      letters += c;
    }
    before = c;
  }
  for (const std::string_view word : {"regra", "codigo"}) {
    if (letters.starts_with(word)) letters.erase(0, word.size());
  }
  return Code(letters, numbers);
}

}  // namespace tremvik::report
