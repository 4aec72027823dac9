// SPDX-License-Identifier: BSD-3-Clause
// What a folder's modules offer an operator, in C++17: their rpcs with what they take, and
// what is answered when one is called with nothing.
//   overview DIR MODULE...
// Exit status: 0 done, 2 wrong usage, 3 a module cannot be loaded.
#include <iostream>
#include <string>

#include <qmodel/qmodel.hpp>

static void PrintInput(qmodel::Node operation) {
  for (const qmodel::Node part : operation.children()) {
    if (part.kind() != QMS_NODE_INPUT) continue;
    part.walk([](qmodel::Node node) {
      if (node.type() == nullptr) return qmodel::Walk::kOn;
      std::cout << "  " << node.path() << (node.isMandatory() ? " (mandatory)" : "");
      for (const std::string_view value : node.defaults()) std::cout << " = " << value;
      std::cout << '\n';
      return qmodel::Walk::kOn;
    });
  }
}

static void TryEmpty(const qmodel::Context &ctx, qmodel::Node operation) {
  const std::string request = "<" + std::string(operation.name()) + " xmlns=\"" +
                              std::string(operation.module().ns()) + "\"/>";
  const qmodel::Verdict verdict = ctx.validateRequest(request);
  if (verdict) {
    std::cout << "  may be called with nothing\n";
  } else if (verdict.error) {
    std::cout << "  with nothing: " << verdict.error->message << '\n';
  }
}

int main(int argc, char **argv) {
  if (argc < 3) {
    std::cerr << "usage: overview DIR MODULE...\n";
    return 2;
  }
  std::optional<qmodel::Context> ctx = qmodel::Context::Create(QM_LOAD_IMPORTS);
  if (!ctx || !ctx->addSearchDir(argv[1])) return 3;
  for (int i = 2; i < argc; ++i) {
    const qmodel::Status status = ctx->load(argv[i]);
    if (status) continue;
    std::cerr << argv[i] << ": " << status.text() << '\n';
    for (const qmodel::LoadError &error : ctx->loadErrors()) std::cerr << error.message << '\n';
    return 3;
  }
  for (const qmodel::Module module : ctx->modules()) {
    for (const qmodel::Node node : module.nodes()) {
      if (node.kind() != QMS_NODE_RPC) continue;
      std::cout << module.name() << ": " << node.name() << '\n';
      PrintInput(node);
      TryEmpty(*ctx, node);
    }
  }
  return 0;
}
