// SPDX-License-Identifier: BSD-3-Clause
// Help texts. The option list is the same for every command.
#include "client/help.h"

#include <cstdio>
#include <cstring>

#include <qmodel/version.h>

namespace {

struct CommandHelp {
  const char* name;
  const char* call;
  const char* text;
};

constexpr CommandHelp kCommands[] = {
    {"load", "load [OPTION]... MODULE...",
     "Loads the modules and prints a line for each: NAME REVISION NAMESPACE."},
    {"tree", "tree [OPTION]... MODULE...", "Loads the modules and prints their schema trees."},
    {"rpc", "rpc [OPTION]... FILE...",
     "Validates rpc and action requests. A valid one is printed with its defaults,\n"
     "for another its error record is printed as an rpc-error element."},
    {"notif", "notif [OPTION]... FILE...",
     "Validates notifications and prints the valid ones as the library gives them back."},
    {"value", "value [OPTION]... PATH VALUE...",
     "Checks values against the type of the node that the data path names\n"
     "(/module:a/b) and prints 'valid' or 'invalid CODE' for each.\n"
     "An identity is written module:identity."},
    {"compile",
     "compile [-p DIR]... [-r] [-f MODULE:FEATURE]... [-F] [-i] [--drop-failing] [-o DIR]\n"
     "                 MODULE|FILE...\n"
     "  qmodel compile --convert [-p DIR]... FILE",
     "Spells models out, YANG text or YIN as they are published, into YIN that the\n"
     "library loads. One module is written to standard output, more into the folder\n"
     "that -o names; -i adds what they import. Here -f says which features are on.\n"
     "What is lost is said as FILE:LINE: what and why; exit status 1 when something\n"
     "was, 3 when a module has an error that stops it.\n"
     "With --convert one FILE of YANG text is written to standard output as YIN, nothing\n"
     "spelled out; what it imports is looked up in its folder and the directories."},
    {"lint", "lint    [-p DIR]... [-r] [-W CLASS|-W no-CLASS]... [--json] MODULE|FILE...",
     "Says what is wrong in models, YANG text or YIN, in order of files and lines:\n"
     "  FILE:LINE:COLUMN: error|warning: what is wrong; what to do [class]\n"
     "-W shows the warnings of a class (style, which is off at first), -W no-CLASS does\n"
     "not (unused, library); errors are always shown. --json prints an array of objects.\n"
     "Exit status 0 when there are warnings only, 1 when there are errors."},
    {"help", "help [COMMAND]", "Prints this help, or that of one command."},
};

constexpr char kOptionsText[] =
    "Options:\n"
    "  -p, --path DIR                 add a search directory; may repeat; default: the\n"
    "                                 current directory\n"
    "  -m, --module NAME              load this module first; may repeat\n"
    "  -i, --imports                  also load every imported module, transitively\n"
    "  -f, --feature MODULE:FEATURE   enable this feature after all loads, MODULE:* all\n"
    "                                 of a module; may repeat\n"
    "  -u, --unload NAME              unload this module after the loads; may repeat\n"
    "  -d, --descriptions             keep descriptions and units\n"
    "  -c, --compile                  compile the models first: any vendor's go in\n"
    "  -r, --recursive                search the directories' sub-folders, too (with -c)\n"
    "  -F, --features-complete        compile: features that -f does not name are off\n"
    "  -o, --output DIR               compile: write NAME.yin into this folder\n"
    "      --drop-failing             compile: leave out conditions that fail each request\n"
    "      --convert                  compile: only turn YANG text into YIN\n"
    "  -W, --warn CLASS|no-CLASS      lint: show or hide the warnings of a class\n"
    "      --json                     lint: print a JSON array\n"
    "      --help                     print this help\n"
    "      --version                  print the version\n"
    "\n"
    "FILE '-' is standard input; '--' ends the options.\n"
    "\n"
    "Exit status: 0 all done and valid, 1 something was not valid, 2 wrong usage,\n"
    "3 a module, a directory or a file could not be used.\n";

const CommandHelp* FindCommand(const char* name) {
  for (const CommandHelp& command : kCommands) {
    if (std::strcmp(command.name, name) == 0) return &command;
  }
  return nullptr;
}

void PrintAll() {
  std::printf("Usage:\n");
  for (const CommandHelp& command : kCommands) std::printf("  qmodel %s\n", command.call);
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
  const CommandHelp* help = FindCommand(command);
  if (help == nullptr) return false;
  std::printf("Usage: qmodel %s\n\n%s\n\n%s", help->call, help->text, kOptionsText);
  return true;
}

void PrintVersion() {
  std::printf("qmodel %s\n", QM_VERSION_STRING);
}
