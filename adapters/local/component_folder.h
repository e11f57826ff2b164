// The component's folder on this machine, and how the component's paths become paths of the machine.
#pragma once

#include <string>
#include <string_view>

namespace tremvik {

/// Names of the files that the component's paths mention.
namespace arquivo {
inline constexpr std::string_view kTabelasFixas = "tblFixas.fix";
inline constexpr std::string_view kTemporarioVazio = "BDTemp.mdb";
inline constexpr std::string_view kTemporario = "BDTempPrf.fix";
}  // namespace arquivo

/// The folder that the component knows as its own. The component writes the path of a file in it as the
/// folder, "\" and the name, on every platform; here such a path becomes a path of the machine. Paths are
/// UTF-8.
class ComponentFolder {
 public:
  /// `path` is made absolute and loses separators at its end; it need not exist. Raises 76 for a relative
  /// path where the working folder is gone.
  explicit ComponentFolder(std::string_view path);

  /// The folder as the component knows it (App.Path).
  [[nodiscard]] const std::string& path() const { return path_; }
  /// Where the file `name` of the folder lies on this machine.
  [[nodiscard]] std::string File(std::string_view name) const;
  /// The machine's path of a path that the component uses; one that is not in the folder is taken as it
  /// stands.
  [[nodiscard]] std::string Resolve(std::string_view path) const;

 private:
  std::string path_;
};

/// The folder of the user's settings: $XDG_CONFIG_HOME, else ~/.config. A relative value counts as unset;
/// empty where both are.
[[nodiscard]] std::string ConfigHome();
/// The folder of the user's data: $XDG_DATA_HOME, else ~/.local/share, in the same way.
[[nodiscard]] std::string DataHome();

}  // namespace tremvik
