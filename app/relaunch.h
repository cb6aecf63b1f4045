#pragma once

/// The first stage: runs this program once more with administrator rights and the single argument "start".
/// Shows nothing itself and doesn't wait; a user who refuses sees the program go away. Needs a
/// QCoreApplication. relaunch_macos.cpp does it by Authorization Services, relaunch_other.cpp for systems
/// without.
void RelaunchWithRights();
