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

enum LongOnly : int {
  kHelp = 256,
  kVersion = 257,
  kDropFailing = 258,
  kConvert = 259,
  kJson = 260,
  kNoCache = 261
};

constexpr option kLongOptions[] = {
    {"path", required_argument, nullptr, 'p'},
    {"module", required_argument, nullptr, 'm'},
    {"imports", no_argument, nullptr, 'i'},
    {"feature", required_argument, nullptr, 'f'},
    {"unload", required_argument, nullptr, 'u'},
    {"descriptions", no_argument, nullptr, 'd'},
    {"compile", no_argument, nullptr, 'c'},
    {"no-cache", no_argument, nullptr, kNoCache},
    {"recursive", no_argument, nullptr, 'r'},
    {"features-complete", no_argument, nullptr, 'F'},
    {"output", required_argument, nullptr, 'o'},
    {"drop-failing", no_argument, nullptr, kDropFailing},
    {"convert", no_argument, nullptr, kConvert},
    {"warn", required_argument, nullptr, 'W'},
    {"json", no_argument, nullptr, kJson},
    {"help", no_argument, nullptr, kHelp},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

// Options that only some commands take: those that load, `compile`, `lint`; `-r` and
// `--no-cache` go with loading only after compiling.
struct OptionUse {
  const char* option;
  bool load;
  bool compile;
  bool lint;
};

constexpr OptionUse kUses[] = {
    {"-m", true, false, false},        {"-u", true, false, false},
    {"-d", true, false, false},        {"-c", true, false, false},
    {"-r", true, true, true},          {"-F", false, true, false},
    {"-o", false, true, false},        {"--drop-failing", false, true, false},
    {"--convert", false, true, false}, {"-W", false, false, true},
    {"--json", false, false, true},    {"--no-cache", true, false, false},
};

// "-": operands are reported in place; ":": a missing argument is told apart.
constexpr char kShortOptions[] = "-:p:m:if:u:dcrFo:W:";
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

bool TakeCompileOption(int code, char** argv, Options* options) {
  switch (code) {
    case 'c':
      options->used.emplace_back("-c");
      options->compileFirst = true;
      return true;
    case kNoCache:
      options->used.emplace_back("--no-cache");
      options->noCache = true;
      return true;
    case 'r':
      options->used.emplace_back("-r");
      options->recursive = true;
      return true;
    case 'F':
      options->used.emplace_back("-F");
      options->featuresComplete = true;
      return true;
    case 'o':
      options->used.emplace_back("-o");
      options->outputDir = optarg;
      return true;
    case kDropFailing:
      options->used.emplace_back("--drop-failing");
      options->dropFailing = true;
      return true;
    case kConvert:
      options->used.emplace_back("--convert");
      options->convert = true;
      return true;
    case 'W':
      options->used.emplace_back("-W");
      options->lintClasses.emplace_back(optarg);
      return true;
    case kJson:
      options->used.emplace_back("--json");
      options->json = true;
      return true;
    default:
      PrintOptionError(code, argv);
      return false;
  }
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
      options->used.emplace_back("-m");
      options->modules.emplace_back(optarg);
      return true;
    case 'u':
      options->used.emplace_back("-u");
      options->unloads.emplace_back(optarg);
      return true;
    case 'i':
      options->loadFlags |= QM_LOAD_IMPORTS;
      return true;
    case 'd':
      options->used.emplace_back("-d");
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
      return TakeCompileOption(code, argv, options);
  }
}

bool IsTaken(const Options& options, const std::string& used) {
  for (const OptionUse& use : kUses) {
    if (used != use.option) continue;
    if (options.command == "lint") return use.lint;
    return options.command == "compile" ? use.compile : use.load;
  }
  return true;
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

bool CheckOptions(const Options& options) {
  for (const std::string& used : options.used) {
    if (IsTaken(options, used)) continue;
    PrintError("'%s' takes no option '%s'", options.command.c_str(), used.c_str());
    return false;
  }
  const bool reads = options.command == "compile" || options.command == "lint";
  if (reads || options.compileFirst || !(options.recursive || options.noCache)) return true;
  PrintError("option '%s' goes with '-c'", options.recursive ? "-r" : "--no-cache");
  return false;
}
