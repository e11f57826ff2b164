#include "sample/sample.h"

#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "layout/cr01.h"
#include "sample/declaration.h"
#include "sample/draw.h"
#include "sample/record_builder.h"
#include "sample/registrations.h"

namespace tremvik::sample {
namespace {

constexpr int kMostOfAQuantity = 9999;  // a quantity field has four digits
constexpr int kMostRecords = 99'999;
constexpr int kUsualDeclarations = 12;

// References on both sides of every limit at which a rule of the file changes.
constexpr std::array kReferences{
    200007, 200012, 200101, 200112, 200201, 200212, 200301, 200307, 200308, 200312, 200401, 200412, 200501,
    200512, 200601, 200606, 200607, 200712, 200801, 200804, 200805, 200906, 200907, 200912, 201001, 201003,
    201004, 201005, 201006, 201007, 201012, 201101, 201110, 201111, 201112, 201201, 201212, 201301};
constexpr int kFirstReference = kReferences.front();
constexpr int kMonthsDrawn = 174;         // up to 201412
constexpr int kFirstUnderEight = 201201;  // IEs beginning with 8
constexpr int kBeforeRegime4 = 200006;
constexpr int kFirstOfRegime4 = 200007;
constexpr int kLastOfRegime4 = 200512;

// Who declares what: references in a drawn order, the limits first, and regimes in turn.
class Schedule {
 public:
  explicit Schedule(Draw& draw) : draw_(draw), limits_(kReferences.begin(), kReferences.end()) {
    draw_.Shuffle(limits_);
    limits_.insert(limits_.begin(), kBeforeRegime4);  // comes last: files without it stay as they were
  }

  Declaracao Complete() {
    const int ref = AddMonths(kFirstUnderEight, draw_.Between(0, 35));
    Contribuinte contribuinte = New(DrawIE(draw_));
    used_.insert({contribuinte.ie, ref});
    return DrawDeclaracao(draw_, contribuinte, ref, 1, true);
  }

  Declaracao Next() {
    const int ref = NextReference();
    const Contribuinte contribuinte = WhoDeclares(ref);
    return DrawDeclaracao(draw_, contribuinte, ref, NextRegime(ref), false);
  }

 private:
  int NextReference() {
    if (limits_.empty()) return AddMonths(kFirstReference, draw_.Between(0, kMonthsDrawn - 1));
    const int ref = limits_.back();
    limits_.pop_back();
    return ref;
  }

  int NextRegime(int ref) {
    if (ref == kFirstOfRegime4) return 4;
    const bool with_regime4 = ref > kFirstOfRegime4 && ref <= kLastOfRegime4;
    return with_regime4 ? 1 + old_++ % 4 : 1 + recent_++ % 3;
  }

  Contribuinte New(std::string ie) {
    contribuintes_.push_back({.ie = std::move(ie), .cnpj = DrawCNPJ(draw_)});
    return contribuintes_.back();
  }

  // Mostly someone who declares other references too; of the new ones, every second that can begins with 8.
  Contribuinte WhoDeclares(int ref) {
    const bool recent = ref >= kFirstUnderEight;
    if (draw_.Chance(60) && (!recent || new_recent_ > 0)) {
      const Contribuinte& known = contribuintes_[draw_.Between<std::size_t>(0, contribuintes_.size() - 1)];
      const bool fits = recent || !known.ie.starts_with('8');
      if (fits && used_.insert({known.ie, ref}).second) return known;
    }
    const bool under_eight = recent && new_recent_++ % 2 == 0;
    std::string ie = under_eight ? DrawIE(draw_, '8') : DrawIE(draw_);
    while (!used_.insert({ie, ref}).second)
      ie = DrawIE(draw_);
    return New(std::move(ie));
  }

  Draw& draw_;
  std::vector<int> limits_;
  std::vector<Contribuinte> contribuintes_;
  std::set<std::pair<std::string, int>> used_;
  int old_ = 0;
  int recent_ = 0;
  int new_recent_ = 0;
};

int Records(const std::vector<Declaracao>& plan) {
  int total = 1;
  for (const auto& declaracao : plan)
    total += declaracao.Records();
  return total;
}

std::vector<Declaracao> Plan(const Options& options, Draw& draw) {
  const bool as_many_as_fit = options.declaracoes == 0 && options.registros > 0;
  const int usual = as_many_as_fit ? kMostOfAQuantity : kUsualDeclarations;
  const auto quantity = static_cast<std::size_t>(options.declaracoes > 0 ? options.declaracoes : usual);
  Schedule schedule(draw);
  std::vector<Declaracao> plan{schedule.Complete()};
  int total = Records(plan);
  while (plan.size() < quantity) {
    Declaracao declaracao = schedule.Next();
    total += declaracao.Records();
    if (as_many_as_fit && total > options.registros) break;
    plan.push_back(std::move(declaracao));
  }
  return plan;
}

// The quantities that can be raised at will: their records have no rules that tie them to others.
std::vector<int*> FreeQuantities(std::vector<Declaracao>& plan) {
  std::vector<int*> free;
  for (auto& declaracao : plan) {
    if (declaracao.TakesDipam()) free.push_back(&declaracao.dipam);
    if (declaracao.TakesExportacoes()) free.push_back(&declaracao.exportacoes);
    for (auto& cfop : declaracao.cfops) {
      if (cfop.interestaduais > 0) free.insert(free.end(), {&cfop.interestaduais, &cfop.remessas});
    }
  }
  return free;
}

// Brings the plan to exactly `registros` records, spread evenly.
void FillUp(std::vector<Declaracao>& plan, int registros) {
  const int least = Records(plan);
  const auto free = FreeQuantities(plan);
  int missing = registros - least;
  int room = 0;
  for (const int* quantity : free)
    room += kMostOfAQuantity - *quantity;
  if (missing < 0 || missing > room) {
    throw std::invalid_argument("Com esta semente, um arquivo de " + std::to_string(plan.size()) +
                                (plan.size() == 1 ? " declaração" : " declarações") + " tem de " +
                                std::to_string(least) + " a " + std::to_string(least + room) +
                                " registros. Informe outro número de registros ou de declarações.");
  }
  while (missing > 0) {
    const int share = (missing + static_cast<int>(free.size()) - 1) / static_cast<int>(free.size());
    for (int* quantity : free) {
      const int more = std::min({share, missing, kMostOfAQuantity - *quantity});
      *quantity += more;
      missing -= more;
    }
  }
}

void Check(const Options& options) {
  if (options.declaracoes < 0 || options.declaracoes > kMostOfAQuantity) {
    throw std::invalid_argument("O número de declarações deve estar entre 1 e 9999.");
  }
  if (options.registros < 0 || options.registros > kMostRecords) {
    throw std::invalid_argument("O número de registros deve estar entre 1 e 99999.");
  }
}

std::string MasterRecord(Draw& draw, std::size_t declaracoes) {
  RecordBuilder<Cr01> record;
  record.Text(Cr01::kTipoDocto, "01")
      .Number(Cr01::kDataGeracao, 20150100 + draw.Between(1, 31))
      .Number(Cr01::kHoraGeracao, draw.Between<std::int64_t>(8, 17) * 10000)
      .Text(Cr01::kVersaoPref, "0210")
      .Number(Cr01::kQ05, static_cast<std::int64_t>(declaracoes));
  return record.bytes();
}

}  // namespace

std::string Generate(const Options& options) {
  Check(options);
  Draw draw(options.seed);
  auto plan = Plan(options, draw);
  if (options.registros > 0) FillUp(plan, options.registros);
  if (options.duvida) ExceedImposto(plan.front().cfops.front());
  std::ranges::sort(plan, {}, [](const Declaracao& d) { return std::tuple(d.contribuinte.ie, d.ref); });
  std::string out = MasterRecord(draw, plan.size());
  for (const auto& declaracao : plan)
    Write(declaracao, draw, out);
  return out;
}

}  // namespace tremvik::sample
