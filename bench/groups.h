// What is measured together, in one process.
#pragma once

#include "bench/dataset.h"

namespace bench {

void registerImporting(const Dataset& dataset);
void registerReading(const Dataset& dataset);
void registerCalls(const Dataset& dataset);    // these two in one process: an empty call is
void registerWalking(const Dataset& dataset);  // the unit of both
void registerSaving(const Dataset& dataset);

}  // namespace bench
