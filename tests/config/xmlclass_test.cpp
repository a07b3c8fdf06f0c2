#include "config/xmlclass.h"

#include "tests/config/Installation.h"

namespace qlx {
namespace {

class OpenStore : public Installation {
 protected:
  void Open(std::string_view bytes) {
    Write(bytes);
    ASSERT_TRUE(store_.Load(Path().wstring(), false));
  }
  std::vector<std::wstring> Texts(const std::wstring& name, const AttributeMap& filter = {}) {
    std::vector<std::wstring> texts;
    for (const ConfigNode& node : store_.GetNodes(name, filter)) texts.push_back(node.text);
    return texts;
  }
  std::string Saved() {
    EXPECT_TRUE(store_.Save({}));
    return Bytes();
  }

  xmlclass store_{platform::CreateXmlDom, platform::SystemFileStore()};
};

using Wide = std::vector<std::wstring>;

TEST(ElementQuery, AnEmptyFilterYieldsNoBracketsAtAll) {
  EXPECT_EQ(ElementQuery(L"MZP", {}), L"//MZP");
  EXPECT_EQ(ElementQuery(L"MZP//IB_Configuration/Prefix", {}), L"//MZP//IB_Configuration/Prefix");
}

TEST(ElementQuery, AFilterOfOnePairYieldsNoAnd) {
  EXPECT_EQ(ElementQuery(L"Logo", {{L"Slot", L"1"}}), L"//Logo[@Slot=\"1\"]");
}

TEST(ElementQuery, OnlyTheFirstPairCarriesTheAtSign) {
  EXPECT_EQ(ElementQuery(L"Logo", {{L"Station", L"2"}, {L"Slot", L"1"}}),
            L"//Logo[@Slot=\"1\" and Station=\"2\"]");
}

TEST(ElementQuery, AValueWithADoubleQuotationMarkGivesNoQuery) {
  EXPECT_EQ(ElementQuery(L"Logo", {{L"Slot", L"1\" or \"1\"=\"1"}}), L"");
}

TEST(ElementQuery, WhatIsNoNameGivesNoQuery) {
  for (const wchar_t* name :
       {L"", L"*", L"..", L"MZP/..", L"MZP[1]", L"MZP|a", L"a b", L"a:b", L"@a", L"text()", L"/MZP", L"MZP/",
        L"MZP///a", L"1a", L"child::a", L"a\"b", L"$a", L"a\n"}) {
    EXPECT_EQ(ElementQuery(name, {}), L"") << platform::ToUtf8(name);
    EXPECT_EQ(ElementQuery(L"MZP", {{name, L"1"}}), L"") << platform::ToUtf8(name);
  }
}

TEST_F(OpenStore, AFilterOfOnePairSelectsByTheValueOfAnAttribute) {
  Open("<MZP><L Slot='1'>a</L><L Slot='2'>b</L><L>c</L></MZP>");
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"2"}}), (Wide{L"b"}));
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"3"}}), Wide());
  EXPECT_EQ(Texts(L"L"), (Wide{L"a", L"b", L"c"}));
}

TEST_F(OpenStore, TheSecondPairOfAFilterAsksForAChildElement) {
  Open("<MZP><L Slot='1' Station='2'>a</L><L Slot='1'>b<Station>2</Station></L></MZP>");
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"1"}, {L"Station", L"2"}}), (Wide{L"b"}));
}

TEST_F(OpenStore, FilterValuesAreTakenLiterally) {
  Open("<MZP><L Slot='a&apos;]|//*[&apos;'>odd</L><L Slot='&lt;&amp;'>marks</L><L Slot='é'>e</L></MZP>");
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"a']|//*['"}}), (Wide{L"odd"}));
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"<&"}}), (Wide{L"marks"}));
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"\u00e9"}}), (Wide{L"e"}));
  EXPECT_EQ(Texts(L"L", {{L"Slot", L"\" or \"\"=\""}}), Wide());
}

TEST_F(OpenStore, AQueryThatMatchesNothingChangesNothing) {
  Open("<MZP><a>1</a></MZP>");
  const std::string before = Saved();
  store_.SetNode(L"b", {}, L"2", {{L"x", L"y"}});
  store_.SetNode(L"*", {}, L"2", {});
  store_.SetNode(L"", {}, L"2", {});
  store_.RemoveNodes(L"b", {});
  store_.RemoveNodes(L"..", {});
  store_.RemoveNodes(L"a", {{L"x", L"\""}});
  EXPECT_EQ(Saved(), before);
}

TEST_F(OpenStore, NothingHappensBeforeTheFirstLoad) {
  EXPECT_TRUE(store_.Save(Path().wstring()));
  EXPECT_FALSE(store_.AddNode({}, L"MZP", {}, {}));
  EXPECT_TRUE(store_.GetNodes(L"MZP", {}).empty());
  EXPECT_FALSE(store_.has_document());
  EXPECT_TRUE(FileNames().empty());
}

TEST_F(OpenStore, NodesComeWithNameTextAttributesAndChildrenButWithoutComments) {
  Open("<MZP><s p='1' q='2'>t<!-- no --><a>x</a><b/></s></MZP>");
  const auto nodes = store_.GetNodes(L"s", {});
  ASSERT_EQ(nodes.size(), 1U);
  EXPECT_EQ(nodes[0].name, L"s");
  EXPECT_EQ(nodes[0].text, L"t");
  EXPECT_EQ(nodes[0].attributes, (AttributeMap{{L"p", L"1"}, {L"q", L"2"}}));
  ASSERT_EQ(nodes[0].children.size(), 2U);
  EXPECT_EQ(nodes[0].children[0].text, L"x");
  EXPECT_EQ(nodes[0].children[1].name, L"b");
}

TEST_F(OpenStore, AttributesOfANewElementAreWrittenInTheSortedOrderOfTheirNames) {
  Open("<MZP/>");
  EXPECT_TRUE(store_.AddNode(L"MZP", L"d", {}, {{L"VID", L"3"}, {L"Serial_Number", L"2"}, {L"PID", L"1"}}));
  EXPECT_NE(Saved().find(R"(<d PID="1" Serial_Number="2" VID="3"/>)"), std::string::npos);
}

TEST_F(OpenStore, AddNodeNeverLooksForAnExistingElement) {
  Open("<MZP><a>1</a></MZP>");
  EXPECT_TRUE(store_.AddNode(L"MZP", L"a", L"2", {}));
  EXPECT_EQ(Texts(L"a"), (Wide{L"1", L"2"}));
}

TEST_F(OpenStore, AddNodeCreatesTheParentsThatAreMissing) {
  ASSERT_TRUE(store_.Load(Path().wstring(), true));
  EXPECT_TRUE(store_.AddNode(L"MZP//s", L"k", L"v", {}));
  EXPECT_EQ(Saved(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MZP>\n  <s>\n    <k>v</k>\n  </s>\n</MZP>\n");
}

TEST_F(OpenStore, AddNodeTakesTheFirstParentInDocumentOrder) {
  Open("<r><MZP><x/><MZP/></MZP><MZP/></r>");
  EXPECT_TRUE(store_.AddNode(L"MZP", L"k", {}, {}));
  EXPECT_EQ(store_.GetNodes(L"r", {})[0].children[0].children.back().name, L"k");
}

TEST_F(OpenStore, ASecondRootIsRefused) {
  Open("<MZP/>");
  const std::string before = Saved();
  EXPECT_FALSE(store_.AddNode({}, L"MZP", {}, {}));
  EXPECT_FALSE(store_.AddNode(L"Other", L"k", {}, {}));
  EXPECT_FALSE(store_.AddNode(L"Other//s", L"k", {}, {}));
  EXPECT_EQ(Saved(), before);
}

TEST_F(OpenStore, AnElementOrParentThatIsNoNameIsRefused) {
  ASSERT_TRUE(store_.Load(Path().wstring(), true));
  for (const wchar_t* name : {L" ", L"a b", L"a:b", L"<a", L"1", L"a/b", L".."}) {
    EXPECT_FALSE(store_.AddNode({}, name, {}, {})) << name;
    EXPECT_FALSE(store_.AddNode(name, L"k", {}, {})) << name;
  }
  EXPECT_FALSE(store_.AddNode({}, {}, {}, {}));
  EXPECT_TRUE(FileNames().empty());
}

TEST_F(OpenStore, AnAttributeThatIsNoNameIsNotWritten) {
  Open("<MZP/>");
  store_.SetNode(L"MZP", {}, {}, {{L"a b", L"1"}, {L"c", L"2"}, {L"", L"3"}, {L"x='1' y", L"4"}});
  EXPECT_NE(Saved().find("<MZP c=\"2\"/>"), std::string::npos);
}

TEST_F(OpenStore, RemovingTakesEveryMatchAlsoOneInsideAnother) {
  Open("<MZP><a><b/><a><a/></a></a><c><a/></c></MZP>");
  store_.RemoveNodes(L"a", {});
  EXPECT_NE(Saved().find("<MZP>\n  <c/>\n</MZP>"), std::string::npos);
}

TEST_F(OpenStore, SettingATextKeepsCommentsAndChildElements) {
  Open("<MZP><k>old<!-- why -->er<c/></k></MZP>");
  store_.SetNode(L"k", {}, L"new", {});
  EXPECT_NE(Saved().find("<k>new<!-- why --><c/></k>"), std::string::npos);
}

TEST_F(OpenStore, ATextEmptiedBesideACommentStaysEmpty) {
  Open("<MZP><k>old<!-- why --></k></MZP>");
  store_.SetNode(L"k", {}, L"", {});
  Open(Saved());
  EXPECT_EQ(Texts(L"k"), (Wide{L""}));
}

TEST_F(OpenStore, BlanksRoundACommentAreNoValueUnlessTheyWereSet) {
  for (const wchar_t* blanks : {L"  ", L" \r\n\t"}) {
    Open("<MZP><k>\n  <!-- none -->\n</k></MZP>");
    EXPECT_EQ(Texts(L"k"), (Wide{L""}));
    store_.SetNode(L"k", {}, blanks, {});
    for (int i = 0; i < 2; ++i) Open(Saved());
    EXPECT_EQ(Texts(L"k"), (Wide{blanks}));
  }
}

TEST_F(OpenStore, APrefixedAttributeIsReadByItsWholeName) {
  Open("<MZP xmlns:q='urn:q' q:a='1' a='2' xml:lang='en'/>");
  EXPECT_EQ(store_.GetNodes(L"MZP", {})[0].attributes,
            (AttributeMap{{L"a", L"2"}, {L"q:a", L"1"}, {L"xml:lang", L"en"}}));
}

TEST_F(OpenStore, AnEmptyDocumentIsNotWritten) {
  ASSERT_TRUE(store_.Load(Path().wstring(), true));
  EXPECT_FALSE(store_.Save({}));
  EXPECT_TRUE(FileNames().empty());
}

TEST_F(OpenStore, ADocumentThatGrewTooDeepToBeReadAgainIsNotWritten) {
  Open("<MZP/>");
  std::wstring parent = L"MZP";
  for (int depth = 2; depth <= platform::kXmlDepthLimit + 1; ++depth) {
    const std::wstring name = L"d" + std::to_wstring(depth);
    EXPECT_TRUE(store_.AddNode(parent, name, {}, {}));
    parent = name;
  }
  EXPECT_FALSE(store_.Save({}));
  EXPECT_EQ(Bytes(), "<MZP/>");
  EXPECT_EQ(FileNames(), (std::vector<std::string>{"QLXConfig.xml"}));
}

TEST_F(OpenStore, ASystemWithoutAParserIsAnException) {
  xmlclass store([]() -> std::unique_ptr<platform::XmlDom> { return nullptr; }, platform::SystemFileStore());
  try {
    store.Load(Path().wstring(), true);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Unable to create XML parser object");
  }
}

}  // namespace
}  // namespace qlx
