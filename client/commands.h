// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "client/options.h"

// Each command does its work and gives the exit status.
int RunLoad(const Options& options);
int RunTree(const Options& options);
int RunRpc(const Options& options);
int RunNotif(const Options& options);
int RunValue(const Options& options);
int RunCompile(const Options& options);
int RunLint(const Options& options);
