// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <functional>

// Runs code on a thread whose stack has a fixed size, with nothing but a fault below it.
namespace small_stack {

// What the library promises to live with in a release build. QMODEL_STACK_FACTOR is 1
// there, and 4 with a sanitizer or without optimisation, where frames are larger.
constexpr size_t kSize = size_t{256} * 1024 * QMODEL_STACK_FACTOR;

// Gives the bytes of the stack that were written, those of the thread itself included.
size_t Run(const std::function<void()>& body);

}  // namespace small_stack
