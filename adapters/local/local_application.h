#pragma once

#include <string>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "host/application.h"

namespace tremvik {

/// The application object of this machine. The settings of an application are the file
/// "CONFIG_HOME/APPLICATION/configuracao.ini" (for example ~/.config/Brunsel/configuracao.ini):
///
///     [DB]
///     DbAtual = /caminho/do/banco
///
/// UTF-8; sections and keys are found without regard to case (ASCII letters); blanks around a value are not
/// part of it; lines that begin with ";" or "#" are comments; of two equal keys the first counts.
class LocalApplication final : public Application {
 public:
  /// `folder` must outlive this object. `config_home` is usually `ConfigHome()`.
  LocalApplication(const ComponentFolder& folder, std::string config_home)
      : folder_(folder), config_home_(std::move(config_home)) {}

  std::string AppPath() override { return folder_.path(); }
  /// A file that is missing, cannot be read, is no regular file or has more than 1 MiB holds no settings.
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  std::string CaminhoBaseTemp() override { return caminho_base_temp_; }
  void GuardarCaminhoBaseTemp(std::string_view caminho) override { caminho_base_temp_ = caminho; }

 private:
  const ComponentFolder& folder_;
  std::string config_home_;
  std::string caminho_base_temp_;
};

}  // namespace tremvik
