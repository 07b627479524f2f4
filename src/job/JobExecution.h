// JobExecution.h - one execution of a job: load the documents, run the switched-on
// operations in their fixed order, then write the output.
#pragma once

#include <string>

namespace qent::job {

class OrmidaJob;

class JobExecution {
public:
  explicit JobExecution(OrmidaJob& job) : job_(job) {}

  void run();
  // The on-demand TransformLayout result.
  std::u16string transformLayout();

private:
  OrmidaJob& job_;
};

}  // namespace qent::job
