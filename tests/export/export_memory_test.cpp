#include <cstdlib>  // defines __GLIBC__
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>

#include "tests/export/recovery_fixture.h"

using namespace orvandel;

namespace {

/// Bytes in use on the heap, including large blocks; 0 if not available.
size_t HeapInUse() {
#ifdef __GLIBC__
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#else
  return 0;
#endif
}

class ExportMemory : public RecoveryTest {};

}  // namespace

// Each document is reported while its page is still in memory, so the heap is measured then.
TEST_F(ExportMemory, HoldsOnePageHoweverManyConversationsThereAre) {
  if (HeapInUse() == 0) GTEST_SKIP() << "this system doesn't tell how much of the heap is in use";
  constexpr int kConversations = 10000;
  constexpr int kFirst = kConversations / 10;
  constexpr size_t kTextSize = 10000;
  constexpr size_t kLimit = 16 << 20;  // names of folders and files are kept; 90 MB of pages aren't
  Begin();
  size_t nPeak = 0, nFailures = 0;
  m_recovery.SetWrittenFileHandler([&](const WrittenFile& file) {
    nPeak = std::max(nPeak, HeapInUse());
    nFailures += !file.Succeeded();
  });
  const MessageMap messages = {{kHandle, {Message(kReceived, std::string(kTextSize, 'x'))}}};
  size_t nPeakOfFirst = 0;

  for (int i = 0; i < kConversations; ++i) {
    const __MESSAGE_INFO__ first = Message(kReceived, "", 0, "Person " + std::to_string(i));
    m_recovery.RecoveryMsg(&first, messages);
    if (i + 1 == kFirst) nPeakOfFirst = nPeak;
  }

  EXPECT_EQ(0u, nFailures);
  EXPECT_LT(nPeak - nPeakOfFirst, kLimit);
}
