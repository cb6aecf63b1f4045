#pragma once
#include "cli/options.h"

// The commands. Each prints its result and returns the exit status.
int RunBackups(const Options& options);
int RunScan(const Options& options);
int RunRecover(const Options& options);
