// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "compiler/reading/repository.h"
#include "fuzz/fuzz_target.h"

// libxml2 compiles patterns in a time that grows faster than their length.
inline constexpr size_t kMaxModelText = 4096;

// Reads the modules of an input, which form feeds part, into the repository, where they
// can be found by name; flag 1 takes them as YIN instead of YANG text. The first that
// can be read, or NULL.
compiler::Module* ReadModels(const FuzzInput& input, compiler::Repository* repository);
