#include <gtest/gtest.h>

#include "cli/progress_bar.h"

using namespace orvandel;

namespace {

struct ProgressCase {
  uint64_t nDone, nTotal;
  double dSeconds;
  const char* pszText;
  int nPercent;
};

void PrintTo(const ProgressCase& row, std::ostream* pStream) {
  *pStream << row.nDone << " of " << row.nTotal << " after " << row.dSeconds << " s";
}

class ProgressTable : public testing::TestWithParam<ProgressCase> {};

constexpr uint64_t kGiga = 1 << 30;

}  // namespace

TEST_P(ProgressTable, HasTextAndPercentage) {
  const auto& [nDone, nTotal, dSeconds, pszText, nPercent] = GetParam();

  EXPECT_EQ(pszText, ProgressText(nDone, nTotal, dSeconds));
  EXPECT_EQ(nPercent, ProgressPercent(nDone, nTotal));
}

INSTANTIATE_TEST_SUITE_P(
    Progress, ProgressTable,
    testing::Values(ProgressCase{0, 0, 0, "0 Bytes of 0 Bytes", 0},
                    ProgressCase{0, kGiga, 100, "0 Bytes of 1.00 GB", 0},
                    ProgressCase{kGiga, 2 * kGiga, 0.5, "1.00 GB of 2.00 GB", 50},
                    ProgressCase{kGiga, 2 * kGiga, 155, "1.00 GB of 2.00 GB, 2:35 left", 50},
                    ProgressCase{kGiga, 4 * kGiga, 1201, "1.00 GB of 4.00 GB, 1:00:03 left", 25},
                    ProgressCase{kGiga, kGiga, 60, "1.00 GB of 1.00 GB, 0:00 left", 100},
                    ProgressCase{2 * kGiga, kGiga, 60, "1.00 GB of 1.00 GB, 0:00 left", 100},
                    ProgressCase{1, UINT64_MAX, 60, "1 Bytes of 8388608.00 TB", 0}));
