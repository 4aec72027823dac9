// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

// What one run of the program gave.
struct ClientRun {
  int status = -1;  // exit status; -1 when it did not end by itself
  std::string out;
  std::string err;
};

// Runs `program` in `dir` with these arguments and this standard input.
ClientRun RunProgram(const std::string& program, const std::string& dir,
                     const std::vector<std::string>& args, const std::string& input = "");

// Runs the program qmodel in `dir` with these arguments and this standard input.
ClientRun RunClient(const std::string& dir, const std::vector<std::string>& args,
                    const std::string& input = "");
