#pragma once

namespace orvandel {

/// First stage: starts this program again with administrator rights and the single argument "start".
/// Shows no window and doesn't wait; if the user declines, the program exits silently. Requires a
/// QCoreApplication. relaunch_macos.cpp uses Authorization Services; relaunch_other.cpp is for systems
/// without them.
void RelaunchWithRights();

}  // namespace orvandel
