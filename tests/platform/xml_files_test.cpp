// One set of files for the parsers of all platforms: what each takes, and what it makes of it.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text.h"
#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

fs::path Folder(const char* name) {
  return fs::path(QLX_SOURCE_DIR) / "tests" / "platform" / "xml_files" / name;
}

std::vector<std::string> NamesIn(const char* folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(Folder(folder))) {
    if (entry.path().extension() == ".xml") names.push_back(entry.path().stem().string());
  }
  std::ranges::sort(names);
  return names;
}

std::string Bytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// In printable ASCII, between quotation marks.
std::string Shown(const std::wstring& text) {
  std::string shown = "\"";
  for (const char c : ToUtf8(text)) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F && c != '\\') {
      shown += c;
    } else {
      shown += {'\\', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return shown + "\"";
}

/// One line for each element or comment under `node`: name, own text, attributes.
void Dump(const XmlDom& dom, const XmlNode* node, int level, std::string& out) {
  out += std::string(static_cast<std::size_t>(level), ' ') + Shown(dom.Name(node));
  const bool is_comment = dom.Name(node) == L"#comment";
  if (!is_comment) out += " = " + Shown(dom.Text(node));
  if (!is_comment) {
    for (const auto& [name, value] : dom.Attributes(node)) out += ", " + Shown(name) + " = " + Shown(value);
  }
  out += '\n';
  if (is_comment) return;
  for (const XmlNode* child : dom.Children(node)) Dump(dom, child, level + 1, out);
}

/// The document's text without the inside of a document type, which each parser lays out in its own way.
std::string Written(const XmlDom& dom) {
  std::string text = dom.Serialise();
  const std::size_t type = text.find("<!DOCTYPE");
  if (type == std::string::npos) return text;
  const std::size_t end =
      text.find("<MZP", text.find("]>", type) == std::string::npos ? type : text.find("]>", type));
  return text.replace(type, end - type, "<!DOCTYPE>\n");
}

std::string Seen(const XmlDom& dom) {
  std::string seen;
  const auto all = dom.Select(L"//*");
  if (!all.empty()) Dump(dom, all.front(), 0, seen);
  return seen + "---\n" + Written(dom);
}

struct XmlFiles : testing::TestWithParam<std::string> {
  XmlFiles() : dom(CreateXmlDom()) {}
  std::unique_ptr<XmlDom> dom;
};

using GoodXmlFile = XmlFiles;
using DamagedXmlFile = XmlFiles;

TEST_P(GoodXmlFile, GivesTheSameTreeAndTextOnEveryPlatform) {
  ASSERT_TRUE(dom->Parse(Bytes(Folder("good") / (GetParam() + ".xml"))));
  EXPECT_EQ(Seen(*dom), Bytes(Folder("good") / (GetParam() + ".txt")));
}

TEST_P(GoodXmlFile, IsTheSameAfterItWasWritten) {
  ASSERT_TRUE(dom->Parse(Bytes(Folder("good") / (GetParam() + ".xml"))));
  const std::string before = Seen(*dom);
  const std::string written = dom->Serialise();
  EXPECT_TRUE(dom->CanBeParsedAgain(written));
  ASSERT_TRUE(dom->Parse(written)) << written;
  EXPECT_EQ(Seen(*dom), before);
  EXPECT_EQ(dom->Serialise(), written);
}

TEST_P(DamagedXmlFile, IsTakenOnNoPlatformAndLeavesAnEmptyDocument) {
  EXPECT_FALSE(dom->Parse(Bytes(Folder("damaged") / (GetParam() + ".xml"))));
  EXPECT_TRUE(dom->Select(L"//*").empty());
  EXPECT_NE(dom->Append(nullptr, L"MZP"), nullptr);
}

std::string Name(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

INSTANTIATE_TEST_SUITE_P(Set, GoodXmlFile, testing::ValuesIn(NamesIn("good")), Name);
INSTANTIATE_TEST_SUITE_P(Set, DamagedXmlFile, testing::ValuesIn(NamesIn("damaged")), Name);

}  // namespace
}  // namespace qlx::platform
