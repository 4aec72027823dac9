// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "client/options.h"

struct Command {
  const char* name;
  int (*run)(const Options& options);
  size_t minOperands;
  const char* missing;   // what to say when there are fewer
  bool usesContext;      // it loads modules
  bool loadsOperands;    // its operands are modules, loaded with the others
  const char* call;      // how it is called, without the program's name
  const char* text;      // what it does
  const char* examples;  // a line each; they run in the folder examples of the sources
};

// In the order of the help.
std::span<const Command> AllCommands();
// NULL for a name that is no command.
const Command* FindCommand(std::string_view name);
// "; did you mean 'NAME'?" when a command has a similar name, else empty.
std::string SuggestCommand(std::string_view name);

// Each command does its work and gives the exit status.
int RunLoad(const Options& options);
int RunTree(const Options& options);
int RunRpc(const Options& options);
int RunNotif(const Options& options);
int RunShow(const Options& options);
int RunValue(const Options& options);
int RunCompile(const Options& options);
int RunLint(const Options& options);
int RunHelp(const Options& options);
