#include "ui/background_task.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <thread>
#include <utility>

#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

constexpr int kSoon = 30000;  // milliseconds: far beyond what any of these takes

class Worker : public QThread {
 public:
  explicit Worker(std::function<void()> work) : m_work(std::move(work)) {}
  ~Worker() override { wait(); }

 protected:
  void run() override { m_work(); }

 private:
  const std::function<void()> m_work;
};

/// Posts an event to the main thread whose handling sets a flag.
void PostMark(QObject& context, std::atomic<bool>& bHandled) {
  QMetaObject::invokeMethod(
      &context, [&bHandled] { bHandled = true; }, Qt::QueuedConnection);
}

TEST(BackgroundTask, StartReturnsOnceTheWorkerHasClearedItsFlags) {
  for (int i = 0; i < 100; ++i) {
    BackgroundTask task;
    std::atomic<bool> bFlag{true};
    Worker worker([&] {
      QThread::yieldCurrentThread();
      bFlag = false;
      task.Begun();
    });

    const bool bStarted = task.Start(worker);
    const bool bSeen = bFlag;
    task.End();

    ASSERT_TRUE(bStarted);
    ASSERT_FALSE(bSeen);
  }
}

TEST(BackgroundTask, StartReturnsForAWorkerThatEndsWithoutASign) {
  BackgroundTask task;
  Worker worker([] {});

  EXPECT_TRUE(task.Start(worker));
  task.End();

  EXPECT_TRUE(worker.isFinished());
}

TEST(BackgroundTask, StartServesNoStep) {
  for (int i = 0; i < 100; ++i) {
    BackgroundTask task;
    std::atomic<bool> bStep{false};
    Worker worker([&] {
      task.Begun();
      task.RunOnMainThread([&] { bStep = true; });
    });

    ASSERT_TRUE(task.Start(worker));
    const bool bDuringStart = bStep;
    task.End();

    ASSERT_FALSE(bDuringStart) << "the dialog that the worker relies on isn't open yet";
    ASSERT_TRUE(bStep);
  }
}

TEST(BackgroundTask, EndServesTheStepsThatAreLeftAndNoOtherEvent) {
  BackgroundTask task;
  QObject context;
  std::atomic<bool> bEvent{false};
  int nSteps = 0;
  Worker worker([&] {
    task.Begun();
    PostMark(context, bEvent);
    for (int i = 0; i < 3; ++i) task.RunOnMainThread([&] { ++nSteps; });
  });

  ASSERT_TRUE(task.Start(worker));
  task.End();

  EXPECT_TRUE(worker.isFinished());
  EXPECT_EQ(3, nSteps);
  EXPECT_FALSE(bEvent);
  QCoreApplication::processEvents();
  EXPECT_TRUE(bEvent);
}

TEST(BackgroundTask, EndWithoutAStartReturns) {
  BackgroundTask task;

  task.End();
}

TEST(BackgroundTask, RunsOneWorkerAfterAnother) {
  BackgroundTask task;
  for (int i = 0; i < 3; ++i) {
    std::atomic<bool> bCancel{false};
    std::atomic<bool> bFinished{false};
    Worker worker([&] {
      task.Begun();
      while (!bCancel) std::this_thread::yield();
      task.Raise(bFinished);
    });

    ASSERT_TRUE(task.Start(worker));
    const bool bBefore = bFinished;
    task.Raise(bCancel);
    const bool bSeen = task.ServeUntil(bFinished, QDeadlineTimer(kSoon));
    task.End();

    EXPECT_FALSE(bBefore);
    EXPECT_TRUE(bSeen);
  }
}

TEST(BackgroundTask, WaitsForAFlagThatIsSetWithoutASign) {
  BackgroundTask task;
  std::atomic<bool> bFlag{false};
  std::thread worker([&] { bFlag = true; });

  const bool bSeen = task.ServeUntil(bFlag, QDeadlineTimer(kSoon));
  worker.join();

  EXPECT_TRUE(bSeen);
}

TEST(BackgroundTask, GivesUpWaitingForAFlagAfterTheTimeItWasGiven) {
  BackgroundTask task;
  const std::atomic<bool> bFlag{false};
  QElapsedTimer timer;
  timer.start();

  const bool bSeen = task.ServeUntil(bFlag, QDeadlineTimer(50));

  EXPECT_FALSE(bSeen);
  EXPECT_GE(timer.elapsed(), 50);
  EXPECT_LT(timer.elapsed(), kSoon);
}

TEST(BackgroundTask, NewProgressIsOneOtherThanTheLastOfTheSameWorker) {
  BackgroundTask task;
  std::vector<bool> news;

  for (const int nValue : {0, 0, 5, 5, 4, 100}) news.push_back(task.IsNewProgress(nValue));
  task.Begun();
  news.push_back(task.IsNewProgress(100));

  EXPECT_EQ(std::vector<bool>({true, false, true, false, true, true, true}), news);
}

// Not among the suites of ThreadSanitizer: an event's functor is made on one thread and run on the other.
TEST(CatchUp, ComesBehindWhatWasPostedBefore) {
  BackgroundTask task;
  QObject context;
  std::atomic<bool> bHandled{false};
  std::atomic<bool> bCaughtUp{false};
  bool bHandledFirst = false;
  Worker worker([&] {
    task.Begun();
    PostMark(context, bHandled);
    task.CatchUp();
    bHandledFirst = bHandled;
    bCaughtUp = true;
  });

  ASSERT_TRUE(task.Start(worker));
  EXPECT_TRUE(WaitFor([&] { return bCaughtUp.load(); }));
  task.End();

  EXPECT_TRUE(bHandledFirst);
}

TEST(CatchUp, DoesNotWaitForEventsOfAMainThreadThatWaitsForTheWorker) {
  BackgroundTask task;
  QObject context;
  std::atomic<bool> bHandled{false};
  std::atomic<bool> bFinished{false};
  Worker worker([&] {
    task.Begun();
    PostMark(context, bHandled);
    task.CatchUp();
    task.Raise(bFinished);
  });

  ASSERT_TRUE(task.Start(worker));
  const bool bSeen = task.ServeUntil(bFinished, QDeadlineTimer(kSoon));
  task.End();

  EXPECT_TRUE(bSeen);
  EXPECT_FALSE(bHandled);
}

}  // namespace
