// The code-page-932 double-byte test.
//
// Which characters take two bytes in code page 932 is learnt once from
// iconv's CP932 table: every character of the Basic Multilingual Plane is
// converted on its own and the answer kept in a 64 Ki-bit map. Characters
// outside that plane have no code there and count as single.

#include <iconv.h>

#include <bitset>

#include "seluvorne/runtime.h"

namespace vb {

namespace {

using DoubleByteMap = std::bitset<0x10000>;

DoubleByteMap BuildMap() {
  DoubleByteMap map;
  iconv_t converter = iconv_open("CP932", "UTF-32LE");
  if (converter == reinterpret_cast<iconv_t>(-1))
    seluvorne::Raise(seluvorne::errc::kInvalidCall, "(the CP932 code page is not available)");
  for (char32_t c = 0x80; c < 0x10000; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    unsigned char in[4] = {static_cast<unsigned char>(c), static_cast<unsigned char>(c >> 8), 0, 0};
    char out[8];
    char* in_pointer = reinterpret_cast<char*>(in);
    char* out_pointer = out;
    std::size_t in_left = sizeof in, out_left = sizeof out;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);  // reset the shift state
    if (iconv(converter, &in_pointer, &in_left, &out_pointer, &out_left) !=
            static_cast<size_t>(-1) &&
        out_pointer - out == 2)
      map.set(c);
  }
  iconv_close(converter);
  return map;
}

const DoubleByteMap& TheMap() {
  static const DoubleByteMap* map = new DoubleByteMap(BuildMap());
  return *map;
}

}  // namespace

bool IsDoubleByte(char32_t character) {
  return character < 0x10000 && TheMap().test(character);
}

std::int32_t TextWidth(std::string_view text) {
  std::int32_t width = 0;
  for (std::size_t position = 0; position < text.size();)
    width += IsDoubleByte(DecodeNext(text, position)) ? 2 : 1;
  return width;
}

}  // namespace vb
