// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// Reads a file, or standard input for "-". False, with the reason on standard
// error, when it cannot be read.
bool ReadInput(const std::string& file, std::string* content);

// Reads a model as the library does: a regular file only, and without waiting, since a
// FIFO may stand where one was. False when it cannot be read; nothing is printed.
bool ReadRegularFile(const std::string& file, std::string* content);
