#include "app/thread.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

struct Seen {
  int nCalls = 0;
  int nResultAtStart = -1;
  QThread* pThread = nullptr;
};

void Note(void* pContext, int& nResult) {
  auto* pSeen = static_cast<Seen*>(pContext);
  ++pSeen->nCalls;
  pSeen->nResultAtStart = nResult;
  pSeen->pThread = QThread::currentThread();
  nResult = 87;
}

TEST(Thread, RunsItsFunctionOnceWithContextAndResultZero) {
  Seen seen;
  CMyThread thread;
  QSignalSpy reports(&thread, &CMyThread::ProcessCallBack);

  thread.SetFunc(&Note, &seen);
  thread.start(QThread::InheritPriority);
  ASSERT_TRUE(thread.wait(30000));

  EXPECT_EQ(1, seen.nCalls);
  EXPECT_EQ(0, seen.nResultAtStart);
  EXPECT_EQ(&thread, seen.pThread);
  EXPECT_EQ(0, reports.count());
}

TEST(Thread, WithoutAFunctionEndsAtOnce) {
  CMyThread thread;

  thread.start();

  EXPECT_TRUE(thread.wait(30000));
}

TEST(Thread, CanRunASecondTime) {
  Seen seen;
  CMyThread thread;
  thread.SetFunc(&Note, &seen);

  for (int i = 0; i < 2; ++i) {
    thread.start();
    ASSERT_TRUE(thread.wait(30000));
  }

  EXPECT_EQ(2, seen.nCalls);
}

}  // namespace
