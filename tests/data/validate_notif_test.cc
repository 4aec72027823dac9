// SPDX-License-Identifier: BSD-3-Clause
#include <gtest/gtest.h>

#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Schema;

struct Output {
  std::string text;
  uint32_t calls = 0;
  uint32_t result = 0;
};

uint32_t Take(const char* text, void* arg) {
  auto* out = static_cast<Output*>(arg);
  out->text = text;
  ++out->calls;
  return out->result;
}

class NotifEntry : public testing::Test {
 protected:
  void SetUp() override {
    schema_.Load("m", R"(<notification name="n"><container name="c">
      <leaf name="a"><type name="string"/></leaf>
      <leaf name="w"><when condition="../a = '1'"/><type name="string"/></leaf>
      </container></notification>)");
  }
  uint32_t Validate(const char* text) {
    return QM_CTX_ValidateNotifDataTree(schema_.ctx(), text, Take, &output_);
  }
  Schema schema_;
  Output output_;
};

TEST_F(NotifEntry, TextIsIndentedUtf8) {
  EXPECT_EQ(QM_OK, Validate("<n xmlns='urn:m'><c><a>gr\xC3\xBC\xC3\x9F</a></c></n>"));
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<n xmlns=\"urn:m\">\n"
      "  <c>\n"
      "    <a>gr\xC3\xBC\xC3\x9F</a>\n"
      "  </c>\n"
      "</n>\n",
      output_.text);
}

TEST_F(NotifEntry, OtherEncodingsAreHandedBackAsUtf8) {
  EXPECT_EQ(QM_OK, Validate("<?xml version='1.0' encoding='ISO-8859-1'?>"
                            "<n xmlns='urn:m'><c><a>\xFC</a></c></n>"));
  EXPECT_NE(std::string::npos, output_.text.find("<a>\xC3\xBC</a>"));
}

TEST_F(NotifEntry, RemovedNodesAreMissingInTheText) {
  EXPECT_EQ(QM_OK, Validate("<n xmlns='urn:m'><c><a>2</a><w/></c></n>"));
  EXPECT_EQ(std::string::npos, output_.text.find("<w"));
  EXPECT_EQ(QM_OK, Validate("<n xmlns='urn:m'><c><a>1</a><w/></c></n>"));
  EXPECT_NE(std::string::npos, output_.text.find("<w/>"));
}

TEST_F(NotifEntry, ResultOfTheCallbackIsReturned) {
  output_.result = 4711;
  EXPECT_EQ(4711u, Validate("<n xmlns='urn:m'/>"));
  EXPECT_EQ(1u, output_.calls);
}

TEST_F(NotifEntry, WithoutCallbackAValidNotificationGives0) {
  EXPECT_EQ(QM_OK,
            QM_CTX_ValidateNotifDataTree(schema_.ctx(), "<n xmlns='urn:m'/>", nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_CTX_ValidateNotifDataTree(schema_.ctx(), "<n xmlns='urn:m'><q/></n>",
                                                     nullptr, nullptr));
}

TEST_F(NotifEntry, EveryFailureGives22AndNoCallback) {
  const char* texts[] = {"",
                         "<n",
                         "<n/>",
                         "<n xmlns='urn:x'/>",
                         "<q xmlns='urn:m'/>",
                         "<n xmlns='urn:m'><q/></n>",
                         "<n xmlns='urn:m'><c/><c/></n>",
                         "<!DOCTYPE n><n xmlns='urn:m'/>",
                         "<!DOCTYPE n SYSTEM 'n.dtd'><n xmlns='urn:m'/>",
                         "<!DOCTYPE n [<!ENTITY e 'x'>]><n xmlns='urn:m'/>"};
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    EXPECT_EQ(QM_INVALID, Validate(text));
  }
  EXPECT_EQ(QM_INVALID,
            QM_CTX_ValidateNotifDataTree(nullptr, "<n xmlns='urn:m'/>", Take, &output_));
  EXPECT_EQ(QM_INVALID, QM_CTX_ValidateNotifDataTree(schema_.ctx(), nullptr, Take, &output_));
  EXPECT_EQ(0u, output_.calls);
}

}  // namespace
