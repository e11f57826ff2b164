// Errors of the machine told apart from faults of the file, and what the user can do about them.
#pragma once

#include <string>
#include <string_view>

#include "host/runtime_error.h"

namespace tremvik::cli {

/// Exit status of the program.
enum class ExitStatus {
  kAccepted = 0,
  kRefused = 1,
  kEnvironment = 2,  ///< wrong use, or something on the machine is missing
  kFailure = 3       ///< a defect of this program
};

/// What an error number means: the file's own content (too many records, a quantity that is no number), the
/// machine, or a defect.
[[nodiscard]] ExitStatus MeaningOf(int error);

/// What is wrong with the input file before anything is read of it, with what to do; empty when nothing is.
[[nodiscard]] std::string ProblemOfFile(const std::string& path);

/// True when the file at `path` begins with the digits of a master record or a header, as
/// "Pré-Formatado" files do, also those with a fault there.
[[nodiscard]] bool BeginsLikeInput(const std::string& path);

/// What is wrong with the component's folder before anything is done in it, with what to do; empty when
/// nothing is, and where it can be made.
[[nodiscard]] std::string ProblemOfFolder(const std::string& path);

/// " (erro N: description)".
[[nodiscard]] std::string InWords(const RuntimeError& error);

/// The database that an error is about, where that is known.
enum class Database { kUnknown, kStore };

/// An error of the folder, its databases or the machine as a sentence that says what to do.
[[nodiscard]] std::string Remedy(const RuntimeError& error, const std::string& folder,
                                 Database database = Database::kUnknown);

}  // namespace tremvik::cli
