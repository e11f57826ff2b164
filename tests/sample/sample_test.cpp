#include "sample/sample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "component/tremvik.h"
#include "tests/support/files.h"
#include "tests/support/tables_host.h"

namespace tremvik {
namespace {

using sample::Generate;
using sample::Options;
using test::References;

// One import; its questions are answered with `answer`.
struct Import : test::TablesHost {
  Import(References& references, const std::string& file, int answer = resposta::kNao)
      : TablesHost(references, file) {
    answers = {answer};
    keeps_log = false;
    Tremvik tremvik(host());
    tremvik.Monitora(test::kInputPath);
    accepted = tremvik.outcome().estado == Outcome::Estado::kAceito;
  }
  bool accepted;
};

std::vector<std::string_view> Lines(std::string_view file) {
  std::vector<std::string_view> lines;
  for (std::size_t end = 0; (end = file.find("\r\n")) != file.npos; file.remove_prefix(end + 2)) {
    lines.push_back(file.substr(0, end));
  }
  return lines;
}

std::map<std::string, int, std::less<>> RecordsPerCode(std::string_view file) {
  std::map<std::string, int, std::less<>> records;
  for (const auto line : Lines(file))
    ++records[std::string(line.substr(0, 2))];
  return records;
}

class Exemplo : public testing::Test {
 protected:
  // True when the file is accepted without a word and all its records reach their writers.
  static void ExpectAccepted(const std::string& file, const std::string& which) {
    const Import import(*references_, file);
    ASSERT_TRUE(import.accepted) << which << ": "
                                 << (import.boxes.empty() ? "no box" : import.boxes.back().text);
    EXPECT_EQ(import.boxes.size(), 1U) << which;
    auto expected = RecordsPerCode(file);
    expected.erase("01");
    EXPECT_EQ(import.written, expected) << which;
    EXPECT_EQ(expected.size(), 12U) << which << ": a record kind is missing";
  }

  static void SetUpTestSuite() { references_ = std::make_unique<References>(); }
  static void TearDownTestSuite() { references_.reset(); }
  static inline std::unique_ptr<References> references_;
};

TEST_F(Exemplo, AThousandSeedsAreAccepted) {
  for (int seed = 0; seed < 1000 && !HasFailure(); ++seed) {
    const int declarations = 1 + seed % 5;
    ExpectAccepted(Generate({.declaracoes = declarations, .seed = static_cast<std::uint64_t>(seed)}),
                   "seed " + std::to_string(seed) + ", declarations " + std::to_string(declarations));
  }
}

TEST_F(Exemplo, ALargeFileHoldsEveryRegimeAndBothSidesOfEveryPeriodLimit) {
  const std::set<std::string> limits{
      "200006", "200007", "200012", "200101", "200112", "200201", "200212", "200301", "200307", "200308",
      "200312", "200401", "200412", "200501", "200512", "200601", "200606", "200607", "200712", "200801",
      "200804", "200805", "200906", "200907", "200912", "201001", "201003", "201004", "201005", "201006",
      "201007", "201012", "201101", "201110", "201111", "201112", "201201", "201212", "201301"};
  for (const std::uint64_t seed : {1U, 2U, 3U}) {
    std::set<std::string> references;
    std::set<std::string> regimes;
    std::set<bool> under_8;
    const std::string file = Generate({.declaracoes = 60, .seed = seed});
    ExpectAccepted(file, "sixty declarations of seed " + std::to_string(seed));
    for (const auto line : Lines(file)) {
      if (!line.starts_with("05")) continue;
      regimes.emplace(line.substr(35, 2));
      references.emplace(line.substr(37, 6));
      under_8.insert(line[2] == '8');
      EXPECT_TRUE(line.substr(37, 6) != "200007" ||
                  line.substr(35, 2) == "04");  // the first reference open to it
    }
    EXPECT_EQ(regimes, (std::set<std::string>{"01", "02", "03", "04"}));
    EXPECT_THAT(references, testing::IsSupersetOf(limits));
    EXPECT_EQ(under_8.size(), 2U);
  }
}

TEST_F(Exemplo, TheSameSeedGivesTheSameBytesEverywhere) {
  const std::string committed = test::ReadFile(SAMPLES_DIR "/aceito.txt");
  EXPECT_TRUE(Generate({.declaracoes = 6, .seed = 1131}) == committed);
  EXPECT_FALSE(Generate({.declaracoes = 6, .seed = 1132}) == committed);
}

TEST_F(Exemplo, ANumberOfRecordsIsMetExactly) {
  for (const Options& options : {Options{.registros = 1000}, Options{.registros = 10'000},
                                 Options{.registros = 32'766}, Options{.declaracoes = 1, .registros = 32'766},
                                 Options{.declaracoes = 300, .seed = 9, .registros = 20'000}}) {
    const std::string file = Generate(options);
    EXPECT_EQ(Lines(file).size(), static_cast<std::size_t>(options.registros));
    ExpectAccepted(file, std::to_string(options.registros) + " records");
  }
  for (const int records : {32'767, 32'768}) {
    const std::string file = Generate({.registros = records});
    EXPECT_EQ(Lines(file).size(), static_cast<std::size_t>(records));
    EXPECT_FALSE(Import(*references_, file).accepted) << records;
  }
}

TEST_F(Exemplo, ADoubtAsksOnce) {
  const std::string file = Generate({.duvida = true});
  const Import yes(*references_, file, resposta::kSim);
  EXPECT_TRUE(yes.accepted);
  ASSERT_EQ(yes.boxes.size(), 2U);
  EXPECT_EQ(yes.boxes[0].style, 324);
  const Import no(*references_, file, resposta::kNao);
  EXPECT_FALSE(no.accepted);
  EXPECT_EQ(no.boxes.size(), 1U);
}

TEST_F(Exemplo, WhatNoFileCanHoldIsSaid) {
  for (const Options& options : {Options{.declaracoes = 10'000}, Options{.registros = 100'000},
                                 Options{.registros = 2}, Options{.declaracoes = 500, .registros = 600}}) {
    EXPECT_THROW(static_cast<void>(Generate(options)), std::invalid_argument);
  }
}

}  // namespace
}  // namespace tremvik
