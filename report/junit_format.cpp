#include "report/junit_format.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "examination/lines.h"
#include "report/words.h"
#include "runtime/text.h"
#include "text/markup.h"

namespace tremvik::report {
namespace {

using text::Markup;

/// One case: the lines from its header on, or those before the first one.
struct Case {
  std::string name;
  int linha = 0;  // where it begins
  std::vector<const Finding*> faults;
  std::vector<const Finding*> questions;
  std::vector<const Unexamined*> unexamined;
};

std::string NameOf(std::string_view header, int linha) {
  using C = Cr05;
  const auto text = [&](const Field<C>& field) {
    return Utf8(Mid(header, static_cast<std::size_t>(field.position), static_cast<std::size_t>(field.width)));
  };
  return "IE " + text(C::kIE) + ", referência " + text(C::kRef) + ", linha " + std::to_string(linha);
}

// The case of the file as a whole, then one a declaration.
std::vector<Case> Declarations(std::string_view bytes) {
  std::vector<Case> cases(1);
  cases.front().name = "arquivo";
  const std::vector<Line> lines = SplitLines(bytes, kMostLines);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (KindOf(lines[i].content) != &InfoOf(Kind::kCr05)) continue;
    Case& declaration = cases.emplace_back();
    declaration.linha = static_cast<int>(i) + 1;
    declaration.name = NameOf(lines[i].content, declaration.linha);
  }
  return cases;
}

// The case that a line belongs to.
Case& CaseAt(std::vector<Case>& cases, int linha) {
  const auto after =
      std::ranges::upper_bound(cases, linha, {}, [](const Case& declaration) { return declaration.linha; });
  return *std::prev(after == cases.begin() ? std::next(after) : after);
}

void Sort(const Examination& exame, std::vector<Case>& cases) {
  for (const Finding& finding : exame.inconsistencias) {
    Case& at = CaseAt(cases, finding.linha);
    // A question that the import answers No refuses the file as a fault does.
    const bool fails = finding.tipo == FindingKind::kFault || finding.doImportador;
    (fails ? at.faults : at.questions).push_back(&finding);
  }
  for (const Unexamined& unexamined : exame.naoExaminado) {
    for (Case& declaration : cases) {
      if (declaration.linha <= unexamined.ate && &declaration >= &CaseAt(cases, unexamined.linha))
        declaration.unexamined.push_back(&unexamined);
    }
  }
}

// The cases of a file that was examined, of which there is at least one.
std::vector<Case> CasesOf(const FileReport& file) {
  std::vector<Case> cases = Declarations(file.conteudo);
  Sort(file.exame, cases);
  const Case& whole = cases.front();
  const bool silent = whole.faults.empty() && whole.questions.empty() && whole.unexamined.empty();
  if (silent && cases.size() > 1) cases.erase(cases.begin());
  return cases;
}

std::string Lines(const std::vector<const Finding*>& findings) {
  std::string out;
  for (const Finding* finding : findings) {
    out += "linha " + std::to_string(finding->linha) + ", coluna " + std::to_string(finding->coluna) + ": " +
           Markup(finding->regra + " " + MessageAndReason(*finding)) + "\n";
  }
  return out;
}

std::string Element(const Case& of, std::string_view file) {
  std::string out = "    <testcase classname=\"" + Markup(file) + "\" name=\"" + Markup(of.name) + "\"";
  if (of.faults.empty() && of.questions.empty() && of.unexamined.empty()) return out + "/>\n";
  out += ">\n";
  if (!of.faults.empty()) {
    out += "      <failure type=\"" + Markup(of.faults.front()->regra) + "\" message=\"" +
           Markup(MessageAndReason(*of.faults.front())) + "\">" + Lines(of.faults) + "</failure>\n";
  } else if (!of.unexamined.empty()) {
    out += "      <skipped message=\"" + Markup(InWords(*of.unexamined.front())) + "\"/>\n";
  }
  if (!of.questions.empty()) out += "      <system-out>" + Lines(of.questions) + "</system-out>\n";
  return out + "    </testcase>\n";
}

}  // namespace

std::string JunitFormat::Begin(const Heading& heading) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"" + Markup(heading.programa) +
         "\">\n";
}

std::string JunitFormat::File(const FileReport& file) {
  const bool error = file.estado == FileVerdict::kError;
  std::vector<Case> cases;
  if (!error) cases = CasesOf(file);
  const auto count = [&](auto holds) { return std::to_string(std::ranges::count_if(cases, holds)); };
  std::string out = "  <testsuite name=\"" + Markup(file.arquivo) + "\" tests=\"" +
                    std::to_string(cases.size() + (error ? 1U : 0U)) + "\" failures=\"" +
                    count([](const Case& c) { return !c.faults.empty(); }) + "\" errors=\"" +
                    (error ? "1" : "0") + "\" skipped=\"" +
                    count([](const Case& c) { return c.faults.empty() && !c.unexamined.empty(); }) + "\">\n";
  if (error) {
    out += "    <testcase classname=\"" + Markup(file.arquivo) +
           "\" name=\"exame\">\n      <error message=\"" + Markup(OneLine(file.problema)) +
           "\"/>\n    </testcase>\n";
  }
  for (const Case& each : cases)
    out += Element(each, file.arquivo);
  if (file.exame.limitado) out += "    <system-out>" + std::string(kLimitReached) + "</system-out>\n";
  return out + "  </testsuite>\n";
}

std::string JunitFormat::End(const Summary& /*summary*/) { return "</testsuites>\n"; }

}  // namespace tremvik::report
