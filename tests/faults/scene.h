// A folder with a store that holds one declaration, a sample file to import, and what a person would look at.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "host/host.h"
#include "tests/support/files.h"

namespace tremvik::test {

/// The bytes of a sample file with every record kind in its first declaration.
[[nodiscard]] std::string Sample(int declaracoes, std::uint64_t semente, bool duvida = false);
/// Declarations that the store of `pasta` holds, after a check of the whole store; -1 when it is damaged.
[[nodiscard]] int DeclarationsIn(const std::string& pasta);

/// The user's screen: says Yes to every question and keeps the titles of the boxes.
struct Desk final : Screen, Events, Diagnostics {
  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& /*where*/) override {}
  void Duvida(const FaultLocation& /*where*/) override {}

  int faults = 0;     ///< boxes that tell of a fault
  int successes = 0;  ///< boxes that tell of success
  int questions = 0;
  std::string last;  ///< text of the last fault
};

/// The store holds one declaration, the sample holds another one.
class Scene {
 public:
  Scene();
  [[nodiscard]] const std::string& pasta() const { return pasta_; }
  [[nodiscard]] const std::string& sample() const { return sample_; }
  /// Puts the store back as it was at first.
  void Restore() const;

  /// What one import did.
  struct Ended {
    bool failed;      ///< `bolRetMonitora`
    bool kept;        ///< the declarations went into the store
    std::string why;  ///< the store's error, empty for none
    Desk desk;
  };
  /// Makes a host with `pasta`, imports the sample through `wrap(host)` and keeps what was accepted.
  /// `before` and `after` stand directly around `Monitora`, and so does everything of the component.
  struct Around {
    std::function<Host(const Host&)> wrap = [](const Host& host) { return host; };
    std::function<void()> before = [] {};
    std::function<void()> after = [] {};
  };
  [[nodiscard]] Ended Import(const Around& around) const;

 private:
  ScratchFolder folder_;
  std::string pasta_ = folder_.path() + "/pasta";
  std::string sample_ = folder_.path() + "/amostra.txt";
  std::string store_;  // the store's bytes
};

}  // namespace tremvik::test
