/* SPDX-License-Identifier: BSD-3-Clause */
/* Loads a module with its imports and validates one request:
   validate_rpc DIR MODULE REQUEST, for example
   validate_rpc "$PWD/models" router-system '<restart xmlns="urn:example:router-system"/>' */
#include <stdio.h>

#include <qmodel/qmodel.h>

int main(int argc, char **argv) {
  if (argc != 4) return 2;
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (QM_CTX_SetSearchDir(ctx, argv[1]) != 0 || QM_CTX_LoadModule(ctx, argv[2]) != 0) {
    QM_CTX_Delete(ctx);
    return 3;
  }
  QmErrNode *error = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, argv[3], NULL, NULL);
  if (error == NULL) {
    puts("valid");
  } else {
    const char *message = QM_GetErrorMessage(error);
    printf("%s: %s\n", QM_GetErrorPath(error), message == NULL ? "not valid" : message);
  }
  const int status = error == NULL ? 0 : 1;
  QM_FreeErrNode(error);
  QM_CTX_Delete(ctx);
  return status;
}
