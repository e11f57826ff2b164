#pragma once

#include <memory>

#include "host/reference_engine.h"

namespace tremvik {

/// The database engine of the reference tables over the rows that are part of the program, without a file:
/// whatever path is opened, they answer. Answers are remembered by their query texts.
class MemoryReferenceEngine final : public ReferenceEngine {
 public:
  MemoryReferenceEngine();
  ~MemoryReferenceEngine() override;
  MemoryReferenceEngine(const MemoryReferenceEngine&) = delete;
  MemoryReferenceEngine& operator=(const MemoryReferenceEngine&) = delete;

  Database& OpenDatabase(std::string_view path) override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tremvik
