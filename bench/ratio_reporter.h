// A console reporter that also prints engine time / raw time for named pairs
// of benchmarks, from the medians when the run has repetitions (make bench
// repeats and interleaves, which evens out a busy machine).
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace seluvorne::bench {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  struct Pair {
    std::string what, engine, raw;
  };
  explicit RatioReporter(std::vector<Pair> pairs) : pairs_(std::move(pairs)) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      double iterations = run.run_type == Run::RT_Aggregate ? 1 : double(run.iterations);
      times_[run.benchmark_name()] = {run.real_accumulated_time / iterations,
                                      run.cpu_accumulated_time / iterations};
    }
    ConsoleReporter::ReportRuns(runs);
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    for (const Pair& pair : pairs_) {
      const Times *engine = Find(pair.engine), *raw = Find(pair.raw);
      if (!engine || !raw) continue;
      std::printf("engine / raw SQLite, %s: %.2f (real time), %.2f (CPU time)\n", pair.what.c_str(),
                  engine->real / raw->real, engine->cpu / raw->cpu);
    }
  }

 private:
  struct Times {
    double real, cpu;
  };
  const Times* Find(const std::string& name) const {
    for (const std::string& key : {name + "_median", name}) {
      auto found = times_.find(key);
      if (found != times_.end()) return &found->second;
    }
    return nullptr;
  }

  std::vector<Pair> pairs_;
  std::map<std::string, Times> times_;
};

}  // namespace seluvorne::bench
