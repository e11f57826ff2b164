// Every file of samples/ against what is written beside it.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/exemplo/memory_host.h"

namespace tremvik {
namespace {

using nlohmann::json;
using test::Box;
using test::MemoryHost;
using test::Place;

std::string Read(const std::string& name) {
  std::ifstream file(SAMPLES_DIR "/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

json Boxes(const std::vector<Box>& boxes) {
  json all = json::array();
  for (const auto& [texto, estilo, titulo] : boxes) {
    all.push_back({{"texto", texto}, {"estilo", estilo}, {"titulo", titulo}});
  }
  return all;
}

json Places(const std::vector<Place>& places) {
  json all = json::array();
  for (const auto& [linha, registro, campo, posicao] : places) {
    all.push_back({{"linha", linha}, {"registro", registro}, {"campo", campo}, {"posicao", posicao}});
  }
  return all;
}

TEST(Samples, AreAnsweredAsStated) {
  test::ReferenceFolder reference;
  const json cases = json::parse(Read("esperado.json"));
  ASSERT_GT(cases.size(), 13U);
  for (const json& expected : cases) {
    const std::string name = expected["arquivo"];
    const std::string file = Read(name);
    MemoryHost host(reference, file);
    const bool accepted =
        host.Import(expected.value("responder", "nao") == "sim" ? resposta::kSim : resposta::kNao);
    EXPECT_EQ(accepted, expected["saida"] == 0) << name;
    EXPECT_EQ(Boxes(host.boxes), expected["mensagens"]) << name;
    EXPECT_EQ(Places(host.places), expected["inconsistencias"]) << name;
  }
}

}  // namespace
}  // namespace tremvik
