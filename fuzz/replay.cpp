// Runs a fuzz target on kept inputs, without a fuzzer.
//
// usage: replay_TARGET [--mudancas N] FILE_OR_FOLDER...
// With N, each "Pré-Formatado" file is also run in N changed forms: the same every time, others for each
// file.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/mutator.h"
#include "fuzz/target.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files(fs::directory_iterator(path), fs::directory_iterator{});
  std::ranges::sort(files);
  return files;
}

std::string Content(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void CutInHalf(std::string& bytes) { bytes.resize(bytes.size() / 2); }

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const unsigned long changes = std::stoul(arguments.at(0));
  unsigned long inputs = 0;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    for (const fs::path& file : FilesOf(arguments[i])) {
      const std::string input = Content(file);
      tremvik::fuzz::Check(input);
      for (unsigned long change = 0; change < changes; ++change)
        tremvik::fuzz::Check(tremvik::fuzz::MutateFile(input, inputs * changes + change, CutInHalf));
      ++inputs;
    }
  }
  std::printf("%lu inputs, each also in %lu changed forms\n", inputs, changes);
  return inputs > 0 ? 0 : 1;
}
