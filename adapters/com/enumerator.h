// Enumerators of automation: a fixed list, handed out in portions.
#pragma once

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "adapters/com/errors.h"
#include "adapters/com/module.h"
#include "adapters/com/owners.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// What an enumerator hands out, and the pointer in it that the receiver must release.
inline IUnknown* Counted(IConnectionPoint* item) { return item; }
inline IUnknown* Counted(const CONNECTDATA& item) { return item.pUnk; }

/// Implements `Interface`, an enumerator of `Item`s. Keeps the items alive. Made with one reference.
template <class Interface, class Item>
class Enumerator final : public Interface {
 public:
  explicit Enumerator(std::vector<Item> items, std::size_t next = 0) : items_(std::move(items)), next_(next) {
    for (const Item& item : items_)
      held_.emplace_back(Counted(item));
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, __uuidof(Interface))) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override {
    if (!items || (count > 1 && !fetched)) return E_POINTER;
    const auto given = std::min<std::size_t>(count, items_.size() - next_);
    for (std::size_t i = 0; i < given; ++i) {
      items[i] = items_[next_++];
      Counted(items[i])->AddRef();
    }
    if (fetched) *fetched = static_cast<ULONG>(given);
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const auto left = items_.size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** clone) override {
    if (!clone) return E_POINTER;
    *clone = nullptr;
    return Guarded([&] { *clone = new Enumerator(items_, next_); });
  }

 private:
  ~Enumerator() = default;

  Use use_;
  std::vector<Item> items_;
  std::vector<ComPtr<IUnknown>> held_;
  std::size_t next_;
  std::atomic<ULONG> references_{1};
};

}  // namespace tremvik::com
