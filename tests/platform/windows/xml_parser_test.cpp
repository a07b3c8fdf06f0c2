// Run on a Windows without MSXML 3.
#include <gtest/gtest.h>

#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

TEST(AbsentXmlParser, IsNoDocument) {
  EXPECT_EQ(CreateXmlDom(), nullptr);
}

}  // namespace
}  // namespace qlx::platform
