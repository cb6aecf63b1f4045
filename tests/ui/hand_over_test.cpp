#include "ui/hand_over.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <atomic>
#include <thread>

#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

TEST(HandOver, RunsAStepOfTheMainThreadAtOnce) {
  HandOver handOver;
  QThread* pThread = nullptr;

  handOver.Run([&] { pThread = QThread::currentThread(); });

  EXPECT_EQ(QThread::currentThread(), pThread);
}

TEST(HandOver, CarriesAStepOfAWorkerToTheMainThreadThroughTheEventLoop) {
  HandOver handOver;
  QThread* pThread = nullptr;
  std::atomic<bool> bReturned{false};
  std::thread worker([&] {
    handOver.Run([&] { pThread = QThread::currentThread(); });
    bReturned = true;
  });

  const bool bServed = WaitFor([&] { return bReturned.load(); });
  worker.join();

  EXPECT_TRUE(bServed);
  EXPECT_EQ(QThread::currentThread(), pThread);
}

TEST(HandOver, ServesAStepWhereTheMainThreadBlocks) {
  HandOver handOver;
  std::atomic<int> nSteps{0};
  std::atomic<bool> bReturned{false};
  std::thread worker([&] {
    for (int i = 0; i < 3; ++i) handOver.Run([&] { ++nSteps; });
    bReturned = true;
  });

  for (int i = 0; i < 3000 && !bReturned; ++i) handOver.ServeFor(10);
  worker.join();

  EXPECT_EQ(3, nSteps);
}

TEST(HandOver, GivesTheWorkerWhatItsStepThrows) {
  HandOver handOver;
  bool bThrown = false;
  std::atomic<bool> bReturned{false};
  int nSteps = 0;
  std::thread worker([&] {
    try {
      handOver.Run([] { throw std::bad_alloc(); });
    } catch (const std::bad_alloc&) {
      bThrown = true;
    }
    handOver.Run([&] { ++nSteps; });
    bReturned = true;
  });

  const bool bServed = WaitFor([&] { return bReturned.load(); });
  worker.join();

  EXPECT_TRUE(bServed);
  EXPECT_TRUE(bThrown);
  EXPECT_EQ(1, nSteps);
}

TEST(HandOver, TheWorkerWaitsUntilItsStepHasRun) {
  HandOver handOver;
  std::atomic<bool> bReturned{false};
  bool bReturnedDuringStep = true;
  std::thread worker([&] {
    handOver.Run([&] { bReturnedDuringStep = bReturned; });
    bReturned = true;
  });

  const bool bBefore = bReturned;
  while (!bReturned) handOver.ServeFor(10);
  worker.join();

  EXPECT_FALSE(bBefore);
  EXPECT_FALSE(bReturnedDuringStep);
}

TEST(HandOver, GivesUpWaitingAfterTheTimeItWasGiven) {
  HandOver handOver;
  QElapsedTimer timer;
  timer.start();

  handOver.ServeFor(50);

  EXPECT_GE(timer.elapsed(), 49);
}

TEST(HandOver, ServesEachStepOnceWhenTheEventLoopFollows) {
  HandOver handOver;
  std::atomic<int> nSteps{0};
  std::atomic<bool> bReturned{false};
  std::thread worker([&] {
    handOver.Run([&] { ++nSteps; });
    bReturned = true;
  });

  while (!bReturned) handOver.ServeFor(10);
  worker.join();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();

  EXPECT_EQ(1, nSteps);
}

TEST(HandOver, AStepServedEarlyBringsNoLaterOneForward) {
  // The event of the first step is still in the queue when the second one comes.
  for (int nRound = 0; nRound < 50; ++nRound) {
    HandOver handOver;
    std::atomic<bool> bFirst{false};
    std::atomic<bool> bPosted{false};
    std::atomic<bool> bReturned{false};
    std::string strOrder;
    std::thread worker([&] {
      handOver.Run([&] { bFirst = true; });
      QMetaObject::invokeMethod(
          &handOver, [&] { strOrder += "posted "; }, Qt::QueuedConnection);
      bPosted = true;
      handOver.Run([&] { strOrder += "second"; });
      bReturned = true;
    });

    while (!bFirst) handOver.ServeFor(10);
    while (!bPosted) std::this_thread::yield();
    EXPECT_TRUE(WaitFor([&] { return bReturned.load(); }));
    worker.join();

    ASSERT_EQ("posted second", strOrder);
  }
}

TEST(HandOver, BlockingServesNothingButSteps) {
  HandOver handOver;
  bool bEvent = false;
  QMetaObject::invokeMethod(
      &handOver, [&] { bEvent = true; }, Qt::QueuedConnection);

  handOver.ServeFor(20);
  const bool bDuringBlock = bEvent;
  QCoreApplication::processEvents();

  EXPECT_FALSE(bDuringBlock);
  EXPECT_TRUE(bEvent);
}

}  // namespace
