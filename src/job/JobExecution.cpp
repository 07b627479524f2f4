// JobExecution.cpp - the execution steps of a job.
#include "job/JobExecution.h"

#include "base/QentException.h"
#include "job/OrmidaJob.h"
#include "job/property_table.h"

#include <stdexcept>

namespace qent::job {

void JobExecution::run() {
  const PropertyStore& properties = job_.properties();
  const bool hasInput = properties.isSet(kInputMemoryAddress) ||
                        properties.isSet(kInputFilename) ||
                        properties.isSet(kInputFilenamePattern);
  if (!hasInput) throw std::runtime_error("No Main document loaded");
  throw base::QentException(base::kErrorOption,
                            "loading input documents is not available in this build");
}

std::u16string JobExecution::transformLayout() {
  throw base::QentException(base::kErrorOption,
                            "TransformLayout is not available in this build");
}

}  // namespace qent::job
