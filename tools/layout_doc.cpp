// Prints docs/layout.md from the record layouts. Fails where a note names no field, or a field has no note.
#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <string>

#include "layout/kinds.h"
#include "tools/layout_notes.h"

namespace tremvik::tools {
namespace {

constexpr std::string_view kHead =
    R"(<!-- Generated from the record layouts by `./dev docs`; do not edit. -->

# Layout of the "Pré-Formatado" file

For makers of software that writes such files. What is said here is the form; the rules that bind values to
each other, to the period and to the reference tables are told by `tremvik validar` on your file, one at a time.

- One byte per character, Windows-1252. One record per line, each of the exact length of its kind and ended by
  the two characters CR LF, the last one too. Nothing follows the last record.
- Columns count from 1. The first two characters of a record are its code (`CR`).
- A numeric field is digits and nothing else (no blanks, signs or separators), filled with zeros on the left.
  Values are in cents: `000000000012345` is 123,45. A text field is filled with blanks on the right.
- A quantity field (`Qnn`) announces how many records of kind `nn` follow that belong to this record. They are
  read exactly so, and their totals over the file must agree.
- A file has at most 32,766 records.
)";

/// The kind whose records `field` of a record `parent` announces, or null.
const KindInfo* AnnouncedBy(const KindInfo& parent, const FieldInfo& field) {
  const auto* const kind = std::ranges::find_if(
      kKinds, [&](const KindInfo& k) { return k.parent == parent.kind && k.quantity.name == field.name; });
  return kind == kKinds.end() ? nullptr : kind;
}

std::string_view NoteOf(std::string_view code, std::string_view field) {
  for (const auto& note : kFieldNotes) {
    if (note.code == code && note.field == field) return note.text;
  }
  throw std::logic_error("no note for " + std::string(code) + "." + std::string(field));
}

std::string Content(const KindInfo& kind, const FieldInfo& field) {
  if (field.name == "CR") return "`" + std::string(kind.code) + "`";
  if (field.name == "Separadores") return "CR LF";
  if (const KindInfo* const announced = AnnouncedBy(kind, field)) {
    return "digits: number of CR=" + std::string(announced->code) + " records";
  }
  return std::string(NoteOf(kind.code, field.name));
}

std::string_view Purpose(std::string_view code) {
  for (const auto& note : kKindNotes) {
    if (note.code == code) return note.text;
  }
  throw std::logic_error("no note for CR=" + std::string(code));
}

/// Every note must belong to a field that exists.
void CheckNotes() {
  for (const auto& note : kFieldNotes) {
    const auto* kind = FindKind(note.code);
    if (!kind || std::ranges::find(kind->fields, note.field, &FieldInfo::name) == kind->fields.end()) {
      throw std::logic_error("a note for " + std::string(note.code) + "." + std::string(note.field) +
                             ", which is no field");
    }
  }
}

/// The children of `parent`, each with its own below it, in the order in which they stand in the file.
void PrintChildren(const KindInfo& parent, const std::string& indent) {
  const auto children = ChildrenOf(parent.kind);
  for (const Kind child : children) {
    const bool last = child == children.back();
    std::cout << indent << (last ? "└─ " : "├─ ") << "CR=" << Codigo(child) << "  as many as "
              << InfoOf(child).quantity.name << " of CR=" << parent.code << " says\n";
    PrintChildren(InfoOf(child), indent + (last ? "   " : "│  "));
  }
}

void PrintOrder() {
  std::cout << "\n## Order of the records\n\nThe children of a record follow it directly, each with its own "
               "children, kind by kind from top to bottom:\n\n```text\nCR=01  one, first in the file\n";
  PrintChildren(InfoOf(Kind::kCr01), "");
  std::cout << "```\n";
}

void PrintLengths() {
  std::cout
      << "\n## Kinds and lengths\n\n| CR | Characters | With CR LF | What it is |\n|---|---:|---:|---|\n";
  for (const auto& kind : kKinds) {
    std::cout << "| [" << kind.code << "](#cr" << kind.code << ") | " << kind.length << " | "
              << kind.length + static_cast<int>(kCrLf.size()) << " | " << Purpose(kind.code) << " |\n";
  }
}

void PrintFields(const KindInfo& kind) {
  std::cout << "\n## CR=" << kind.code << "\n\n"
            << Purpose(kind.code) << ' ' << kind.length
            << " characters and CR LF.\n\n| Field | Columns | Width | Content |\n|---|---|---:|---|\n";
  for (const auto& field : kind.fields) {
    std::cout << "| " << field.name << " | " << field.position;
    if (field.width > 1) std::cout << '-' << field.position + field.width - 1;
    std::cout << " | " << field.width << " | " << Content(kind, field) << " |\n";
  }
}

}  // namespace
}  // namespace tremvik::tools

int main() try {
  tremvik::tools::CheckNotes();
  std::cout << tremvik::tools::kHead;
  tremvik::tools::PrintOrder();
  tremvik::tools::PrintLengths();
  for (const auto& kind : tremvik::kKinds)
    tremvik::tools::PrintFields(kind);
  return std::cout.flush() ? 0 : 1;
} catch (const std::exception& error) {
  std::cerr << "layout_doc: " << error.what() << '\n';
  return 1;
}
