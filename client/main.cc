// SPDX-License-Identifier: BSD-3-Clause
// The program qmodel: loads modules and tries values and messages on them.
#include <libxml/parser.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/commands.h"
#include "client/compile_first.h"
#include "client/help.h"
#include "client/options.h"

namespace {

struct Command {
  const char* name;
  size_t minOperands;
  const char* missing;  // what to say when there are fewer
  int (*run)(const Options& options);
  bool loadsOperands;
};

constexpr Command kCommands[] = {
    {"load", 1, "MODULE", RunLoad, true},
    {"tree", 1, "MODULE", RunTree, true},
    {"rpc", 1, "FILE", RunRpc, false},
    {"notif", 1, "FILE", RunNotif, false},
    {"value", 2, "PATH or VALUE", RunValue, false},
    {"compile", 1, "MODULE or FILE", RunCompile, false},
    {"lint", 1, "MODULE or FILE", RunLint, false},
};

int RunHelp(const Options& options) {
  if (options.operands.size() > 1) {
    PrintError("help takes one command");
    return kExitUsage;
  }
  const char* command = options.operands.empty() ? nullptr : options.operands[0].c_str();
  if (PrintHelp(command)) return kExitOk;
  PrintError("unknown command '%s'", command);
  return kExitUsage;
}

int RunOne(const Command& command, const Options& options) {
  if (!options.compileFirst) return command.run(options);
  PrivateFolder folder;
  Options compiled = options;
  const int status = CompileFirst(&compiled, command.loadsOperands, &folder);
  return status == kExitOk ? command.run(compiled) : status;
}

int RunCommand(const Options& options) {
  if (options.command == "help") return RunHelp(options);
  for (const Command& command : kCommands) {
    if (options.command != command.name) continue;
    if (!CheckOptions(options)) return kExitUsage;
    if (options.operands.size() >= command.minOperands) return RunOne(command, options);
    PrintError("missing %s; see 'qmodel help %s'", command.missing, command.name);
    return kExitUsage;
  }
  PrintError("unknown command '%s'; see 'qmodel --help'", options.command.c_str());
  return kExitUsage;
}

int Run(int argc, char** argv) {
  Options options;
  if (!ParseArguments(argc, argv, &options)) return kExitUsage;
  if (options.version) {
    PrintVersion();
    return kExitOk;
  }
  if (options.help) {
    const bool known = PrintHelp(options.command.empty() ? nullptr : options.command.c_str());
    if (known) return kExitOk;
  }
  if (options.command.empty()) {
    PrintError("missing command; see 'qmodel --help'");
    return kExitUsage;
  }
  return RunCommand(options);
}

}  // namespace

int main(int argc, char** argv) {
  int status = Run(argc, argv);
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    PrintError("standard output: %s", std::strerror(errno));
    status = std::max<int>(status, kExitUnusable);
  }
  xmlCleanupParser();
  return status;
}
