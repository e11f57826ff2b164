#include "adapters/local/file_errors.h"

namespace tremvik {

bool SizesAreLimited() { return false; }

}  // namespace tremvik
