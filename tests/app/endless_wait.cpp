#include "tests/app/endless_wait.h"

#include <cstdio>
#include <thread>

#include "app/progress_dialog.h"
#include "tests/ui/modal.h"
#include "ui/window.h"

namespace orvandel {

int WaitAfterCancel(int nKind) {
  std::atomic<bool> DRUI::*const flags[] = {&DRUI::m_bCancelSearch, &DRUI::m_bCancelPreview,
                                            &DRUI::m_bCancelRecovery};
  DRUI window;
  SCANUI dialog;
  dialog.InitSlot(&window, nKind);
  dialog.show();
  std::thread([&, nKind] {  // runs until the process ends
    while (!(window.*flags[nKind - 2])) std::this_thread::yield();
    std::puts("cancelled");
    std::fflush(stdout);
  })
      .detach();
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "OK");

  dialog.close();

  std::puts("ended");
  std::fflush(stdout);
  return 0;
}

}  // namespace orvandel
