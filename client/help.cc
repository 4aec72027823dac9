// SPDX-License-Identifier: BSD-3-Clause
// Help texts. The option list is the same for every command.
#include "client/help.h"

#include <cstdio>

#include <qmodel/version.h>

#include "client/commands.h"

namespace {

constexpr char kOptionsText[] =
    "Options:\n"
    "  -p, --path DIR                 add a search directory; may repeat; default: the\n"
    "                                 current directory\n"
    "  -m, --module NAME              load this module first; may repeat\n"
    "  -i, --imports                  also load every imported module, transitively\n"
    "  -f, --feature MODULE:FEATURE   enable this feature after all loads, MODULE:* all\n"
    "                                 of a module, * all of all; may repeat\n"
    "  -u, --unload NAME              unload this module after the loads; may repeat\n"
    "  -d, --descriptions             keep descriptions and units\n"
    "  -c, --compile                  compile the models first: any vendor's go in\n"
    "      --no-cache                 with -c: neither use nor keep what was compiled\n"
    "  -r, --recursive                search the directories' sub-folders, too (with -c)\n"
    "  -F, --features-complete        compile: features that -f does not name are off\n"
    "  -o, --output DIR               compile: write NAME.yin into this folder\n"
    "      --drop-failing             compile: leave out conditions that fail each request\n"
    "      --convert                  compile: only turn YANG text into YIN\n"
    "  -W, --warn CLASS|no-CLASS      lint: show or hide the warnings of a class\n"
    "      --json                     lint, load, rpc: print a JSON array\n"
    "      --depth N                  tree: only N levels of nodes\n"
    "      --rfc8340                  tree: exactly the diagram of RFC 8340\n"
    "      --html FILE                tree: write a page to look at, complete in itself\n"
    "      --node PATH                tree: only the node of this path and what is below it\n"
    "      --explain                  value: add what the code says\n"
    "  -q, --quiet                    print no answers and no notes: the exit status tells\n"
    "  -v, --verbose                  rpc, notif: say to which FILE an answer belongs, and\n"
    "                                 why a notification is not valid\n"
    "  -h, --help                     print this help\n"
    "  -V, --version                  print the version\n"
    "\n"
    "A MODULE or NAME may be a file of YIN, DIR/NAME.yin. FILE '-' is standard input;\n"
    "'--' ends the options.\n"
    "\n"
    "Exit status: 0 all done and valid, 1 something was not valid, 2 wrong usage,\n"
    "3 a module, a directory or a file could not be used.\n";

void PrintAll() {
  std::printf("Usage:\n");
  for (const Command& command : AllCommands()) std::printf("  qmodel %s\n", command.call);
  std::printf(
      "  qmodel --help | --version\n\nLoads YANG modules from YIN files and validates "
      "messages against them.\n\n%s",
      kOptionsText);
}

}  // namespace

bool PrintHelp(const char* command) {
  if (command == nullptr) {
    PrintAll();
    return true;
  }
  const Command* help = FindCommand(command);
  if (help == nullptr) return false;
  std::printf("Usage: qmodel %s\n\n%s\n\nExamples, in the folder examples of the sources:\n%s\n%s",
              help->call, help->text, help->examples, kOptionsText);
  return true;
}

void PrintVersion() {
  std::printf("qmodel %s\n", QM_VERSION_STRING);
}

int RunHelp(const Options& options) {
  if (options.operands.size() > 1) {
    PrintError("help takes one command");
    return kExitUsage;
  }
  const char* command = options.operands.empty() ? nullptr : options.operands[0].c_str();
  if (PrintHelp(command)) return kExitOk;
  PrintError("unknown command '%s'%s", command, SuggestCommand(command).c_str());
  return kExitUsage;
}
