// SPDX-License-Identifier: BSD-3-Clause
// The load errors of a context: for each module name the first two messages,
// each with the base name of the file that was being read. They outlive a failed
// load, so that a client can ask afterwards what went wrong.
//
// One lock guards the tree, since a monitoring thread may scan while another
// loads. A scan calls the client back with the lock held; a callback that comes
// to record an error would then wait for its own thread for ever. The thread
// therefore remembers what it is scanning, and records nothing there meanwhile.
#include "context/load_error.h"

#include <cstdarg>

#include "context/array.h"
#include "context/context.h"
#include "context/dict.h"
#include "context/memory.h"
#include "context/string.h"
#include "platform/bounds.h"
#include "platform/string.h"

constexpr uint32_t kErrorsPerModule = 2;
constexpr size_t kMessageSize = 512;

constexpr RtkAvl3TreeInfo kErrTreeInfo = {QM_CTX_CompareModuleName, offsetof(QmErrModNode, modName),
                                          offsetof(QmErrModNode, link)};

namespace {

// Holds the lock, when it could be taken, to the end of the block.
template <int (*Lock)(pthread_rwlock_t*)>
class Locked {
 public:
  explicit Locked(pthread_rwlock_t* lock) : lock_(Lock(lock) == 0 ? lock : nullptr) {}
  ~Locked() {
    if (lock_ != nullptr) pthread_rwlock_unlock(lock_);
  }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  explicit operator bool() const { return lock_ != nullptr; }

 private:
  pthread_rwlock_t* lock_;
};
using ReadLocked = Locked<pthread_rwlock_rdlock>;
using WriteLocked = Locked<pthread_rwlock_wrlock>;

// The scans that the thread is in, innermost first.
struct RunningScan {
  const QmCtxErrMng* errMng;
  const RunningScan* outer;
};
constinit thread_local const RunningScan* t_innermostScan = nullptr;

}  // namespace

static bool IsScannedByThisThread(const QmCtxErrMng* errMng) {
  const RunningScan* scan = t_innermostScan;
  while (scan != nullptr && scan->errMng != errMng) scan = scan->outer;
  return scan != nullptr;
}

int32_t QM_CTX_CompareModuleName(const void* keyA, const void* keyB) {
  return RTK_StrCmp(static_cast<const char*>(keyA), static_cast<const char*>(keyB));
}

uint32_t QM_CTX_InitErrMng(QmCtx* ctx) {
  if (ctx == nullptr) return QM_INVALID;
  auto* errMng = NewRecord<QmCtxErrMng>();
  if (errMng == nullptr) return QM_NO_MEMORY;
  const int ret = pthread_rwlock_init(&errMng->lock, nullptr);
  if (ret != 0) {
    g_qmMemFreeFunc(errMng);
    return static_cast<uint32_t>(ret);
  }
  RTK_AVL3_Init(&errMng->tree, &kErrTreeInfo);
  errMng->ctx = ctx;
  ctx->errMng = errMng;
  return QM_OK;
}

static void DeleteErrNode(QmCtxErrMng* errMng, QmErrModNode* errNode) {
  RTK_AVL3_Delete(&errMng->tree, errNode);
  QMS_MOD_FreeErrModNode(&errMng->ctx->dict, errNode);
}

static QmErrModNode* FirstErrNode(const QmCtxErrMng* errMng) {
  return static_cast<QmErrModNode*>(RTK_AVL3_First(&errMng->tree));
}

static QmErrModNode* NextErrNode(const QmCtxErrMng* errMng, const QmErrModNode* errNode) {
  return static_cast<QmErrModNode*>(RTK_AVL3_Next(&errMng->tree, errNode));
}

static QmErrModNode* FindErrNode(const QmCtxErrMng* errMng, const char* modName) {
  return static_cast<QmErrModNode*>(RTK_AVL3_Find(&errMng->tree, modName));
}

void QM_CTX_DestoryErrMngTree(QmCtxErrMng* errMng) {
  if (errMng == nullptr) return;
  while (QmErrModNode* errNode = FirstErrNode(errMng)) DeleteErrNode(errMng, errNode);
}

void QM_CTX_DestroyErrMng(QmCtxErrMng* errMng) {
  if (errMng == nullptr) return;
  {
    // Freed even when the lock fails: the context goes away either way.
    const WriteLocked lock(&errMng->lock);
    QM_CTX_DestoryErrMngTree(errMng);
  }
  pthread_rwlock_destroy(&errMng->lock);
  g_qmMemFreeFunc(errMng);
}

void QM_CTX_AddModError(QmCtx* ctx, const char* modName, const char* format, ...) {
  if (ctx == nullptr || modName == nullptr || format == nullptr || ctx->errMng == nullptr) return;
  char message[kMessageSize];
  va_list args;
  va_start(args, format);
  const int32_t length = vsnprintf_s(message, sizeof message, format, args);
  va_end(args);
  if (length < 0 || IsScannedByThisThread(ctx->errMng)) return;
  const WriteLocked lock(&ctx->errMng->lock);
  // Without memory the message is lost: there is nobody left to tell.
  if (lock) static_cast<void>(QM_CTX_AddErrorMsgToMod(ctx->errMng, modName, message));
}

static QmErrModNode* AddErrNode(QmCtxErrMng* errMng, const char* modName) {
  QmErrModNode* errNode = QMS_MOD_CreateErrNode(&errMng->ctx->dict, modName);
  if (errNode == nullptr) return nullptr;
  RTK_AVL3_Insert_Or_Find(&errMng->tree, errNode, nullptr);
  return errNode;
}

uint32_t QM_CTX_AddErrorMsgToMod(QmCtxErrMng* errMng, const char* modName, const char* message) {
  if (errMng == nullptr || modName == nullptr || message == nullptr) return QM_INVALID;
  QmErrModNode* errNode = FindErrNode(errMng, modName);
  if (errNode == nullptr) errNode = AddErrNode(errMng, modName);
  if (errNode == nullptr) return QM_NO_MEMORY;
  return QMS_MOD_RecordErrorInfo(errMng->ctx, errNode, message);
}

QmErrModNode* QM_CTX_GetErrNodeByModName(QmCtx* ctx, const char* modName) {
  if (ctx == nullptr || ctx->errMng == nullptr || modName == nullptr) return nullptr;
  if (IsScannedByThisThread(ctx->errMng)) return nullptr;
  const WriteLocked lock(&ctx->errMng->lock);
  return lock ? FindErrNode(ctx->errMng, modName) : nullptr;
}

void QM_CTX_DeleteErrNodeByModName(QmCtxErrMng* errMng, const char* modName) {
  if (errMng == nullptr || modName == nullptr || IsScannedByThisThread(errMng)) return;
  const WriteLocked lock(&errMng->lock);
  if (!lock) return;
  QmErrModNode* errNode = FindErrNode(errMng, modName);
  if (errNode != nullptr) DeleteErrNode(errMng, errNode);
}

uint32_t QM_CTX_ScanAllSchemaLoadFail(QmCtx* ctx, QmLoadFailScanFunc callback,
                                      void* userData) noexcept {
  if (ctx == nullptr || callback == nullptr || ctx->errMng == nullptr) return QM_OK;
  const ReadLocked lock(&ctx->errMng->lock);
  if (!lock) return QM_OK;
  const RunningScan scan = {ctx->errMng, t_innermostScan};
  t_innermostScan = &scan;
  uint32_t ret = QM_OK;
  QmErrModNode* errNode = FirstErrNode(ctx->errMng);
  while (errNode != nullptr && ret == QM_OK) {
    ret = QMS_MOD_ScanModAllLoadFail(errNode, callback, userData);
    errNode = NextErrNode(ctx->errMng, errNode);
  }
  t_innermostScan = scan.outer;
  return ret;
}

QmErrModNode* QMS_MOD_CreateErrNode(QmDict* dict, const char* moduleName) {
  auto* errNode = NewRecord<QmErrModNode>();
  if (errNode == nullptr) return nullptr;
  RTK_AVL3_InitLink(&errNode->link);
  if (InternText(dict, &errNode->modName, moduleName) &&
      NewArrayOf(&errNode->errs, kErrorsPerModule) == QM_OK) {
    errNode->errorCapacity = kErrorsPerModule;
    return errNode;
  }
  QMS_MOD_FreeErrModNode(dict, errNode);
  return nullptr;
}

uint32_t QMS_MOD_RecordErrorInfo(QmCtx* ctx, QmErrModNode* errNode, const char* message) {
  if (ctx == nullptr || errNode == nullptr || message == nullptr) return QM_INVALID;
  // Deliberate: the first messages tell the cause, later ones its consequences.
  if (errNode->errorCount == errNode->errorCapacity) return QM_OK;
  const char* curYinFile = QM_CTX_GetCurYinFile(ctx);
  const char* yinFile = curYinFile[0] != '\0' ? curYinFile : nullptr;
  const uint32_t ret =
      QMS_MOD_SetErrInfoNode(&errNode->errs[errNode->errorCount], yinFile, message);
  if (ret == QM_OK) ++errNode->errorCount;
  return ret;
}

uint32_t QMS_MOD_SetErrInfoNode(QmErrInfo* info, const char* yinFile, const char* message) {
  info->yinFile = QM_UTL_StrDup(yinFile);
  info->message = QM_UTL_StrDup(message);
  if (info->message != nullptr && (info->yinFile != nullptr || yinFile == nullptr)) return QM_OK;
  QMS_MOD_ClearErrInfoNode(info);
  return QM_NO_MEMORY;
}

void QMS_MOD_ClearErrInfoNode(QmErrInfo* info) {
  FreeAndNull(&info->yinFile);
  FreeAndNull(&info->message);
}

void QMS_MOD_FreeErrModNode(QmDict* dict, QmErrModNode* errNode) {
  if (errNode == nullptr) return;
  for (uint32_t i = 0; i < errNode->errorCount; ++i) QMS_MOD_ClearErrInfoNode(&errNode->errs[i]);
  g_qmMemFreeFunc(errNode->errs);
  ReleaseText(dict, &errNode->modName);
  g_qmMemFreeFunc(errNode);
}

uint32_t QMS_MOD_ScanModAllLoadFail(QmErrModNode* errNode, QmLoadFailScanFunc cb, void* arg) {
  if (errNode == nullptr || cb == nullptr) return QM_OK;
  for (uint32_t i = 0; i < errNode->errorCount; ++i) {
    const QmErrInfo* info = &errNode->errs[i];
    const uint32_t ret = cb(errNode->modName, info->yinFile, info->message, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
