// The reference tables by both engines: whatever an import asks, they answer alike.
#include <filesystem>
#include <fstream>
#include <set>

#include "adapters/com/tables_engine.h"
#include "adapters/local/documents.h"
#include "com_support.h"
#include "component/tremvik.h"
#include "sample/draw.h"
#include "sample/sample.h"
#include "tests/support/memory_host.h"

namespace tremvik::com_test {
namespace {

// Asks the SQLite of the library and the desktop engine.
class BothEngines final : public ReferenceEngine, Database, Recordset {
 public:
  Database& OpenDatabase(std::string_view path) override {
    const std::string folder(path.substr(0, path.find_last_of('\\') + 1));
    one_ = &sqlite_.OpenDatabase(folder + "sqlite.fix");
    other_ = &desktop_.OpenDatabase(folder + "desktop.fix");
    return *this;
  }
  Recordset& OpenRecordset(std::string_view sql, int type) override {
    sql_ = sql;
    rows_ = {&one_->OpenRecordset(sql, type), &other_->OpenRecordset(sql, type)};
    return *this;
  }
  long RecordCount() override {
    const bool found = rows_.first->RecordCount() != 0;
    EXPECT_EQ(found, rows_.second->RecordCount() != 0) << sql_;
    (found ? known : unknown).insert(sql_);
    return found ? 1 : 0;
  }
  std::string_view Field(std::string_view name) override {
    EXPECT_EQ(rows_.first->Field(name), rows_.second->Field(name)) << sql_;
    return rows_.first->Field(name);
  }
  void Close() override { rows_.second->Close(); }

  std::set<std::string> known, unknown;  ///< the queries that found something, and the others

 private:
  com::TablesEngine sqlite_, desktop_;
  Database* one_ = nullptr;
  Database* other_ = nullptr;
  std::pair<Recordset*, Recordset*> rows_;
  std::string sql_;
};

class LookupHost : public test::MemoryHost {
 public:
  LookupHost(ReferenceEngine& engine, std::string_view file) : MemoryHost(Folder()), engine_(engine) {
    files[std::string(test::kInputPath)] = file;
    keeps_log = false;
    answers = {resposta::kSim};
  }
  Database& OpenDatabase(std::string_view path) override { return engine_.OpenDatabase(path); }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<ValidadorDocumentosLocal>();
  }

 private:
  ReferenceEngine& engine_;
};

// Of every second file a digit of a record's code or key is changed.
std::string Generated(std::uint64_t seed) {
  std::string file = sample::Generate({.declaracoes = 3, .seed = seed});
  sample::Draw draw(seed);
  const auto line = file.find("\r\n", draw.Between<std::size_t>(0, file.size() - 300)) + 2;
  const auto column = draw.Between<std::size_t>(2, 9);
  if (seed % 2 == 0) file[line + column] = static_cast<char>('0' + draw.Between(0, 9));
  return file;
}

TEST(Lookups, BothEnginesAnswerAlike) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    BothEngines engines;
    const auto import = [&engines](const std::string& file) {
      LookupHost host(engines, file);
      Tremvik(host.host()).Monitora(test::kInputPath);
    };
    for (const auto& entry : std::filesystem::directory_iterator(Folder() + "\\samples")) {
      std::ifstream file(entry.path(), std::ios::binary);
      import({std::istreambuf_iterator<char>(file), {}});
    }
    for (std::uint64_t seed = 1; seed <= 2000; ++seed)
      import(Generated(seed));
    EXPECT_GT(engines.known.size(), 400U);
    EXPECT_GT(engines.unknown.size(), 50U);
  }
  CoUninitialize();
}

}  // namespace
}  // namespace tremvik::com_test
