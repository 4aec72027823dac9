// SPDX-License-Identifier: BSD-3-Clause
// The program qmodel: loads modules and tries values and messages on them.
#include <libxml/parser.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "client/commands.h"
#include "client/compile_first.h"
#include "client/help.h"
#include "client/options.h"

namespace {

int RunOne(const Command& command, const Options& options) {
  if (!options.compileFirst) return command.run(options);
  PrivateFolder folder;
  Options compiled = options;
  const int status = CompileFirst(&compiled, command.loadsOperands, &folder);
  return status == kExitOk ? command.run(compiled) : status;
}

int RunCommand(const Options& options) {
  const Command* command = FindCommand(options.command);
  if (command == nullptr) {
    PrintError("unknown command '%s'; see 'qmodel --help'", options.command.c_str());
    return kExitUsage;
  }
  // Help is given whatever the options are.
  if (command->run == RunHelp) return RunHelp(options);
  if (!CheckOptions(options)) return kExitUsage;
  if (options.operands.size() >= command->minOperands) return RunOne(*command, options);
  PrintError("missing %s; see 'qmodel help %s'", command->missing, command->name);
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
  int status = kExitUnusable;
  try {
    status = Run(argc, argv);
  } catch (const std::bad_alloc&) {
    PrintError("out of memory");
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    PrintError("standard output: %s", std::strerror(errno));
    status = std::max<int>(status, kExitUnusable);
  }
  xmlCleanupParser();
  return status;
}
