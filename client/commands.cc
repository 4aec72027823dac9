// SPDX-License-Identifier: BSD-3-Clause
// The commands of the program, each with all that is said about it: a row here is enough
// for a new one to be run and to be helped with.
#include "client/commands.h"

#include <vector>

#include "client/hints.h"

namespace {

constexpr Command kCommands[] = {
    {"load", RunLoad, 1, "MODULE", true, true, "load [OPTION]... MODULE...",
     "Loads the modules and prints a line for each: NAME REVISION NAMESPACE.\n"
     "With --json an array of objects.",
     "  qmodel load -p models router-system router-interfaces\n"
     "  qmodel load -p models -i -f '*' router-vlans\n"
     "  qmodel load models/router-types.yin\n"},
    {"tree", RunTree, 1, "MODULE", true, true, "tree [OPTION]... MODULE...",
     "Loads the modules and prints their schema trees. --rfc8340 prints them exactly as\n"
     "RFC 8340 has it: {feature}? with nodes that are off left in, no defaults, prefixes.\n"
     "--html writes a page to look at: folding, search, all that is said of each node.",
     "  qmodel tree -p models -i router-interfaces\n"
     "  qmodel tree -p models -i -m router-lite router-system\n"
     "  qmodel tree -p models -i --node /router-system:ping --depth 2 router-system\n"
     "  qmodel tree -c -i -p vendor --rfc8340 acme-optics\n"
     "  qmodel tree -p models -i --html - router-system router-interfaces\n"},
    {"rpc", RunRpc, 1, "FILE", true, false, "rpc [OPTION]... FILE...",
     "Validates rpc and action requests. A valid one is printed with its defaults,\n"
     "for another its error record is printed as an rpc-error element.\n"
     "With --json an array of objects, {file, valid, error} for each FILE; messages are\n"
     "XML all the same.",
     "  qmodel rpc -p models -i -m router-system messages/restart.xml\n"
     "  qmodel rpc -p models -i -m router-system -v messages/restart.xml messages/ping.xml\n"
     "  cat messages/ping.xml | qmodel rpc -p models -i -m router-system -q -\n"},
    {"notif", RunNotif, 1, "FILE", true, false, "notif [OPTION]... FILE...",
     "Validates notifications and prints the valid ones as the library gives them back.\n"
     "With -v it is said why one is not valid.",
     "  qmodel notif -p models -i -m router-alarms -v messages/alarm-link-down.xml\n"},
    {"value", RunValue, 2, "PATH or VALUE", true, false, "value [OPTION]... PATH VALUE...",
     "Checks values against the type of the node that the data path names\n"
     "(/module:a/b) and prints 'valid' or 'invalid CODE' for each.\n"
     "An identity is written module:identity. --explain adds what the code says.",
     "  qmodel value -p models -i -m router-system /router-system:restart/delay 60 3600\n"
     "  qmodel value -p models -i -m router-system --explain \\\n"
     "    /router-system:ping/interface-type router-types:gigabit-ethernet\n"},
    {"show", RunShow, 1, "PATH", true, false, "show [OPTION]... PATH...",
     "Prints all that the schema says of the nodes that data paths or paths with all\n"
     "steps of the tree name: kind, module, the type with what it is derived from,\n"
     "ranges, enumerations, default, units, keys, conditions, features, extensions,\n"
     "description.",
     "  qmodel show -p models -i -m router-interfaces /router-interfaces:interfaces/interface/mtu\n"
     "  qmodel show -c -i -p vendor -m acme-optics /acme-optics:ports/port/carrier/frequency\n"},
    {"compile", RunCompile, 1, "MODULE or FILE", false, false,
     "compile [-p DIR]... [-r] [-f MODULE:FEATURE]... [-F] [-i] [--drop-failing] [-o DIR]\n"
     "                 MODULE|FILE...\n"
     "  qmodel compile --convert [-p DIR]... FILE",
     "Spells models out, YANG text or YIN as they are published, into YIN that the\n"
     "library loads. One module is written to standard output, more into the folder\n"
     "that -o names; -i adds what they import. Here -f says which features are on.\n"
     "What is lost or wrong is said as FILE:LINE: what and why; exit status 1 when\n"
     "something was, 3 when a module has an error that stops it.\n"
     "With --convert one FILE of YANG text is written to standard output as YIN, nothing\n"
     "spelled out; what it imports is looked up in its folder and the directories.",
     "  qmodel compile -p vendor acme-types\n"
     "  qmodel compile --convert vendor/acme-optics@2026-03-02.yang\n"},
    {"lint", RunLint, 1, "MODULE or FILE", false, false,
     "lint    [-p DIR]... [-r] [-W CLASS|-W no-CLASS]... [--json] MODULE|FILE...",
     "Says what is wrong in models, YANG text or YIN, in order of files and lines:\n"
     "  FILE:LINE:COLUMN: error|warning: what is wrong; what to do [class]\n"
     "-W shows the warnings of a class (style, which is off at first), -W no-CLASS does\n"
     "not (unused, library); errors are always shown. --json prints an array of objects.\n"
     "Exit status 0 when there are warnings only, 1 when there are errors.",
     "  qmodel lint -p vendor acme-optics\n"},
    {"help", RunHelp, 0, nullptr, false, false, "help [COMMAND]",
     "Prints this help, or that of one command.", "  qmodel help rpc\n"},
};

}  // namespace

std::span<const Command> AllCommands() {
  return kCommands;
}

const Command* FindCommand(std::string_view name) {
  for (const Command& command : kCommands) {
    if (name == command.name) return &command;
  }
  return nullptr;
}

std::string SuggestCommand(std::string_view name) {
  std::vector<std::string> names;
  for (const Command& command : kCommands) names.emplace_back(command.name);
  return DidYouMean(name, names);
}
