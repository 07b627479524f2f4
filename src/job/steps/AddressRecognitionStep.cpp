// AddressRecognitionStep.cpp - recipient and sender blocks, answered instead of the output.
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"

namespace qent::job::steps {

void addressRecognition(JobExecution&) { requireBuilt(kAddressRecognition); }

}  // namespace qent::job::steps
