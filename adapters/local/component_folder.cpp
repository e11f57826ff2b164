#include "adapters/local/component_folder.h"

#include <cstdlib>
#include <filesystem>

namespace tremvik {
namespace {

std::string Folder(std::string_view path) {
  std::string folder = std::filesystem::absolute(std::filesystem::path(path)).lexically_normal().string();
  while (folder.size() > 1 && folder.back() == '/')
    folder.pop_back();
  return folder;
}

std::string UserFolder(const char* variable, std::string_view below_home) {
  const char* const value = std::getenv(variable);
  if (value != nullptr && value[0] == '/') return value;
  const char* const home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "/").append("/").append(below_home);
}

}  // namespace

ComponentFolder::ComponentFolder(std::string_view path) : path_(Folder(path)), reference_tables_(path_) {}

void ComponentFolder::MoveReferenceTables(std::string_view path) { reference_tables_ = Folder(path); }

std::string ComponentFolder::File(std::string_view name) const {
  const std::string& folder = name == arquivo::kTabelasFixas ? reference_tables_ : path_;
  return std::string(folder).append("/").append(name);
}

std::string ComponentFolder::Resolve(std::string_view path) const {
  const bool inside = path.starts_with(path_) && path.size() > path_.size() && path[path_.size()] == '\\';
  return inside ? File(path.substr(path_.size() + 1)) : std::string(path);
}

std::string ConfigHome() { return UserFolder("XDG_CONFIG_HOME", ".config"); }

std::string DataHome() { return UserFolder("XDG_DATA_HOME", ".local/share"); }

}  // namespace tremvik
