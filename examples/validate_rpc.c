/* SPDX-License-Identifier: BSD-3-Clause */
/* Loads a module with its imports and validates one request, for example
     validate_rpc "$PWD/models" router-system '<restart xmlns="urn:example:router-system"/>'
   Exit status: 0 valid, 1 not valid, 2 wrong usage, 3 the module cannot be loaded. */
#include <stdio.h>

#include <qmodel/qmodel.h>

static uint32_t PrintLoadError(const char *module, const char *file, const char *message,
                               void *printed) {
  *(int *)printed = 1;
  fprintf(stderr, "%s: %s: %s\n", module, file == NULL ? "no file" : file, message);
  return 0;
}

static int Load(QmCtx *ctx, const char *dir, const char *module) {
  if (QM_CTX_SetSearchDir(ctx, dir) != 0) {
    fprintf(stderr, "%s: not the absolute path of a directory\n", dir);
    return 3;
  }
  if (QM_CTX_LoadModule(ctx, module) == 0) return 0;
  int printed = 0;
  if (QM_CTX_ScanAllSchemaLoadFail(ctx, PrintLoadError, &printed) != 0 || !printed)
    fprintf(stderr, "%s: cannot be loaded\n", module);
  return 3;
}

static int Validate(QmCtx *ctx, char *request) {
  QmErrNode *error = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request, NULL, NULL);
  if (error == NULL) {
    puts("valid");
    return 0;
  }
  /* What is no XML, for example, has a record without a message. */
  const char *path = QM_GetErrorPath(error);
  const char *message = QM_GetErrorMessage(error);
  printf("%s: %s\n", path == NULL ? "/" : path, message == NULL ? "not valid" : message);
  QM_FreeErrNode(error);
  return 1;
}

int main(int argc, char **argv) {
  if (argc != 4) {
    fputs("usage: validate_rpc DIR MODULE REQUEST\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (ctx == NULL) {
    fputs("validate_rpc: out of memory\n", stderr);
    return 3;
  }
  int status = Load(ctx, argv[1], argv[2]);
  if (status == 0) status = Validate(ctx, argv[3]);
  QM_CTX_Delete(ctx);
  return status;
}
