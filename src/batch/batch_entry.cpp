#include "batch/batch_entry.h"

namespace sheafwork {

void ClearBatchEntry(BatchEntry& entry) { entry = BatchEntry{}; }

}  // namespace sheafwork
