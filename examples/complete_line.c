/* SPDX-License-Identifier: BSD-3-Clause */
/* What a command line offers behind a path that is begun: names of nodes, or values.
     complete_line DIR MODULE PATH
   A PATH ends with "/" and the beginning of a name, or, behind a leaf, with "=" and the
   beginning of a value. Exit status: 0 done, 2 wrong usage, 3 nothing can be offered. */
#include <stdio.h>
#include <string.h>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

/* What is offered begins with `begun`. */
typedef struct Offer {
  const char *begun;
  const QmsModule *module; /* of the path so far; nodes of others are named with theirs */
} Offer;

static int Begins(const char *text, const char *begun) {
  return strncmp(text, begun, strlen(begun)) == 0;
}

static uint32_t OfferName(const char *name, int64_t value, const char *description, void *arg) {
  (void)value;
  (void)description;
  if (Begins(name, ((const Offer *)arg)->begun)) puts(name);
  return 0;
}

static uint32_t OfferIdentity(QmsModule *module, QmsIdentity *identity, void *arg) {
  char name[160];
  snprintf(name, sizeof(name), "%s:%s", QM_MOD_GetModuleName(module),
           QM_MOD_GetIdentityName(identity));
  if (Begins(name, ((const Offer *)arg)->begun)) puts(name);
  return 0;
}

static void OfferBelow(QmsNode *node, Offer *offer);

static void OfferNode(QmsNode *node, Offer *offer) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  if (!QM_NODE_IsEnabled(node) || kind == QMS_NODE_OUTPUT) return;
  if (kind == QMS_NODE_CHOICE || kind == QMS_NODE_CASE || kind == QMS_NODE_INPUT) {
    OfferBelow(node, offer);
    return;
  }
  const QmsModule *module = QM_NODE_GetModule(node);
  char name[160];
  if (module == offer->module)
    snprintf(name, sizeof(name), "%s", QM_NODE_GetNodeName(node));
  else
    snprintf(name, sizeof(name), "%s:%s", QM_MOD_GetModuleName(module), QM_NODE_GetNodeName(node));
  if (Begins(name, offer->begun)) printf("%s%s\n", name, QM_NODE_GetRealType(node) ? "=" : "/");
}

static void OfferBelow(QmsNode *node, Offer *offer) {
  for (QmsNode *child = QM_NODE_GetNextChild(node, NULL); child != NULL;
       child = QM_NODE_GetNextChild(node, child))
    OfferNode(child, offer);
}

/* Enumerations, bits and booleans of a type and of the typedefs that it derives from. */
static uint32_t OfferValues(const char *module, const char *name, QmtType *type, void *arg) {
  (void)module;
  (void)name;
  if (type == NULL) return 0; /* a typedef that is not loaded */
  if (QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_BOOLEAN) {
    OfferName("false", 0, NULL, arg);
    OfferName("true", 1, NULL, arg);
  }
  return QM_TYPE_ScanNameValuePair(type, OfferName, arg);
}

typedef struct Bases {
  QmCtx *ctx;
  Offer *offer;
} Bases;

static uint32_t OfferDerived(const char *module, const char *name, void *arg) {
  const Bases *bases = arg;
  QmsModule *defines = QM_CTX_GetModuleByModName(bases->ctx, module);
  QmsIdentity *base = QM_MOD_FindIdentity(defines, name);
  if (base == NULL) return 0;
  return QM_MOD_ScanDerivedIdentity(defines, base, OfferIdentity, bases->offer);
}

static int OfferLine(QmCtx *ctx, QmsModule *module, char *path) {
  Offer offer = {"", module};
  char *equals = strchr(path, '=');
  char *slash = strrchr(path, '/');
  if (equals != NULL) {
    *equals = '\0';
    offer.begun = equals + 1;
    QmsNode *leaf = QM_CTX_FindDataNode(ctx, path);
    QmtType *type = QM_NODE_GetRealType(leaf);
    if (type == NULL) return 3;
    Bases bases = {ctx, &offer};
    uint32_t ret = QM_NODE_ScanDerivedType(leaf, OfferValues, &offer);
    if (ret == 0) ret = QM_TYPE_ScanIdentRefBase(type, OfferDerived, &bases);
    return ret == 0 ? 0 : 3;
  }
  if (slash == NULL) return 3;
  offer.begun = slash + 1;
  *slash = '\0';
  if (slash == path) {
    offer.module = NULL; /* a path begins with a module's name */
    for (QmsNode *top = QM_MOD_GetNextTopNode(module, NULL); top != NULL;
         top = QM_MOD_GetNextTopNode(module, top))
      OfferNode(top, &offer);
    return 0;
  }
  QmsNode *node = QM_CTX_FindDataNode(ctx, path);
  if (node == NULL) return 3;
  offer.module = QM_NODE_GetModule(node);
  OfferBelow(node, &offer);
  return 0;
}

int main(int argc, char **argv) {
  if (argc != 4) {
    fputs("usage: complete_line DIR MODULE PATH\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  int status = 3;
  if (ctx != NULL && QM_CTX_SetSearchDir(ctx, argv[1]) == 0 && QM_CTX_LoadModule(ctx, argv[2]) == 0)
    status = OfferLine(ctx, QM_CTX_GetModuleByModName(ctx, argv[2]), argv[3]);
  QM_CTX_Delete(ctx);
  return status;
}
