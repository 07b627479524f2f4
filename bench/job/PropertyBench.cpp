// PropertyBench.cpp - cost of setting properties through the C interface.
#include "ormida/ormida.h"

#include <benchmark/benchmark.h>

#include <string>

static void BM_SetProperty(benchmark::State& state) {
  OrmidaJobHandle job = nullptr;
  OrmidaJobCreate(&job);
  const std::u16string value = u"page.json";
  for (auto _ : state) {
    benchmark::DoNotOptimize(OrmidaJobSetProperty(job, u"WorkSpace", value.c_str(), value.size()));
  }
  OrmidaJobFree(&job);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SetProperty);
