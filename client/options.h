// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Exit statuses; when several apply, the greatest is given.
enum ExitStatus : int { kExitOk = 0, kExitInvalid = 1, kExitUsage = 2, kExitUnusable = 3 };

// A feature to enable; "*" stands for all of the module, without one for all of all.
struct FeatureRef {
  std::string module;
  std::string feature;
};

// One call of the program, as its arguments say it.
struct Options {
  std::string command;
  bool help = false;
  bool version = false;
  std::vector<std::string> searchDirs;
  std::vector<std::string> modules;
  std::vector<std::string> unloads;
  std::vector<FeatureRef> features;
  std::vector<std::string> operands;  // without the command
  uint32_t loadFlags = 0;
  bool compileFirst = false;  // -c
  bool noCache = false;
  bool recursive = false;         // -r
  bool featuresComplete = false;  // -F
  bool dropFailing = false;
  bool convert = false;
  bool json = false;
  bool quiet = false;     // -q
  bool verdicts = false;  // -v
  bool explain = false;
  bool rfc8340 = false;
  unsigned depth = 0;                    // --depth; 0: not given
  std::string nodePath;                  // --node; empty: not given
  std::string htmlFile;                  // --html; empty: not given
  std::vector<std::string> lintClasses;  // -W, as written
  std::string outputDir;                 // -o; empty: none
  std::vector<std::string> used;         // the options that not every command takes, as written
  // With -c: the file that a module was compiled from, by the name of the compiled one.
  std::map<std::string, std::string> sources;
};

// Reads the arguments. False, with one line on standard error, on wrong usage.
bool ParseArguments(int argc, char** argv, Options* options);

// False, with one line on standard error: the command does not take one of its options.
bool CheckOptions(const Options& options);

// One line on standard error that begins with the program's name.
void PrintError(const char* format, ...) __attribute__((format(printf, 1, 2)));
