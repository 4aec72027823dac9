# SPDX-License-Identifier: BSD-3-Clause
# Writes OUTPUT, a source with a hash of all sources in FOLDER.
file(GLOB_RECURSE files ${FOLDER}/*.cc ${FOLDER}/*.h)
list(SORT files)
set(hashes "")
foreach(file ${files})
  file(SHA256 ${file} hash)
  string(APPEND hashes "${hash}\n")
endforeach()
string(SHA256 hash "${hashes}")
file(WRITE ${OUTPUT} "#include \"compiler/fingerprint.h\"\n\n"
  "const char* compiler::Fingerprint() noexcept {\n  return \"${hash}\";\n}\n")
