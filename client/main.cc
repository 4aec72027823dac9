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
#include "client/hints.h"
#include "client/memory_watch.h"
#include "client/named_files.h"
#include "client/options.h"

namespace {

// Modules that are named by files, or compiled first, are made what a load wants.
int RunPrepared(const Command& command, const Options& options) {
  PrivateFolder folder;
  Options prepared = options;
  if (options.compileFirst) {
    const int status = CompileFirst(&prepared, command.loadsOperands, &folder);
    return status == kExitOk ? command.run(prepared) : status;
  }
  if (!TakeNamedFiles(&prepared, command.loadsOperands, &folder)) return kExitUnusable;
  return command.run(prepared);
}

int RunOne(const Command& command, const Options& options) {
  if (options.quiet && std::freopen("/dev/null", "w", stdout) == nullptr) {
    PrintError("/dev/null: %s", std::strerror(errno));
    return kExitUnusable;
  }
  const int status = command.usesContext ? RunPrepared(command, options) : command.run(options);
  CheckMemory();
  if (status != kExitUnusable) return status;
  HintModules(options, command.loadsOperands || !command.usesContext,
              options.compileFirst || !command.usesContext);
  return status;
}

int RunCommand(const Options& options) {
  const Command* command = FindCommand(options.command);
  if (command == nullptr) {
    const std::string hint = SuggestCommand(options.command);
    PrintError("unknown command '%s'%s", options.command.c_str(),
               hint.empty() ? "; see 'qmodel --help'" : hint.c_str());
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
    WatchMemory();
    status = Run(argc, argv);
    CheckMemory();
  } catch (const std::bad_alloc&) {
    status = kExitUnusable;
    PrintError("out of memory");
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    PrintError("standard output: %s", std::strerror(errno));
    status = std::max<int>(status, kExitUnusable);
  }
  xmlCleanupParser();
  return status;
}
