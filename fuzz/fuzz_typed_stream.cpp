// The body of a message: an attributed string in a typed stream.
#include <algorithm>
#include <memory>

#include "extract/typed_stream.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  // A copy of the exact length, so that reading beyond its end is detected.
  const auto pExact = std::make_unique<char[]>(nSize);
  std::copy_n(pData, nSize, pExact.get());

  const std::string_view text = AttributedText({pExact.get(), nSize});

  if (text.empty()) return 0;
  Require(text.data() >= pExact.get() && text.data() + text.size() < pExact.get() + nSize,
          "a text lies within its stream, and its end mark behind it");
  Require(text.data()[text.size()] == '\x86', "a text is as long as its length says");
  return 0;
}
