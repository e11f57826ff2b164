// Many files on several threads, what each has to say in order.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "cli/file_names.h"

namespace tremvik::cli {

/// Works on the file of that name, on any thread. What it returns says what came of it: it is called in the
/// order of the names, one at a time.
using FileWorker = std::function<std::function<void()>(const std::string& path)>;

struct FileWork {
  std::function<FileWorker()> make_worker;  ///< once a thread, one after the other
  std::function<bool()> hopeless;           ///< true when there is no use in going on
  unsigned threads = 1;
  std::size_t ahead = 16;  ///< files that a thread may be ahead of the one that is waited for
};

/// Does the work on all files of `names`; ends early when it is hopeless or the program is told to end.
/// Raises what a worker raises.
void WorkOnFiles(FileNames& names, const FileWork& work);

}  // namespace tremvik::cli
