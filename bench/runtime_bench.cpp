// The runtime helpers on the paths every page read and write takes: number
// texts, the double-byte width and a late-bound call through a member table.

#include <benchmark/benchmark.h>

#include "seluvorne/member_table.h"

namespace {

void BM_Val(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(vb::Val(" -1250.5abc"));
}
BENCHMARK(BM_Val);

void BM_StrTrimmed(benchmark::State& state) {
  std::int16_t page = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(vb::StrTrimmed(page++));
}
BENCHMARK(BM_StrTrimmed);

void BM_TextWidth(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(vb::TextWidth("X3通り(Y1～Y5間)大梁部"));
}
BENCHMARK(BM_TextWidth);

class Probe : public seluvorne::DispatchImpl<Probe> {
 public:
  static const seluvorne::MemberTable<Probe>& Members() {
    static const auto table =
        seluvorne::MemberTable<Probe>("Probe").method("Find_FileExists", &Probe::Find);
    return table;
  }
  std::string Find(const std::string& path, std::optional<std::int32_t>) { return path; }
};

void BM_LateBoundCall(benchmark::State& state) {
  seluvorne::Object probe = std::make_shared<Probe>();
  std::vector<vb::Variant> args{vb::Variant("C:\\Data\\Zene1\\Kouji1\\1kai"), vb::Variant(16)};
  for (auto _ : state)
    benchmark::DoNotOptimize(probe->invoke("find_fileexists", seluvorne::CallKind::Method, args));
}
BENCHMARK(BM_LateBoundCall);

}  // namespace
