#pragma once

#include <string>
#include <string_view>

namespace tremvik {

/// The application object: the component's own folder, the per-user settings, and what all instances share.
struct Application {
  virtual ~Application() = default;
  /// The component's folder, UTF-8, without a separator at its end.
  virtual std::string AppPath() = 0;
  /// The per-user setting `key` of `section` of `application`, or `fallback` where there is none.
  virtual std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view fallback) = 0;
  /// The path of the temporary database as the last run has kept it, whichever instance ran; empty before the
  /// first one.
  virtual std::string CaminhoBaseTemp() = 0;
  virtual void GuardarCaminhoBaseTemp(std::string_view caminho) = 0;
};

}  // namespace tremvik
