// JobSteps.h - one function per operation of an execution, each in a file of its own.
//
// A step reads its operation's sub-properties into the operation's options, checks what
// the operation needs, and calls into the operation's subsystem; it stores its results on
// the job before it returns.
#pragma once

#include <string>

namespace qent::job {
class JobExecution;
}

namespace qent::job::steps {

void entityExtraction(JobExecution& execution);
void extractionComparison(JobExecution& execution);
void regionTemplates(JobExecution& execution);
void comparison(JobExecution& execution);
void wordRecognition(JobExecution& execution);
void bestOfMerge(JobExecution& execution);
void addressRecognition(JobExecution& execution);
void writeOutput(JobExecution& execution);
// Computed when TransformLayout is read, not during an execution.
std::u16string transformLayout(JobExecution& execution);

}  // namespace qent::job::steps
