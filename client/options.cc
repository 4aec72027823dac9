// SPDX-License-Identifier: BSD-3-Clause
// Arguments of the program. Options and operands may stand in any order, also
// where the environment asks for POSIX order, so operands are taken as they
// come; the first one is the command.
#include "client/options.h"

#include <getopt.h>

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <qmodel/context.h>

namespace {

enum LongOnly : int {
  kDropFailing = 256,
  kConvert = 257,
  kJson = 258,
  kNoCache = 259,
  kExplain = 260,
  kDepth = 261,
  kNode = 262,
  kRfc8340 = 263,
  kHtml = 264
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
    {"quiet", no_argument, nullptr, 'q'},
    {"verbose", no_argument, nullptr, 'v'},
    {"explain", no_argument, nullptr, kExplain},
    {"depth", required_argument, nullptr, kDepth},
    {"node", required_argument, nullptr, kNode},
    {"rfc8340", no_argument, nullptr, kRfc8340},
    {"html", required_argument, nullptr, kHtml},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'V'},
    // Beginnings that named one option before another one began with them, too.
    {"de", no_argument, nullptr, 'd'},
    {"n", no_argument, nullptr, kNoCache},
    {"no", no_argument, nullptr, kNoCache},
    {"r", no_argument, nullptr, 'r'},
    {"h", no_argument, nullptr, 'h'},
    {"v", no_argument, nullptr, 'V'},
    {"ve", no_argument, nullptr, 'V'},
    {"ver", no_argument, nullptr, 'V'},
    {nullptr, 0, nullptr, 0},
};

// Commands that work on a context, which all options of loading go with.
#define QMODEL_LOADING "load tree rpc notif value show"

// Options that only some commands take; `-r` and `--no-cache` go with loading only after
// compiling.
struct OptionUse {
  const char* option;
  std::string_view commands;
};

constexpr OptionUse kUses[] = {
    {"-m", QMODEL_LOADING},
    {"-u", QMODEL_LOADING},
    {"-d", QMODEL_LOADING},
    {"-i", QMODEL_LOADING " compile"},
    {"-f", QMODEL_LOADING " compile"},
    {"-c", QMODEL_LOADING},
    {"-r", QMODEL_LOADING " compile lint"},
    {"-F", "compile"},
    {"-o", "compile"},
    {"--drop-failing", "compile"},
    {"--convert", "compile"},
    {"-W", "lint"},
    {"--json", "lint load rpc"},
    {"--no-cache", QMODEL_LOADING},
    {"-q", QMODEL_LOADING " lint"},
    {"-v", QMODEL_LOADING},
    {"--explain", "value"},
    {"--depth", "tree"},
    {"--node", "tree"},
    {"--rfc8340", "tree"},
    {"--html", "tree"},
};

#undef QMODEL_LOADING

// Options without an argument.
struct Switch {
  int code;
  const char* option;  // as in kUses; NULL: every command takes it
  bool Options::*field;
};

constexpr Switch kSwitches[] = {
    {'c', "-c", &Options::compileFirst},
    {kNoCache, "--no-cache", &Options::noCache},
    {'r', "-r", &Options::recursive},
    {'F', "-F", &Options::featuresComplete},
    {kDropFailing, "--drop-failing", &Options::dropFailing},
    {kConvert, "--convert", &Options::convert},
    {kJson, "--json", &Options::json},
    {'q', "-q", &Options::quiet},
    {'v', "-v", &Options::verdicts},
    {kRfc8340, "--rfc8340", &Options::rfc8340},
    {kExplain, "--explain", &Options::explain},
    {'h', nullptr, &Options::help},
    {'V', nullptr, &Options::version},
};

// "-": operands are reported in place; ":": a missing argument is told apart.
constexpr char kShortOptions[] = "-:p:m:if:u:dcrFo:W:qvhV";
constexpr int kOperand = 1;
constexpr unsigned kMaxDepth = 9999;

bool AddFeature(const char* text, Options* options) {
  if (std::strcmp(text, "*") == 0) {
    options->features.push_back({"", "*"});
    return true;
  }
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
  if (optopt > 0 && optopt < kDropFailing) {
    PrintError(code == ':' ? "option '-%c' needs an argument" : "unknown option '-%c'", optopt);
    return;
  }
  PrintError(code == ':' ? "option '%s' needs an argument" : "unknown option '%s'",
             argv[optind - 1]);
}

bool TakeSwitch(int code, char** argv, Options* options) {
  for (const Switch& row : kSwitches) {
    if (row.code != code) continue;
    if (row.option != nullptr) options->used.emplace_back(row.option);
    options->*row.field = true;
    return true;
  }
  PrintOptionError(code, argv);
  return false;
}

bool TakeDepth(Options* options) {
  const char* end = optarg + std::strlen(optarg);
  const auto [rest, failure] = std::from_chars(optarg, end, options->depth);
  if (failure == std::errc() && rest == end && options->depth > 0 && options->depth <= kMaxDepth)
    return true;
  PrintError("a depth is a number from 1 to %u, not '%s'", kMaxDepth, optarg);
  return false;
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
      options->used.emplace_back("-i");
      options->loadFlags |= QM_LOAD_IMPORTS;
      return true;
    case 'd':
      options->used.emplace_back("-d");
      options->loadFlags |= QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS;
      return true;
    case 'f':
      options->used.emplace_back("-f");
      return AddFeature(optarg, options);
    case 'o':
      options->used.emplace_back("-o");
      options->outputDir = optarg;
      if (*optarg == '\0') PrintError("a folder has a name");
      return *optarg != '\0';
    case kDepth:
      options->used.emplace_back("--depth");
      return TakeDepth(options);
    case kNode:
      options->used.emplace_back("--node");
      options->nodePath = optarg;
      if (*optarg == '\0') PrintError("a path is not empty");
      return *optarg != '\0';
    case kHtml:
      options->used.emplace_back("--html");
      options->htmlFile = optarg;
      if (*optarg == '\0') PrintError("a file has a name");
      return *optarg != '\0';
    case 'W':
      options->used.emplace_back("-W");
      options->lintClasses.emplace_back(optarg);
      return true;
    default:
      return TakeSwitch(code, argv, options);
  }
}

bool HasWord(std::string_view words, std::string_view word) {
  for (size_t at = 0; at < words.size(); at = words.find_first_not_of(' ', at)) {
    const size_t end = std::min(words.find(' ', at), words.size());
    if (words.substr(at, end - at) == word) return true;
    at = end;
  }
  return false;
}

bool IsTaken(const Options& options, const std::string& used) {
  for (const OptionUse& use : kUses) {
    if (used == use.option) return HasWord(use.commands, options.command);
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
