// SPDX-License-Identifier: BSD-3-Clause
// Loads a module with what it imports and prints its name: cxx_program DIR MODULE
#include <cstdio>

#include <qmodel/qmodel.hpp>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::optional<qmodel::Context> ctx = qmodel::Context::Create(QM_LOAD_IMPORTS);
  if (!ctx || !ctx->addSearchDir(argv[1]) || !ctx->load(argv[2])) return 3;
  std::printf("%s\n", std::string(ctx->module(argv[2]).name()).c_str());
  return 0;
}
