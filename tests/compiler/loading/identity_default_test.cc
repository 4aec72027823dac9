// SPDX-License-Identifier: BSD-3-Clause
// Requests that the library completes with defaults of identityref: valid again, as they
// are printed, wherever the default and the identity come from.
#include <libxml/parser.h>

#include <memory>

#include "tests/compiler/loading/loading_helper.h"

namespace compiler {
namespace {

class IdentityDefaults : public Loading {
 protected:
  void SetUp() override {
    Write("types.yang",
          "module types { yang-version 1.1; namespace urn:types; prefix t;\n"
          "  identity base; identity sub { base base; } identity other { base base; }\n"
          "  typedef d { type identityref { base base; } default sub; }\n"
          "  typedef u { default t:other; type d; } typedef v { type u; }\n"
          "  grouping g { leaf a { type d; } leaf b { type u; } leaf c { type v; }\n"
          "    leaf d { type u; default sub; } leaf e { type identityref { base base; }\n"
          "      default t:sub; } }\n"
          "  rpc own { input { uses g; } } }");
  }

  // The request, completed and printed; what is wrong with it in its place.
  std::string Completed(const std::string& request) const {
    const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document(
        xmlReadMemory(request.c_str(), static_cast<int>(request.size()), "r", nullptr, 0),
        xmlFreeDoc);
    QmErrNode* error = QM_CTX_ValidateRpcDataTree(
        ctx_, QM_INPUT_ELEMENT, xmlDocGetRootElement(document.get()), nullptr, nullptr);
    if (error != nullptr) {
      std::string message = QM_GetErrorMessage(error);
      QM_FreeErrNode(error);
      return message;
    }
    xmlChar* text = nullptr;
    xmlDocDumpMemory(document.get(), &text, nullptr);
    std::string completed = reinterpret_cast<const char*>(text);
    xmlFree(text);
    return completed.substr(completed.find('\n') + 1);
  }
};

TEST_F(IdentityDefaults, MakeRequestsThatAreValidAgain) {
  Module11("m",
           "import types { prefix x; } identity mine { base x:base; }\n"
           "typedef w { type x:u; default mine; }\n"
           "rpc r { input { uses x:g; leaf f { type x:u; default x:sub; }\n"
           "  leaf g { type x:u; default mine; } leaf h { type w; } } }");
  Load({"m", "types"});
  EXPECT_EQ("", Errors());
  const std::string own = " xmlns:types=\"urn:types\">types:";
  const std::string common = "<a" + own + "sub</a><b" + own + "other</b><c" + own + "other</c>";
  const std::string completed = Completed("<r xmlns=\"urn:m\"/>");
  EXPECT_EQ("<r xmlns=\"urn:m\">" + common + "<d" + own + "sub</d><e" + own + "sub</e><f" + own +
                "sub</f><g>mine</g><h xmlns:m=\"urn:m\">m:mine</h></r>\n",
            completed);
  EXPECT_EQ(completed, Completed(completed));
  const std::string other = Completed("<own xmlns=\"urn:types\"/>");
  EXPECT_EQ("<own xmlns=\"urn:types\">" + common + "<d>sub</d><e" + own + "sub</e></own>\n", other);
  EXPECT_EQ(other, Completed(other));
}

// The identity of the deviating module, of the target's and of a third one.
TEST_F(IdentityDefaults, OfDeviationsMakeRequestsThatAreValidAgain) {
  Module11("q",
           "import types { prefix t; } identity near { base t:base; }\n"
           "rpc r { input { uses t:g; leaf f { type t:u; default near; } } }");
  Write("dev.yang",
        "module dev { yang-version 1.1; namespace urn:dev; prefix p; import q { prefix q; }\n"
        "  import types { prefix q2; } identity far { base q2:base; }\n"
        "  deviation /q:r/q:input/q:a { deviate add { default far; } }\n"
        "  deviation /q:r/q:input/q:b { deviate add { default q:near; } }\n"
        "  deviation /q:r/q:input/q:c { deviate add { default q2:sub; } }\n"
        "  deviation /q:r/q:input/q:d { deviate replace { default p:far; } }\n"
        "  deviation /q:r/q:input/q:e { deviate replace { default far; } }\n"
        "  deviation /q:r/q:input/q:f { deviate delete { default q:near; } } }");
  Load({"dev", "q", "types"});
  EXPECT_EQ("", Errors());
  const std::string far = " xmlns:dev=\"urn:dev\">dev:far</";
  const std::string types = " xmlns:types=\"urn:types\">types:";
  const std::string completed = Completed("<r xmlns=\"urn:q\"/>");
  EXPECT_EQ("<r xmlns=\"urn:q\"><a" + far + "a><b xmlns:q=\"urn:q\">q:near</b><c" + types +
                "sub</c><d" + far + "d><e" + far + "e><f" + types + "other</f></r>\n",
            completed);
  EXPECT_EQ(completed, Completed(completed));
}

}  // namespace
}  // namespace compiler
