// Ticks from an earlier scan beyond the end of a shorter list.
#include "tests/app/recovery_fixture.h"

using namespace orvandel;

namespace {

class RecoveryBeyond : public RecoveryTest, public testing::WithParamInterface<RecoveryStep> {
 protected:
  /// Ticks two existing files and the rows 2 and 7, beyond the end of the list.
  void AddFilesAndTicksBeyond() {
    const RecoveryStep& step = GetParam();
    for (const char* pszName : {"a", "b"}) {
      if (step.IsApps())
        AddAppFile(step.nCategory, "App", pszName);
      else
        AddFile(step.nCategory, pszName);
    }
    SelectionMap& ticks = step.IsApps() ? AppSelection(step.nCategory)["App"] : Selection(step.nCategory);
    ticks[2] = 1;
    ticks[7] = 1;
  }
};

TEST_P(RecoveryBeyond, ATickBeyondTheEndOfItsListIsSkippedAndStays) {
  const RecoveryStep& step = GetParam();
  AddFilesAndTicksBeyond();
  const auto ticks = Ticks();
  Window().RefreshSelectFileInfo();
  const std::string strLine = SelectionLine();
  ReportRecorder recorder(Window());

  Recover();

  const std::string strFolder = step.pszFolder + std::string(step.IsApps() ? "App/" : "");
  // Each row of a plain list has its share, even without a file; an app has one for all its files.
  const int nFirst = step.IsApps() ? step.nNumerator : step.nNumerator / 4;
  const int nSecond = step.IsApps() ? step.nNumerator : step.nNumerator * 2 / 4;
  EXPECT_EQ(WholeRecovery({{step.nCategory,
                            {{nFirst, step.nPercent, 0, Out() + strFolder + "a"},
                             {nSecond, step.nPercent, 0, Out() + strFolder + "b"}}}}),
            recorder.All());
  EXPECT_EQ(std::vector<std::string>({strFolder + "a", strFolder + "b"}), Written());
  EXPECT_EQ(ticks, Ticks());
  EXPECT_EQ(strLine, SelectionLine());
}

INSTANTIATE_TEST_SUITE_P(Steps, RecoveryBeyond, testing::ValuesIn(kRecoverySteps),
                         [](const auto& info) { return std::string(info.param.pszName); });

}  // namespace
