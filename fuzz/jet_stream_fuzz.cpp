// libFuzzer target for the Jet reader's stream parser: whatever the helper
// writes, the host must refuse it cleanly or take it whole.
//
//   make fuzz FUZZ_SECONDS=600

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "legacy/jet_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view stream(reinterpret_cast<const char*>(data), size);
  try {
    seluvorne::legacy::JetFile file = seluvorne::legacy::ParseJetStream(stream);
    // What a parsed stream promises the loaders: every row as wide as its
    // table, every table's end count equal to its rows.
    for (const auto& table : file.tables)
      for (const auto& row : table.rows)
        if (row.size() != table.fields.size()) __builtin_trap();
    seluvorne::legacy::FirstIncompleteTable(file);
  } catch (const seluvorne::legacy::StreamError&) {
  }
  return 0;
}
