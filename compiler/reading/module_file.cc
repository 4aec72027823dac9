// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/module_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "compiler/reading/reader.h"
#include "compiler/reading/statement.h"

namespace compiler {

namespace {

std::string TextOrEmpty(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

void TakeImport(Module* module, xmlNode* statement) {
  Import& import = module->imports.emplace_back();
  import.module = TextOrEmpty(ArgumentOf(statement));
  import.prefix = TextOrEmpty(ArgumentOfChild(statement, Keyword::kPrefix));
  import.revision = TextOrEmpty(ArgumentOfChild(statement, Keyword::kRevisionDate));
  import.statement = statement;
}

void TakeInclude(Module* module, xmlNode* statement) {
  Include& include = module->includes.emplace_back();
  include.submodule = TextOrEmpty(ArgumentOf(statement));
  include.revision = TextOrEmpty(ArgumentOfChild(statement, Keyword::kRevisionDate));
  include.statement = statement;
}

void TakeStatement(Module* module, xmlNode* statement) {
  switch (KeywordOf(statement)) {
    case Keyword::kYangVersion:
      module->version11 = TextOrEmpty(ArgumentOf(statement)) == "1.1";
      break;
    case Keyword::kNamespace:
      module->nameSpace = TextOrEmpty(ArgumentOf(statement));
      break;
    case Keyword::kPrefix:
      module->prefix = TextOrEmpty(ArgumentOf(statement));
      break;
    case Keyword::kBelongsTo:
      if (!Is(module->root, Keyword::kSubmodule)) break;  // misplaced
      module->belongsTo = TextOrEmpty(ArgumentOf(statement));
      module->prefix = TextOrEmpty(ArgumentOfChild(statement, Keyword::kPrefix));
      break;
    case Keyword::kRevision:
      module->revision = std::max(module->revision, TextOrEmpty(ArgumentOf(statement)));
      break;
    case Keyword::kImport:
      TakeImport(module, statement);
      break;
    case Keyword::kInclude:
      TakeInclude(module, statement);
      break;
    default:
      break;
  }
}

struct CloseFile {
  void operator()(FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// What a directory was listed with may have become something else since. A FIFO without a
// writer would hold up the caller for ever, so nothing is waited for, and what was opened
// is asked once more.
File OpenRegularFile(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return nullptr;
  struct stat info {};
  const bool isRegular = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
  File file(isRegular ? fdopen(fd, "rb") : nullptr);
  if (file == nullptr) {
    const int why = isRegular ? errno : EINVAL;
    static_cast<void>(close(fd));
    errno = why;
  }
  return file;
}

// The content of a file; false: it cannot be read, and errno says why.
bool ReadContent(const std::string& path, FileOrigin origin, std::string* content) {
  const File file =
      origin == FileOrigin::kFound ? OpenRegularFile(path) : File(std::fopen(path.c_str(), "rbe"));
  if (file == nullptr) return false;
  constexpr size_t kChunk = 1U << 16;
  for (size_t length = kChunk; length == kChunk && content->size() <= INT_MAX;) {
    const size_t before = content->size();
    content->resize(before + kChunk);
    length = std::fread(content->data() + before, 1, kChunk, file.get());
    content->resize(before + length);
  }
  return std::ferror(file.get()) == 0;
}

}  // namespace

Module* NewModule(Session* session, const std::string& path, bool isText) {
  Module* module = &session->modules.emplace_back();
  module->file = &session->files.emplace_back(SourceFile{path, isText});
  module->document.reset(Need(xmlNewDoc(nullptr)));
  module->document->dict = session->dictionary.get();
  xmlDictReference(module->document->dict);
  return module;
}

void ReportTooLarge(const Module* module, Report* report) {
  AddFindingAt(report, Severity::kFatal, kSyntaxClass, {module->file, 0, 0},
               "the file is larger than 2 GiB");
}

Module* ReadModuleFile(Session* session, const std::string& path, FileOrigin origin,
                       Report* report) {
  std::string content;
  if (!ReadContent(path, origin, &content)) {
    session->files.push_back({path, false});
    const Place place{&session->files.back(), 0, 0};
    AddFindingAt(report, Severity::kFatal, kSyntaxClass, place,
                 std::string("cannot be read: ") +
                     (errno == EINVAL ? "no regular file" : std::strerror(errno)));
    return nullptr;
  }
  const bool isYin = std::string_view(path).ends_with(".yin");
  const size_t index = session->files.size();
  Module* module = isYin ? ReadModuleYin(session, path, content, report)
                         : ReadModuleText(session, path, content, report);
  if (session->keepContents && index < session->files.size())
    session->files[index].content = std::move(content);
  return module;
}

void ReadHeader(Module* module) {
  module->name = TextOrEmpty(ArgumentOf(module->root));
  for (xmlNode* s = FirstChild(module->root); s != nullptr; s = NextSibling(s))
    TakeStatement(module, s);
  for (const Import& import : module->imports)
    module->importOfPrefix.emplace(import.prefix, &import);
}

}  // namespace compiler
