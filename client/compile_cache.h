// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "compiler/job.h"

// What RunJob() gives, from the user's cache when nothing that it depends on has changed
// since it was compiled; else it is compiled, and kept. A cache that is damaged or cannot
// be used is passed over without a word.
compiler::JobResult RunJobOnce(compiler::JobRequest request);
