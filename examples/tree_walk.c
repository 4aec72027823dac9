/* SPDX-License-Identifier: BSD-3-Clause */
/* Prints what a module defines: each node with its kind, its type down to the built-in one,
   ranges, enumerations, keys and defaults.
     tree_walk DIR MODULE
   Exit status: 0 done, 2 wrong usage, 3 the module cannot be loaded. */
#include <inttypes.h>
#include <stdio.h>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

static uint32_t PrintTypedef(const char *module, const char *name, QmtType *type, void *arg) {
  (void)type;
  (void)arg;
  if (name != NULL) printf(" %s:%s", module, name);
  return 0;
}

/* Numbers are signed where the type is. */
static uint32_t PrintRange(uint64_t start, uint64_t end, uint32_t flags, void *first) {
  printf("%s", *(int *)first ? " range " : " | ");
  *(int *)first = 0;
  if ((flags & QMT_SEG_SIGNED) != 0)
    printf("%" PRId64 "..%" PRId64, (int64_t)start, (int64_t)end);
  else
    printf("%" PRIu64 "..%" PRIu64, start, end);
  return 0;
}

static uint32_t PrintEnum(const char *name, int64_t value, const char *description, void *arg) {
  (void)description;
  (void)arg;
  printf(" %s(%" PRId64 ")", name, value);
  return 0;
}

static uint32_t PrintPattern(const char *pattern, uint32_t invert, void *arg) {
  (void)arg;
  printf(" %spattern %s", invert ? "not " : "", pattern);
  return 0;
}

/* The restrictions of one type statement; those of typedefs below it stand with them. */
static uint32_t PrintStatement(const char *module, const char *name, QmtType *type, void *arg) {
  (void)module;
  (void)name;
  (void)arg;
  if (type == NULL) return 0;
  int first = 1;
  uint32_t ret = QM_TYPE_ScanStartEndPair(type, PrintRange, &first);
  if (ret == 0) ret = QM_TYPE_ScanNameValuePair(type, PrintEnum, NULL);
  return ret != 0 ? ret : QM_TYPE_ScanPatternInvertMatch(type, PrintPattern, NULL);
}

static uint32_t PrintType(QmsNode *node) {
  QmtType *type = QM_NODE_GetRealType(node);
  if (type == NULL) return 0;
  const char *base = QM_AGENT_GetBaseTypeName(QM_TYPE_GetBuiltInBaseType(type));
  printf(":%s%s", base == NULL ? "" : " ", base == NULL ? "" : base);
  uint32_t ret = QM_NODE_ScanDerivedType(node, PrintTypedef, NULL);
  /* Over a typedef the leaf's own restrictions come first; without one, the scan of what it
     derives from gives the leaf's own type. */
  if (ret == 0 && base == NULL) ret = PrintStatement(NULL, NULL, type, NULL);
  return ret != 0 ? ret : QM_NODE_ScanDerivedType(node, PrintStatement, NULL);
}

static uint32_t PrintKey(QmsNode *key, uint32_t travType, void *arg) {
  (void)travType;
  (void)arg;
  printf(" %s", QM_NODE_GetNodeName(key));
  return 0;
}

static uint32_t PrintDefault(const char *value, void *arg) {
  (void)arg;
  printf(" = %s", value);
  return 0;
}

static uint32_t PrintNode(QmsNode *node, uint32_t travType, void *depth) {
  if (travType == QMS_TRAV_CHILD) *(int *)depth += 2;
  if (travType == QMS_TRAV_PARENT) *(int *)depth -= 2;
  if (travType == QMS_TRAV_PARENT) return 0;
  const uint32_t kind = QM_NODE_GetNodeType(node);
  const char *name = QM_NODE_GetNodeName(node);
  printf("%*s%s", *(int *)depth, "", QM_AGENT_GetKindName(kind));
  if (kind != QMS_NODE_INPUT && kind != QMS_NODE_OUTPUT) printf(" %s", name);
  uint32_t ret = 0;
  if (QM_NODE_GetNodeKeyNum(node) != 0) {
    printf(" [");
    ret = QM_NODE_ScanKey(node, PrintKey, NULL);
    printf(" ]");
  }
  if (ret == 0) ret = PrintType(node);
  if (ret == 0) ret = QM_NODE_ScanDefault(node, PrintDefault, NULL);
  printf("%s%s\n", QM_NODE_IsMandatory(node) ? " mandatory" : "",
         QM_NODE_IsEnabled(node) ? "" : " (off)");
  return ret;
}

int main(int argc, char **argv) {
  if (argc != 3) {
    fputs("usage: tree_walk DIR MODULE\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (ctx == NULL || QM_CTX_SetSearchDir(ctx, argv[1]) != 0 ||
      QM_CTX_LoadModule(ctx, argv[2]) != 0) {
    fprintf(stderr, "%s cannot be loaded from %s\n", argv[2], argv[1]);
    QM_CTX_Delete(ctx);
    return 3;
  }
  QmsModule *module = QM_CTX_GetModuleByModName(ctx, argv[2]);
  uint32_t ret = 0;
  for (QmsNode *top = QM_MOD_GetNextTopNode(module, NULL); top != NULL && ret == 0;
       top = QM_MOD_GetNextTopNode(module, top)) {
    int depth = 0;
    ret = QM_NODE_TreeScanAllNode(top, PrintNode, &depth);
  }
  QM_CTX_Delete(ctx);
  return ret == 0 ? 0 : 3;
}
