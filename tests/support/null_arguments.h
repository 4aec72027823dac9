// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <tuple>
#include <type_traits>
#include <utility>

// What functions answer when an argument is missing. Only the pointers that a call
// is given are left out, each in turn; an argument that may be NULL is passed as NULL.
namespace null_arguments {

// A bit for each argument that is a pointer and not NULL.
template <typename Tuple, size_t... I>
unsigned GivenPointers(const Tuple& args, std::index_sequence<I...>) {
  unsigned given = 0;
  const auto note = [&given](size_t index, const auto& arg) {
    if constexpr (std::is_pointer_v<std::decay_t<decltype(arg)>>) {
      if (arg != nullptr) given |= 1u << index;
    }
  };
  (note(I, std::get<I>(args)), ...);
  return given;
}

template <typename Tuple, size_t... I>
void LeaveOut(Tuple* args, size_t wanted, std::index_sequence<I...>) {
  const auto clear = [wanted](size_t index, auto& arg) {
    if constexpr (std::is_pointer_v<std::decay_t<decltype(arg)>>) {
      if (index == wanted) arg = nullptr;
    }
  };
  (clear(I, std::get<I>(*args)), ...);
}

// Calls `run(arguments)` once for each given pointer, with that one NULL.
template <typename Tuple, typename Run>
void WithEachLeftOut(const Tuple& args, Run run) {
  constexpr auto kIndexes = std::make_index_sequence<std::tuple_size_v<Tuple>>();
  const unsigned given = GivenPointers(args, kIndexes);
  EXPECT_NE(0u, given) << "nothing to leave out";
  for (size_t i = 0; i < std::tuple_size_v<Tuple>; ++i) {
    if ((given >> i & 1u) == 0) continue;
    SCOPED_TRACE(testing::Message() << "argument " << i << " is NULL");
    Tuple changed = args;
    LeaveOut(&changed, i, kIndexes);
    run(changed);
  }
}

// Expects `answer` of the function for each missing argument.
template <typename Result, typename... Params>
void ExpectEachGives(std::type_identity_t<Result> answer, Result (*function)(Params...),
                     std::type_identity_t<Params>... args) {
  WithEachLeftOut(std::tuple<Params...>(args...),
                  [&](const auto& all) { EXPECT_EQ(answer, std::apply(function, all)); });
}

}  // namespace null_arguments
