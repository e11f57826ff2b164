#include "adapters/local/component_folder.h"

#include <cstdlib>
#include <filesystem>

#include "adapters/local/system.h"

namespace tremvik {
namespace {

std::string Folder(std::string_view path) {
  std::error_code code;
  std::string folder =
      std::filesystem::absolute(std::filesystem::path(path), code).lexically_normal().string();
  if (code)
    throw FileError(code.value(), "Não foi possível chegar pela pasta de trabalho a", std::string(path));
  while (folder.size() > 1 && folder.back() == '/')
    folder.pop_back();
  return folder;
}

std::string UserFolder(const char* variable, std::string_view below_home) {
  const char* const value = std::getenv(variable);
  if (value != nullptr && value[0] == '/') return value;
  const char* const home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') return {};
  return std::string(home).append("/").append(below_home);
}

}  // namespace

ComponentFolder::ComponentFolder(std::string_view path) : path_(Folder(path)) {}

std::string ComponentFolder::File(std::string_view name) const {
  return std::string(path_).append("/").append(name);
}

std::string ComponentFolder::Resolve(std::string_view path) const {
  const bool inside = path.starts_with(path_) && path.size() > path_.size() && path[path_.size()] == '\\';
  return inside ? File(path.substr(path_.size() + 1)) : std::string(path);
}

std::string ConfigHome() { return UserFolder("XDG_CONFIG_HOME", ".config"); }

std::string DataHome() { return UserFolder("XDG_DATA_HOME", ".local/share"); }

}  // namespace tremvik
