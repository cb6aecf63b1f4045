#include <gmock/gmock.h>

#include "tests/cli/any_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;

namespace {

class DomainsOfAnyAge : public testing::TestWithParam<AnyAge> {
 protected:
  void SetUp() override { WriteAnyBackup(Backup(), GetParam()); }
  std::string Backup() const { return m_folder.Path("backup"); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(DomainsOfAnyAge, AreListedByNameWithTheirSums) {
  const CommandResult result = RunWithPassword(m_folder.Path(), {"domains", Backup()});

  EXPECT_EQ(0, result.nExitStatus) << result.strErr;
  EXPECT_THAT(result.Lines(),
              ElementsAre("AppDomain-com.example.Sketch\t1\t500 Bytes", "HomeDomain\t12\t3.75 MB",
                          "MediaDomain\t41\t5.43 KB", "3 domains, 54 files, 3.76 MB"));
}

TEST_P(DomainsOfAnyAge, AreOneObjectInJson) {
  const CommandResult result = RunWithPassword(m_folder.Path(), {"domains", Backup(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(
      R"({"bytes":3942426,"domains":[{"bytes":500,"domain":"AppDomain-com.example.Sketch","files":1},)"
      R"({"bytes":3936369,"domain":"HomeDomain","files":12},{"bytes":5557,"domain":"MediaDomain","files":41}],)"
      R"("files":54})",
      JsonText(result.Object()));
}

INSTANTIATE_TEST_SUITE_P(Ages, DomainsOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);
