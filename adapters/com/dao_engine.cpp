#include "adapters/com/dao_engine.h"

#include <cstdint>

#include "host/runtime_error.h"

namespace tremvik::com {
namespace {

constexpr std::wstring_view kEngine = L"DAO.DBEngine.36";
constexpr std::wstring_view kLaterEngine = L"DAO.DBEngine.120";

LateBound MakeEngine() {
  try {
    return LateBound::Create(kEngine);
  } catch (const RuntimeError&) {
    return LateBound::Create(kLaterEngine);
  }
}

}  // namespace

DaoRecordset::DaoRecordset(LateBound& database, std::string_view sql, int type)
    : database_(database), sql_(sql), type_(type) {
  Rows();
}

LateBound& DaoRecordset::Rows() {
  if (!rows_) rows_ = database_.Get<LateBound>(L"OpenRecordset", sql_, std::int32_t{type_});
  return *rows_;
}

long DaoRecordset::RecordCount() {
  if (!count_) count_ = Rows().Get<std::int32_t>(L"RecordCount");
  return *count_;
}

std::string_view DaoRecordset::Field(std::string_view name) {
  if (const auto known = fields_.find(name); known != fields_.end()) return known->second;
  auto field = Rows().Get<LateBound>(L"Fields").Get<LateBound>(L"Item", name);
  return fields_.emplace(name, field.Get<std::string>(L"Value")).first->second;
}

void DaoRecordset::Close() {
  if (!rows_) return;
  rows_->Call(L"Close");
  rows_.reset();
}

DaoDatabase::~DaoDatabase() {
  try {
    object_.Call(L"Close");
  } catch (...) {  // NOLINT(bugprone-empty-catch): the run that asked is over
  }
}

Recordset& DaoDatabase::OpenRecordset(std::string_view sql, int type) {
  return answers_.To(sql, [&] { return DaoRecordset(object_, sql, type); });
}

Database& DaoEngine::OpenDatabase(std::string_view path) {
  if (database_ && path == path_) return *database_;
  if (!engine_) engine_ = MakeEngine();
  auto opened = engine_->Get<LateBound>(L"OpenDatabase", path);
  path_ = path;
  return database_.emplace(std::move(opened));
}

}  // namespace tremvik::com
