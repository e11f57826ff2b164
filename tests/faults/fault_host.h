// A host in front of another one whose calls fail as planned.
#pragma once

#include <memory>

#include "host/host.h"
#include "tests/faults/fault_plan.h"

namespace tremvik::test {

/// Wraps any host. Every call of every collaborator is one of the plan's; a call that fails is not passed on, but for closing a
/// file, which closes it and then fails.
class FaultHost {
 public:
  /// `inner`'s objects and `plan` must outlive this object, and this object every component made with it.
  FaultHost(const Host& inner, FaultPlan& plan);
  ~FaultHost();
  FaultHost(const FaultHost&) = delete;
  FaultHost& operator=(const FaultHost&) = delete;
  [[nodiscard]] Host host();
  [[nodiscard]] std::size_t open_files() const;

 private:
  struct Faulty;
  std::unique_ptr<Faulty> faulty_;
};

}  // namespace tremvik::test
