// SPDX-License-Identifier: BSD-3-Clause
// What the reading of YANG text costs, beside libxml2's parse of the YIN of the same
// modules. Run by read_instructions.sh under callgrind, which counts what happens inside
// of the functions Measured...(); before, each file is read once without being counted.
//
//   read_instructions parse FILE.yin...    libxml2's parse
//   read_instructions read FILE.yang...    the compiler's, with the session's start
#include <libxml/parser.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"

static void Parse(const std::string& yin) {
  xmlFreeDoc(xmlParseMemory(yin.data(), static_cast<int>(yin.size())));
}

static void Read(const std::string& text) {
  const auto session = compiler::OpenSession();
  compiler::Report report;
  static_cast<void>(ReadModuleText(session.get(), "bench.yang", text, &report));
}

extern "C" __attribute__((noinline)) void MeasuredParse(const std::string& yin) {
  Parse(yin);
}

extern "C" __attribute__((noinline)) void MeasuredRead(const std::string& text) {
  Read(text);
}

static std::string Content(const char* path) {
  std::stringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

int main(int argc, char** argv) {
  const bool reads = argc > 1 && std::strcmp(argv[1], "read") == 0;
  if (argc < 3) {
    std::fprintf(stderr, "usage: read_instructions parse|read FILE...\n");
    return 2;
  }
  for (int i = 2; i < argc; ++i) {
    const std::string content = Content(argv[i]);
    reads ? Read(content) : Parse(content);
    reads ? MeasuredRead(content) : MeasuredParse(content);
  }
  return 0;
}
