// Runs a fuzz target on kept inputs, without a fuzzer.
//
// usage: replay_TARGET [--mudancas N] FILE_OR_FOLDER...
// With N, each input that holds a "Pré-Formatado" file is also run in N changed forms, the same every time.
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/mutator.h"
#include "fuzz/target.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path))
    files.push_back(entry.path());
  return files;
}

std::string Content(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Run(const std::string& input) {
  const auto* const data = reinterpret_cast<const std::uint8_t*>(input.data());
  LLVMFuzzerTestOneInput(data, input.size());
}

void RunChanged(const std::string& input, unsigned changes) {
  using tremvik::fuzz::kFileAt;
  if (input.size() < kFileAt) return;
  const auto cut = [](std::string& bytes) { bytes.resize(bytes.size() / 2); };
  for (unsigned seed = 1; seed <= changes; ++seed)
    Run(input.substr(0, kFileAt) + tremvik::fuzz::MutateFile(input.substr(kFileAt), seed, cut));
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  unsigned changes = 0;
  if (arguments.size() > 1 && arguments.front() == "--mudancas") {
    std::from_chars(arguments[1].data(), arguments[1].data() + arguments[1].size(), changes);
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  std::size_t inputs = 0;
  for (const std::string& argument : arguments) {
    for (const auto& file : FilesOf(argument)) {
      const std::string input = Content(file);
      Run(input);
      RunChanged(input, changes);
      ++inputs;
    }
  }
  std::printf("%zu inputs, each also in %u changed forms\n", inputs, changes);
  return inputs > 0 ? 0 : 1;
}
