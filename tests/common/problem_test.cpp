#include "common/problem.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;

namespace {

std::vector<std::string> g_told;

void Tell(const std::string& strFile, const std::string& strReason) {
  g_told.push_back(strFile + ": " + strReason);
}

void TellLoudly(const std::string& strFile, const std::string& strReason) {
  g_told.push_back(strFile + "! " + strReason);
}

class Problems : public testing::Test {
 protected:
  Problems() { g_told.clear(); }
  ~Problems() override { SetProblemHandler(nullptr); }
};

}  // namespace

TEST_F(Problems, HandlerGetsFileAndReason) {
  SetProblemHandler(Tell);

  ReportProblem("/a/b", "is bad");

  EXPECT_THAT(g_told, ElementsAre("/a/b: is bad"));
}

TEST_F(Problems, NothingIsReportedBeforeAndAfterTheHandler) {
  ReportProblem("/before", "");
  SetProblemHandler(Tell);
  ReportProblem("/between", "is bad");
  SetProblemHandler(nullptr);
  ReportProblem("/after", "");

  EXPECT_THAT(g_told, ElementsAre("/between: is bad"));
}

TEST_F(Problems, LaterHandlerTakesThePlaceOfTheEarlier) {
  SetProblemHandler(Tell);
  SetProblemHandler(TellLoudly);

  ReportProblem("/a", "is bad");

  EXPECT_THAT(g_told, ElementsAre("/a! is bad"));
}

TEST_F(Problems, AreReportedOnTheThreadThatDetectsThem) {
  static std::thread::id told;
  SetProblemHandler([](const std::string&, const std::string&) { told = std::this_thread::get_id(); });

  std::thread worker([] { ReportProblem("/a", "is bad"); });
  const std::thread::id expected = worker.get_id();
  worker.join();

  EXPECT_EQ(expected, told);
}

TEST_F(Problems, OfTheSystemCarryFileCodeAndReason) {
  const Problem problem = SystemProblem(Problem::Step::Write, "/a/b", ENOSPC);

  EXPECT_TRUE(problem);
  EXPECT_EQ(ENOSPC, problem.nCode);
  EXPECT_EQ("/a/b", problem.strFile);
  EXPECT_EQ("No space left on device", problem.strReason);
}

TEST_F(Problems, OfOpeningNameWhatIsInAFilesPlace) {
  EXPECT_EQ("is a symbolic link, which is not followed",
            SystemProblem(Problem::Step::Open, "", ELOOP).strReason);
  EXPECT_EQ("is not a regular file", SystemProblem(Problem::Step::Open, "", ENXIO).strReason);
  EXPECT_EQ("No such file or directory", SystemProblem(Problem::Step::Open, "", ENOENT).strReason);
}

TEST_F(Problems, AreReportedWithTheirFileAndReason) {
  SetProblemHandler(Tell);

  ReportProblem(SystemProblem(Problem::Step::Read, "/a", EIO));
  ReportLoss(SystemProblem(Problem::Step::Open, "/b", ENXIO));

  EXPECT_THAT(g_told, ElementsAre("/a: Input/output error", "/b: is not a regular file"));
}
