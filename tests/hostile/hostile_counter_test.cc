// SPDX-License-Identifier: BSD-3-Clause
// Items are counted with 16 bits. However more of them come together - in one file,
// in parts of a split module, by a deviation, by an augment - no counter wraps.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "tests/hostile/hostile_text.h"
#include "tests/support/listing.h"
#include "tests/support/temp_folder.h"
#include "tests/support/yin_text.h"

namespace {

// One kind of item that is counted with 16 bits: 65535 of them load, one more fails.
struct CountedKind {
  const char* name;
  std::string (*body)(size_t count);
};

std::string Deviate(const std::string& content) {
  return "<deviation target-node='/x:y'><deviate value='add'>" + content + "</deviate></deviation>";
}

const CountedKind kCountedKinds[] = {
    {"typedef",
     [](size_t n) { return Numbered("<typedef name='t", "'><type name='int8'/></typedef>", n); }},
    {"feature", [](size_t n) { return Numbered("<feature name='f", "'/>", n); }},
    {"identity", [](size_t n) { return Numbered("<identity name='i", "'/>", n); }},
    {"extension", [](size_t n) { return Numbered("<extension name='e", "'/>", n); }},
    {"deviation", [](size_t n) { return Numbered("<deviation target-node='/x:y", "'/>", n); }},
    {"module-level extension instance",
     [](size_t n) { return Repeat("<m:e xmlns:m='urn:m'/>", n); }},
    {"must",
     [](size_t n) {
       return "<container name='c'>" + Repeat("<must condition='a'/>", n) + "</container>";
     }},
    {"if-feature of a node",
     [](size_t n) {
       return "<container name='c'>" + Repeat("<if-feature name='a'/>", n) + "</container>";
     }},
    {"extension instance of a node",
     [](size_t n) {
       return "<container name='c'>" + Repeat("<m:e xmlns:m='urn:m'/>", n) + "</container>";
     }},
    {"child of an extension instance",
     [](size_t n) { return "<m:e xmlns:m='urn:m'>" + Repeat("<m:e/>", n) + "</m:e>"; }},
    {"default of a leaf-list",
     [](size_t n) {
       return "<leaf-list name='l'><type name='string'/>" + Repeat("<default value='d'/>", n) +
              "</leaf-list>";
     }},
    {"base",
     [](size_t n) {
       return "<identity name='i'>" + Repeat("<base name='b'/>", n) + "</identity>";
     }},
    {"enum",
     [](size_t n) {
       return "<leaf name='l'><type name='enumeration'>" + Numbered("<enum name='e", "'/>", n) +
              "</type></leaf>";
     }},
    {"bit",
     [](size_t n) {
       return "<leaf name='l'><type name='bits'>" + Numbered("<bit name='b", "'/>", n) +
              "</type></leaf>";
     }},
    {"pattern",
     [](size_t n) {
       return "<leaf name='l'><type name='string'>" + Repeat("<pattern value='a'/>", n) +
              "</type></leaf>";
     }},
    {"union member",
     [](size_t n) {
       return "<leaf name='l'><type name='union'>" + Repeat("<type name='int8'/>", n) +
              "</type></leaf>";
     }},
    {"base of an identityref",
     [](size_t n) {
       return "<leaf name='l'><type name='identityref'>" + Repeat("<base name='b'/>", n) +
              "</type></leaf>";
     }},
    {"if-feature of a feature",
     [](size_t n) {
       return "<feature name='f'>" + Repeat("<if-feature name='a'/>", n) + "</feature>";
     }},
    {"if-feature of an identity",
     [](size_t n) {
       return "<identity name='i'>" + Repeat("<if-feature name='a'/>", n) + "</identity>";
     }},
    {"must of a deviate", [](size_t n) { return Deviate(Repeat("<must condition='a'/>", n)); }},
    {"default of a deviate", [](size_t n) { return Deviate(Repeat("<default value='d'/>", n)); }},
    {"extension instance of a deviate",
     [](size_t n) { return Deviate(Repeat("<m:e xmlns:m='urn:m'/>", n)); }},
    {"deviate",
     [](size_t n) {
       return "<deviation target-node='/x:y'>" + Repeat("<deviate value='add'/>", n) +
              "</deviation>";
     }},
};

// The module that deviations name; it is never loaded, so they stay pending.
const char kImport[] = "<import module='x'><prefix value='x'/></import>";

TEST(HostileCounter, OneItemTooManyIsRefused) {
  for (const CountedKind& kind : kCountedKinds) {
    SCOPED_TRACE(kind.name);
    EXPECT_EQ(QM_OK, LoadBesideOther(ModuleText(kImport + kind.body(65535))));
    EXPECT_NE(QM_OK, LoadBesideOther(ModuleText(kImport + kind.body(65536))));
  }
}

// Loads the texts one after another; gives what was recorded as failed.
std::string ErrorsOfLoading(const std::vector<std::string>& texts) {
  QmCtx* ctx = QM_CTX_Create(0);
  for (const std::string& text : texts) static_cast<void>(QM_CTX_LoadMemory(ctx, text.c_str()));
  const std::string errors = LoadErrorLines(ctx);
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "m"));
  QM_CTX_Delete(ctx);
  return errors;
}

std::string DeviatingModule(const std::string& added) {
  return yin_text::Module("d",
                          "<import module='m'><prefix value='m'/></import>"
                          "<deviation target-node='/m:n'><deviate value='add'>" +
                              added + "</deviate></deviation>");
}

TEST(HostileCounter, DeviationsDoNotOverfillANode) {
  struct Row {
    const char* own;
    const char* added;
    const char* message;
    std::string (*node)(const std::string& items);
  };
  const auto container = [](const std::string& items) {
    return "<container name='n'>" + items + "</container>";
  };
  const auto leafList = [](const std::string& items) {
    return "<leaf-list name='n'><type name='string'/>" + items + "</leaf-list>";
  };
  const Row rows[] = {
      {"<must condition='a'/>", "<must condition='b'/>", "Failed to add must statements",
       container},
      {"<m:e xmlns:m='urn:m' x='a'/>", "<m:e xmlns:m='urn:m' x='b'/>",
       "Failed to deviate-add extension-instance", container},
      {"<default value='a'/>", "<default value='b'/>", "Failed to add default statements",
       leafList},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.own);
    const std::string room = ModuleText(row.node(Repeat(row.own, 65534)));
    const std::string full = ModuleText(row.node(Repeat(row.own, 65535)));
    EXPECT_EQ("", ErrorsOfLoading({room, DeviatingModule(row.added)}));
    const std::string errors = ErrorsOfLoading({full, DeviatingModule(row.added)});
    EXPECT_NE(std::string::npos, errors.find(row.message)) << errors.substr(0, 500);
  }
}

TEST(HostileCounter, AugmentsDoNotOverfillTheirChildren) {
  const auto module = [](size_t ownFeatures) {
    return ModuleText(
        "<feature name='f'/><feature name='g'/><container name='c'/>"
        "<augment target-node='/m:c'><if-feature name='g'/><container name='n'>" +
        Repeat("<if-feature name='f'/>", ownFeatures) + "</container></augment>");
  };
  EXPECT_EQ("", ErrorsOfLoading({module(65534)}));
  EXPECT_NE("", ErrorsOfLoading({module(65535)}));
}

// The split module m in two files, of which the second is listed first.
class SplitModule {
 public:
  SplitModule(const std::string& first, const std::string& second) {
    folder_.Write("m@@a.yin", first);
    folder_.Write("m@@b.yin", second);
    listing::DrawWithFirst(folder_.Dir(), "m@@b.yin");
  }

  std::string ErrorsOfLoading() const {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder_.Dir()));
    static_cast<void>(QM_CTX_LoadModule(ctx, "m"));
    const std::string errors = LoadErrorLines(ctx);
    QM_CTX_Delete(ctx);
    return errors;
  }

 private:
  temp_folder::Folder folder_;
};

TEST(HostileCounter, PartsOfASplitModuleDoNotOverfillItTogether) {
  struct Row {
    const char* name;
    std::string (*items)(const std::string& part, size_t count);
  };
  const Row rows[] = {
      {"feature", [](const std::string& part,
                     size_t n) { return Numbered("<feature name='" + part, "'/>", n); }},
      {"identity", [](const std::string& part,
                      size_t n) { return Numbered("<identity name='" + part, "'/>", n); }},
      {"extension", [](const std::string& part,
                       size_t n) { return Numbered("<extension name='" + part, "'/>", n); }},
      {"typedef",
       [](const std::string& part, size_t n) {
         return Numbered("<typedef name='" + part, "'><type name='int8'/></typedef>", n);
       }},
      {"extension instance",
       [](const std::string& part, size_t n) {
         return Numbered("<m:e xmlns:m='urn:m' a='" + part, "'/>", n);
       }},
      {"deviation",
       [](const std::string& part, size_t n) {
         return kImport + Numbered("<deviation target-node='/x:" + part, "'/>", n);
       }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    // One import is shared by the two parts that have deviations.
    EXPECT_EQ("", SplitModule(ModuleText(row.items("a", 300)), ModuleText(row.items("b", 300)))
                      .ErrorsOfLoading());
    // What a later part adds comes one by one, and each copies all before it: the large
    // part has to be the first.
    EXPECT_NE("", SplitModule(ModuleText(row.items("a", 1)), ModuleText(row.items("b", 65535)))
                      .ErrorsOfLoading());
  }
}

}  // namespace
