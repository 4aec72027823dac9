// SPDX-License-Identifier: BSD-3-Clause
#include "bench/shared_parts.h"

#include <dlfcn.h>
#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "bench: %s\n", what);
  std::exit(1);
}

Context NewContext(uint32_t flags) {
  Context ctx(QM_CTX_Create(flags), QM_CTX_Delete);
  Require(ctx != nullptr, "no context");
  return ctx;
}

static uint32_t PrintLoadError(const char* module, const char* /*file*/, const char* message,
                               void* /*arg*/) {
  std::fprintf(stderr, "bench: %s: %s\n", module, message);
  return 0;
}

static uint32_t CountLoadError(const char* /*module*/, const char* /*file*/,
                               const char* /*message*/, void* count) {
  ++*static_cast<int*>(count);
  return 0;
}

static void RequireNoLoadError(QmCtx* ctx) {
  int errors = 0;
  const uint32_t status = QM_CTX_ScanAllSchemaLoadFail(ctx, CountLoadError, &errors);
  if (errors != 0) static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(ctx, PrintLoadError, nullptr));
  Require(status == 0 && errors == 0, "a model has load errors");
}

void LoadText(QmCtx* ctx, const std::string& yin) {
  const bool loaded = QM_CTX_LoadMemory(ctx, yin.c_str()) == 0;
  if (!loaded) RequireNoLoadError(ctx);
  Require(loaded, "a model is not loaded");
}

Context LoadedContext(const std::vector<std::string>& texts) {
  Context ctx = NewContext(0);
  for (const std::string& text : texts) LoadText(ctx.get(), text);
  RequireNoLoadError(ctx.get());
  return ctx;
}

std::function<void()> ParseOf(std::vector<std::string> texts) {
  return [texts = std::move(texts)] {
    xmlKeepBlanksDefault(0);
    for (const std::string& text : texts) {
      xmlDoc* doc = xmlParseMemory(text.data(), static_cast<int>(text.size()));
      Require(doc != nullptr, "a text is not well-formed");
      xmlFreeDoc(doc);
    }
  };
}

int64_t SizeOf(const std::vector<std::string>& texts) {
  size_t size = 0;
  for (const std::string& text : texts) size += text.size();
  return static_cast<int64_t>(size);
}

Work LoadWork(std::vector<std::string> texts, int64_t units) {
  Work work;
  work.units = units;
  work.bytes = SizeOf(texts);
  work.parse = ParseOf(texts);
  LoadedContext(texts);  // says so when a model is at fault
  work.run = [texts = std::move(texts)] {
    const Context ctx = NewContext(0);
    for (const std::string& text : texts) LoadText(ctx.get(), text);
  };
  return work;
}

static void RequireValid(QmErrNode* err) {
  if (err == nullptr) return;
  const char* message = QM_GetErrorMessage(err);
  const char* path = QM_GetErrorPath(err);
  std::fprintf(stderr, "bench: %s: %s\n", path != nullptr ? path : "",
               message != nullptr ? message : "");
  Require(false, "a request is not valid");
}

Work RequestWork(Context ctx, std::string request, int64_t units) {
  Work work;
  work.units = units;
  work.bytes = static_cast<int64_t>(request.size());
  work.parse = ParseOf({request});
  work.run = [ctx = std::move(ctx), request = std::move(request)]() mutable {
    RequireValid(
        QM_CTX_ValidateRpcDataTree(ctx.get(), QM_INPUT_TEXT, request.data(), nullptr, nullptr));
  };
  return work;
}

Work ElementWork(Context ctx, std::string request, int64_t units) {
  Work work;
  work.units = units;
  work.bytes = static_cast<int64_t>(request.size());
  work.parse = ParseOf({request});
  const auto doc = std::make_shared<xmlDoc*>(nullptr);
  work.before = [doc, request = std::move(request)] {
    *doc = xmlParseMemory(request.data(), static_cast<int>(request.size()));
    Require(*doc != nullptr, "a request is not well-formed");
  };
  work.run = [doc, ctx = std::move(ctx)] {
    RequireValid(QM_CTX_ValidateRpcDataTree(ctx.get(), QM_INPUT_ELEMENT, xmlDocGetRootElement(*doc),
                                            nullptr, nullptr));
  };
  work.after = [doc] { xmlFreeDoc(*doc); };
  return work;
}

Work ValueWork(Context ctx, const char* path, std::string value, int64_t checks) {
  QmsNode* leaf = QM_CTX_GetTargetNode(ctx.get(), path, nullptr);
  Require(leaf != nullptr, "a leaf is missing");
  Work work;
  work.units = checks;
  work.run = [ctx = std::move(ctx), leaf, value = std::move(value), checks] {
    for (int64_t i = 0; i < checks; ++i)
      Require(QM_NODE_ValidateValue(leaf, QM_INPUT_TEXT, value.c_str()) == 0,
              "a value is not valid");
  };
  return work;
}

// Looked up by name, so that builds of the library without it can be measured beside.
bool KeepPatterns(QmCtx* ctx) {
  using Setter = uint32_t (*)(QmCtx*, uint32_t);
  void* symbol = dlsym(RTLD_DEFAULT, "QM_CTX_SetKeepPatterns");
  return symbol != nullptr && reinterpret_cast<Setter>(symbol)(ctx, 1) == 0;
}

void RunOnce(const Work& work) {
  if (work.before) work.before();
  work.run();
  if (work.after) work.after();
}
