#include "adapters/com/dao_engine.h"

#include <cstdint>

#include "host/runtime_error.h"

namespace tremvik::com {
namespace {

constexpr std::wstring_view kEngine = L"DAO.DBEngine.36";
constexpr std::wstring_view kLaterEngine = L"DAO.DBEngine.120";

// Removes `closed` from the list that owns it: the last act of its life.
template <class Owned>
void Remove(std::list<Owned>& owned, const Owned& closed) {
  owned.remove_if([&closed](const Owned& each) { return &each == &closed; });
}

LateBound MakeEngine() {
  try {
    return LateBound::Create(kEngine);
  } catch (const RuntimeError&) {
    return LateBound::Create(kLaterEngine);
  }
}

}  // namespace

long DaoRecordset::RecordCount() { return object_.Get<std::int32_t>(L"RecordCount"); }

std::string_view DaoRecordset::Field(std::string_view name) {
  auto field = object_.Get<LateBound>(L"Fields").Get<LateBound>(L"Item", name);
  return texts_.emplace_back(field.Get<std::string>(L"Value"));
}

void DaoRecordset::Close() {
  object_.Call(L"Close");
  owner_.Forget(*this);
}

Recordset& DaoDatabase::OpenRecordset(std::string_view sql, int type) {
  const auto wanted = static_cast<std::int32_t>(type);
  return recordsets_.emplace_back(*this, object_.Get<LateBound>(L"OpenRecordset", sql, wanted));
}

void DaoDatabase::Close() {
  object_.Call(L"Close");
  owner_.Forget(*this);
}

void DaoDatabase::Forget(const DaoRecordset& closed) { Remove(recordsets_, closed); }

LateBound& DaoEngine::engine() {
  if (!engine_) engine_ = MakeEngine();
  return *engine_;
}

Database& DaoEngine::OpenDatabase(std::string_view path) {
  return databases_.emplace_back(*this, engine().Get<LateBound>(L"OpenDatabase", path));
}

void DaoEngine::Forget(const DaoDatabase& closed) { Remove(databases_, closed); }

}  // namespace tremvik::com
