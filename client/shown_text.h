// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Texts of models and messages, made fit for a terminal.
#include <string>
#include <string_view>

// Control characters as \xNN: what a model holds must not drive the terminal.
std::string ShowControls(std::string_view text);
