// SPDX-License-Identifier: BSD-3-Clause
// Arguments of the program. Options and operands may stand in any order, also
// where the environment asks for POSIX order, so operands are taken as they
// come; the first one is the command.
#include "client/options.h"

#include <getopt.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <qmodel/context.h>

namespace {

enum LongOnly : int { kHelp = 256, kVersion = 257 };

constexpr option kLongOptions[] = {
    {"path", required_argument, nullptr, 'p'},
    {"module", required_argument, nullptr, 'm'},
    {"imports", no_argument, nullptr, 'i'},
    {"feature", required_argument, nullptr, 'f'},
    {"unload", required_argument, nullptr, 'u'},
    {"descriptions", no_argument, nullptr, 'd'},
    {"help", no_argument, nullptr, kHelp},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

// "-": operands are reported in place; ":": a missing argument is told apart.
constexpr char kShortOptions[] = "-:p:m:if:u:d";
constexpr int kOperand = 1;

bool AddFeature(const char* text, Options* options) {
  const char* colon = std::strchr(text, ':');
  if (colon == nullptr || colon == text || colon[1] == '\0') {
    PrintError("a feature is written MODULE:FEATURE, not '%s'", text);
    return false;
  }
  options->features.push_back({std::string(text, colon), std::string(colon + 1)});
  return true;
}

void AddOperand(const char* text, Options* options) {
  if (options->command.empty()) {
    options->command = text;
  } else {
    options->operands.emplace_back(text);
  }
}

void PrintOptionError(int code, char** argv) {
  if (optopt > 0 && optopt < kHelp) {
    PrintError(code == ':' ? "option '-%c' needs an argument" : "unknown option '-%c'", optopt);
    return;
  }
  PrintError(code == ':' ? "option '%s' needs an argument" : "unknown option '%s'",
             argv[optind - 1]);
}

bool TakeOption(int code, char** argv, Options* options) {
  switch (code) {
    case kOperand:
      AddOperand(optarg, options);
      return true;
    case 'p':
      options->searchDirs.emplace_back(optarg);
      return true;
    case 'm':
      options->modules.emplace_back(optarg);
      return true;
    case 'u':
      options->unloads.emplace_back(optarg);
      return true;
    case 'i':
      options->loadFlags |= QM_LOAD_IMPORTS;
      return true;
    case 'd':
      options->loadFlags |= QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS;
      return true;
    case 'f':
      return AddFeature(optarg, options);
    case kHelp:
      options->help = true;
      return true;
    case kVersion:
      options->version = true;
      return true;
    default:
      PrintOptionError(code, argv);
      return false;
  }
}

}  // namespace

void PrintError(const char* format, ...) {
  va_list args;
  va_start(args, format);
  static_cast<void>(std::fputs("qmodel: ", stderr));
  static_cast<void>(std::vfprintf(stderr, format, args));
  static_cast<void>(std::fputc('\n', stderr));
  va_end(args);
}

bool ParseArguments(int argc, char** argv, Options* options) {
  opterr = 0;
  int code = 0;
  while ((code = getopt_long(argc, argv, kShortOptions, kLongOptions, nullptr)) != -1) {
    if (!TakeOption(code, argv, options)) return false;
  }
  for (int i = optind; i < argc; ++i) AddOperand(argv[i], options);
  return true;
}
