// A file as a tree of declarations and records, however broken it is.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "layout/kinds.h"

namespace tremvik::report {

/// One line of the file.
struct TreeRecord {
  int linha = 0;                          ///< from 1
  const KindInfo* kind = nullptr;         ///< null where nothing tells what it is
  std::size_t nivel = 0;                  ///< 0 for the master record, 1 for a declaration and so on
  std::optional<std::size_t> pai;         ///< the record that announces it, by its place in the tree
  std::optional<std::size_t> declaracao;  ///< the header of the declaration that it stands in, or itself
  std::string_view content;               ///< Windows-1252, without its line end
  std::string_view end;                   ///< the line end as it stands

  /// True for a record that should stand under another one, which is not there.
  [[nodiscard]] bool IsOrphan() const { return kind != nullptr && kind->parent.has_value() && !pai; }
};

/// One field of a record.
struct TreeField {
  std::string_view nome;   ///< of the layout; "Linha" where the kind is unknown, "Sobra" for what is too many
  int coluna = 0;          ///< from 1
  int largura = 0;         ///< as the layout has it, or as many characters as there are
  std::string_view bytes;  ///< Windows-1252; shorter than `largura` where the line ends before
  std::string texto;       ///< as people read it, UTF-8
};

/// What a file's bytes say. Bytes of any kind and number make a tree; beyond 40,000 lines it is cut.
class FileTree {
 public:
  /// A cause that spoils the whole file, such as a byte-order mark, is told and, where that can be done, set
  /// right for the tree.
  explicit FileTree(std::string bytes);
  ~FileTree() = default;
  FileTree(const FileTree&) = delete;
  FileTree& operator=(const FileTree&) = delete;

  [[nodiscard]] std::span<const TreeRecord> records() const { return records_; }
  /// What spoils the whole file, as a sentence; empty for nothing.
  [[nodiscard]] const std::string& causa() const { return causa_; }
  /// True where the tree is that of the file with this set right.
  [[nodiscard]] bool mended() const { return mended_; }
  /// True where there are more lines than the tree holds.
  [[nodiscard]] bool cut() const { return cut_; }

  /// The fields of a record that say something: without its code where that is right, and without a right
  /// line end.
  [[nodiscard]] std::vector<TreeField> Fields(const TreeRecord& record) const;

 private:
  std::string bytes_;
  std::vector<TreeRecord> records_;
  std::string causa_;
  bool mended_ = false;
  bool cut_ = false;
};

}  // namespace tremvik::report
