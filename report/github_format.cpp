#include "report/github_format.h"

#include <algorithm>
#include <string_view>

#include "report/catalogue.h"
#include "report/words.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

// A text that neither ends the command nor begins another one; within properties two more characters part.
std::string Escaped(std::string_view text, bool property) {
  std::string out;
  for (const char c : text) {
    if (c == '%') {
      out += "%25";
    } else if (c == '\n') {
      out += "%0A";
    } else if (property && c == ':') {
      out += "%3A";
    } else if (property && c == ',') {
      out += "%2C";
    } else {
      out += c;
    }
  }
  return out;
}

struct Annotation {
  std::string_view level;
  std::string_view title;
  std::string message;  // its lines parted by LF, each of them visible
  int line = 0;
  int column = 0;
  int end_column = 0;
};

std::string Command(const FileReport& file, const Annotation& annotation) {
  std::string out =
      "::" + std::string(annotation.level) + " file=" + Escaped(text::Visible(file.arquivo), true);
  const auto number = [&out](std::string_view name, int value) {
    if (value > 0) out.append(",").append(name).append("=").append(std::to_string(value));
  };
  number("line", annotation.line);
  number("endLine", annotation.line);
  number("col", annotation.column);
  number("endColumn", annotation.end_column);
  return out + ",title=" + Escaped(text::Visible(annotation.title), true) +
         "::" + Escaped(annotation.message, false) + "\n";
}

Annotation OfFinding(const Finding& finding) {
  const Rule* const rule = FindRule(finding.regra);
  std::string message = text::Visible(MessageAndReason(finding));
  if (rule != nullptr) message += "\n" + text::Visible(rule->como_mendar);
  return {.level = finding.tipo == FindingKind::kQuestion ? "warning" : "error",
          .title = finding.regra,
          .message = std::move(message),
          .line = finding.linha,
          .column = finding.coluna,
          .end_column = finding.coluna > 0 ? finding.coluna + std::max(finding.largura, 1) - 1 : 0};
}

}  // namespace

std::string GithubFormat::Begin(const Heading& /*heading*/) { return {}; }

std::string GithubFormat::File(const FileReport& file) {
  std::string out;
  for (const Finding& finding : file.exame.inconsistencias)
    out += Command(file, OfFinding(finding));
  for (const Unexamined& unexamined : file.exame.naoExaminado) {
    out += Command(file, {.level = "warning",
                          .title = "não examinado",
                          .message = text::Visible(InWords(unexamined)),
                          .line = unexamined.linha});
  }
  if (file.exame.limitado) {
    out += Command(file, {.level = "warning", .title = "limite", .message = std::string(kLimitReached)});
  }
  if (file.estado == FileVerdict::kError) {
    out +=
        Command(file, {.level = "error", .title = "erro", .message = text::Visible(OneLine(file.problema))});
  }
  return out;
}

std::string GithubFormat::End(const Summary& /*summary*/) { return {}; }

}  // namespace tremvik::report
