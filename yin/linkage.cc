// SPDX-License-Identifier: BSD-3-Clause
//
// Imports and includes (RFC 7950 sections 7.1.5 and 7.1.6). An import is only
// noted: who loads the imported modules is the loader's choice later. An
// include is followed at once, since a submodule's definitions belong to the
// module. The include is noted before its file is read, so that submodules
// that include each other end; a long chain of different ones is bounded,
// because each link of it keeps a parsed document alive.
#include "yin/linkage.h"

#include <cstdint>
#include <cstring>

#include "context/context.h"
#include "context/guard.h"
#include "context/load_error.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "yin/argument.h"
#include "yin/file_lookup.h"
#include "yin/keyword.h"
#include "yin/load_assister.h"
#include "yin/module_content.h"
#include "yin/reader.h"

namespace {

// While alive, the messages of a context name another file. The name before is kept in
// the list of candidates: includes nest, and their stack is to be small.
class CurrentFileScope {
 public:
  CurrentFileScope(QmCtx* ctx, const char* path, char (&saved)[kQmCurYinFileSize])
      : ctx_(ctx), saved_(saved) {
    std::memcpy(saved_, ctx->curYinFile, sizeof(saved));
    QM_CTX_SetCurYinFile(ctx, path);
  }
  ~CurrentFileScope() { std::memcpy(ctx_->curYinFile, saved_, sizeof(ctx_->curYinFile)); }
  CurrentFileScope(const CurrentFileScope&) = delete;
  CurrentFileScope& operator=(const CurrentFileScope&) = delete;

 private:
  QmCtx* ctx_;
  char* saved_;
};

}  // namespace

static uint32_t ParseSubmoduleFile(QmsModule* module, const char* path, QmsLoadAssister* assister) {
  const QmOwn<FreeParsedDocument> doc(QMS_LOADER_ReadYinFileToXmlDoc(path));
  xmlNode* root = doc ? xmlDocGetRootElement(doc.Get()) : nullptr;
  if (root == nullptr) return QM_INVALID;
  if (QMS_LOADER_GetStmtByKeyword(XmlText(root->name)) != QMS_STMT_SUBMODULE) return QM_INVALID;
  return QMS_LOADER_ParseSubmoduleContent(module, root, assister);
}

static uint32_t LoadSubModuleWith(QmCtx* ctx, QmsModule* module, const char* subName,
                                  QmsLoadAssister* assister) {
  if (assister->includeDepth >= kQmsMaxIncludeDepth) return QM_INVALID;
  const QmOwn<FreePathCollection> files(QMS_LOADER_CollectFilePathMatchedInAllDir(ctx, subName));
  if (!files) return QM_NOT_FOUND;
  uint32_t ret = QMS_LOADER_AddPathObjToLoadAssister(assister, files.Get());
  if (ret != QM_OK) return ret;
  const QmsPathObj* file = QMS_LOADER_GetNextPathObjToProc(files.Get(), assister);
  if (file == nullptr) return QM_NOT_FOUND;
  ++assister->includeDepth;
  {
    const CurrentFileScope current(ctx, file->path, files->outerYinFile);
    ret = ParseSubmoduleFile(module, file->path, assister);
  }
  --assister->includeDepth;
  return ret;
}

uint32_t QMS_LOADER_LoadSubModule(QmCtx* ctx, QmsModule* module, const char* subName,
                                  QmsLoadAssister* assister) {
  if (ctx == nullptr || module == nullptr) return QM_INVALID;
  if (assister != nullptr) return LoadSubModuleWith(ctx, module, subName, assister);
  QmsLoadAssister none = {};
  none.current = kQmsNoSuffix;
  none.forgetful = 1;
  return LoadSubModuleWith(ctx, module, subName, &none);
}

static bool AreSame(const char* a, const char* b) {
  return a == nullptr || b == nullptr ? a == b : TextsEqual(a, b);
}

static bool IsImported(const QmsModule* module, const char* name, const char* prefix) {
  for (uint32_t i = 0; i < module->importCount; ++i) {
    const QmsImport& import = module->imports[i];
    if (AreSame(import.prefix, prefix) && AreSame(import.moduleName, name)) return true;
  }
  return false;
}

uint32_t QMS_LOADER_ParseImport(QmsModule* module, xmlNode* element) {
  const char* name = ReadArgument(module, element, QMS_STMT_IMPORT);
  if (name == nullptr) return QM_INVALID;
  const xmlNode* prefixElem = FirstChildElementNamed(element, "prefix");
  const char* prefix = nullptr;
  if (prefixElem != nullptr) {
    prefix = ReadArgument(module, prefixElem, QMS_STMT_PREFIX);
    if (prefix == nullptr) {
      RecordBadValue(module, name, QMS_STMT_IMPORT);
      return QM_INVALID;
    }
  }
  if (IsImported(module, name, prefix)) return QM_OK;
  return QMS_MOD_AppendOneImport(module, name, prefix);
}

uint32_t QMS_LOADER_ParseInclude(QmsModule* module, xmlNode* element, QmsLoadAssister* assister) {
  const char* name = ReadArgument(module, element, QMS_STMT_INCLUDE);
  if (name == nullptr) return QM_INVALID;
  if (QMS_MOD_FindIncludeBySubName(module->includes, module->includeCount, name) != nullptr) {
    return QM_OK;
  }
  uint32_t ret = QMS_MOD_AppendOneInclude(module, name);
  if (ret == QM_OK) ret = QMS_LOADER_LoadSubModule(module->ctx, module, name, assister);
  if (ret != QM_OK) {
    QM_CTX_AddModError(module->ctx, module->name, "Failed to load submodule \"%s\".", name);
  }
  return ret;
}

static uint32_t ParseLinkageStmt(QmsModule* module, xmlNode* child, QmsLoadAssister* assister) {
  const uintptr_t stmt = PrivateMark(child);
  uint32_t ret = QM_OK;
  if (stmt == QMS_STMT_IMPORT) ret = QMS_LOADER_ParseImport(module, child);
  if (stmt == QMS_STMT_INCLUDE) ret = QMS_LOADER_ParseInclude(module, child, assister);
  if (ret != QM_OK) RecordBadStatement(module, static_cast<uint32_t>(stmt));
  return ret;
}

uint32_t QMS_LOADER_ParseLinkageStmts(QmsModule* module, xmlNode* root, QmsLoadAssister* assister) {
  for (xmlNode* child = root->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const uint32_t ret = ParseLinkageStmt(module, child, assister);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
