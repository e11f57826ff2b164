#include <sys/resource.h>

#include "adapters/local/file_errors.h"

namespace tremvik {

bool SizesAreLimited() {
  rlimit limit{};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

}  // namespace tremvik
