// copy: pages from one floor to another through the data service's page
// copy, with its build-outs, switches and through-bar values, and a progress
// bar of the command's own that the copy drives.

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

#include "commands.h"
#include "seluvorne/array.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/member_table.h"
#include "seluvorne/runtime.h"

namespace seluvorne::cli {
namespace {

// The progress bar the copy advances through Min, Max and Value: a bar
// redrawn in place on a terminal, one line per step otherwise. On standard
// error, so that standard output keeps the result.
class TerminalProgress : public DispatchImpl<TerminalProgress> {
 public:
  static const MemberTable<TerminalProgress>& Members() {
    static const auto table = MemberTable<TerminalProgress>("TerminalProgress")
                                  .get("Min", &TerminalProgress::Min)
                                  .put("Min", &TerminalProgress::SetMin)
                                  .get("Max", &TerminalProgress::Max)
                                  .put("Max", &TerminalProgress::SetMax)
                                  .get("Value", &TerminalProgress::Value)
                                  .put("Value", &TerminalProgress::SetValue);
    return table;
  }

  TerminalProgress() : terminal_(isatty(fileno(stderr)) == 1) {}
  ~TerminalProgress() override {
    if (terminal_ && drawn_) std::fputc('\n', stderr);
  }

  std::int16_t Min() const { return min_; }
  void SetMin(std::int16_t value) { min_ = value; }
  std::int16_t Max() const { return max_; }
  void SetMax(std::int16_t value) { max_ = value; }
  std::int16_t Value() const { return value_; }
  void SetValue(std::int16_t value) {
    value_ = value;
    const int span = std::max(1, max_ - min_);
    const int done = std::clamp(value_ - min_, 0, span);
    if (terminal_) {
      constexpr int kWidth = 30;
      const int filled = done * kWidth / span;
      fmt::print(stderr, "\r[{}{}] {}/{}", std::string(filled, '#'),
                 std::string(kWidth - filled, ' '), value_, max_);
      std::fflush(stderr);
      drawn_ = true;
    } else {
      fmt::print(stderr, "progress {}/{}\n", value_, max_);
    }
  }

 private:
  bool terminal_;
  bool drawn_ = false;
  std::int16_t min_ = 0, max_ = 100, value_ = 0;
};

vb::Array<std::int16_t> StoredPages(const std::vector<int>& pages) {
  vb::Array<std::int16_t> stored{static_cast<std::int32_t>(pages.size()) - 1};
  for (std::size_t i = 0; i < pages.size(); ++i)
    stored(static_cast<std::int32_t>(i)) = StoredPage(pages[i]);
  return stored;
}

struct CopyRequest {
  std::string from, to, pages, to_pages;
  bool append = false, with_drawings = false, check_only = false, create = false;
};

void CopyPages(Context& context, const CopyRequest& request) {
  const Floor source = context.ResolveFloor(request.from);
  const Floor destination = context.ResolveFloor(request.to);
  if (!source.numbers || !destination.numbers)
    throw UsageError("copy takes floors as Z/K/F, or folders under the data root");
  context.RequireFloorFile(source);
  // Checked before anything is copied: a copy into a floor that is not there
  // would fail after its progress bar.
  if (request.create && !std::filesystem::exists(destination.FloorFile()))
    MakeFloor(context, destination);
  context.RequireFloorFile(destination);
  const std::vector<int> pages = ParsePageList(request.pages);
  std::vector<int> targets = request.to_pages.empty() ? pages : ParsePageList(request.to_pages);
  if (!request.append && targets.size() != pages.size())
    throw UsageError(
        fmt::format("{} pages to copy but {} destination pages", pages.size(), targets.size()));

  Object service = context.NewService();
  CallByName(service, "CopyMergeBar", CallKind::PropertyPut,
             Object(std::make_shared<TerminalProgress>()));
  const std::int16_t mode = request.check_only ? 0 : 1;
  const std::int16_t with_drawings = request.with_drawings ? 1 : 0;
  const std::int16_t last = static_cast<std::int16_t>(pages.size() - 1);
  const FloorNumbers& from = *source.numbers;
  const FloorNumbers& to = *destination.numbers;
  std::string message;
  vb::Array<std::int16_t> source_pages = StoredPages(pages);
  vb::Array<std::int16_t> destination_pages = StoredPages(request.append ? pages : targets);
  bool passed;
  if (request.append)
    passed = vb::CBool(CallByName(service, "No_PageCopyAddNo", CallKind::Method, mode,
                                  with_drawings, Ref(message), from.zene, from.kouji, from.kai,
                                  Ref(source_pages), last, to.zene, to.kouji, to.kai));
  else
    passed = vb::CBool(CallByName(service, "No_PageCopyNo", CallKind::Method, mode, with_drawings,
                                  Ref(message), from.zene, from.kouji, from.kai, Ref(source_pages),
                                  last, to.zene, to.kouji, to.kai, Ref(destination_pages)));
  CallByName(service, "CopyMergeBar", CallKind::PropertyPut, Object());
  if (!passed)
    throw CommandFailed(message.empty()
                            ? "copy refused: the destination pages would pass the page limit (500)"
                            : message);
  nlohmann::json copied = nlohmann::json::array();
  for (std::size_t i = 0; i < pages.size(); ++i)
    copied.push_back(
        {{"from", pages[i]},
         {"to", request.append ? nlohmann::json(nullptr) : nlohmann::json(targets[i])}});
  if (context.json)
    PrintJson({{"from", request.from},
               {"to", request.to},
               {"checked_only", request.check_only},
               {"pages", copied}});
  else if (request.check_only)
    fmt::print("check passed: {} page{} can be copied from {} to {}\n", pages.size(),
               pages.size() == 1 ? "" : "s", request.from, request.to);
  else
    fmt::print("copied {} page{} from {} to {}\n", pages.size(), pages.size() == 1 ? "" : "s",
               request.from, request.to);
}

}  // namespace

void AddCopyCommand(CLI::App& app, Context& context) {
  static CopyRequest request;
  auto* copy = app.add_subcommand("copy",
                                  "copy pages to another floor, with their build-outs, "
                                  "switches and through-bar values");
  copy->add_option("FROM", request.from, "the source floor, Z/K/F")->required();
  copy->add_option("TO", request.to, "the destination floor, Z/K/F")->required();
  copy->add_option("--pages", request.pages, "source pages from 1: 4 or 1,3-5")->required();
  auto* to_pages = copy->add_option("--to-pages", request.to_pages,
                                    "destination pages, one per source page (the same numbers "
                                    "when omitted)");
  copy->add_flag("--append", request.append, "after the destination's last page")
      ->excludes(to_pages);
  copy->add_flag("--with-drawings", request.with_drawings,
                 "also the additional rebar and calculation files (suite components)");
  copy->add_flag("--check-only", request.check_only, "only check the page limit; copy nothing");
  copy->add_flag("--create", request.create, "create the destination floor when it has none");
  copy->footer("Example: seluvorne copy 1/2/3 1/2/4 --pages 1,3-5 --append");
  copy->callback([&context] { CopyPages(context, request); });
}

}  // namespace seluvorne::cli
