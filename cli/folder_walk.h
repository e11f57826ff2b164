#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tremvik::cli {

/// Gives the names of all regular files below a folder, one after the other: those of a folder in the order
/// of their names, a folder's content in the place of its own name. Links to files are followed, links to
/// folders are not. It holds the names of one folder at each depth only.
class FolderWalk {
 public:
  /// Files whose name does not match `pattern` are left out; an empty pattern leaves none out.
  FolderWalk(const std::string& folder, std::string pattern);

  /// The next file; nothing after the last.
  std::optional<std::string> Next();
  /// What is wrong with a folder that was come to, as a sentence, the first of them; empty when nothing is.
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  struct Entry {
    std::string path;
    bool folder = false;
  };
  void Enter(const std::string& folder);

  std::string pattern_;
  std::vector<Entry> rest_;  ///< the last one comes first
  std::string problem_;
};

/// True when the whole of `name` matches `pattern`: `*` stands for any characters, `?` for one. Unaccented
/// letters match in either case.
[[nodiscard]] bool Matches(std::string_view name, std::string_view pattern);

}  // namespace tremvik::cli
