// A page whose values cannot be put into the document for want of memory.
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "pages/LOGSettings.h"
#include "pages/MSRSettings.h"
#include "platform/text.h"

namespace qlx {
namespace {

/// A document that holds any element asked for and has no memory for a text.
class ExhaustedDom final : public platform::XmlDom {
 public:
  bool Parse(std::string_view) override { return true; }
  std::string Serialise() const override { return "<MZP/>"; }
  bool CanBeParsedAgain(std::string_view) const override { return true; }
  std::vector<platform::XmlNode*> Select(const std::wstring&) const override { return {Any()}; }
  std::wstring Name(const platform::XmlNode*) const override { return L"MZP"; }
  std::wstring Text(const platform::XmlNode*) const override { return {}; }
  void SetText(platform::XmlNode*, const std::wstring&) override { throw std::bad_alloc(); }
  std::map<std::wstring, std::wstring> Attributes(const platform::XmlNode*) const override { return {}; }
  void SetAttribute(platform::XmlNode*, const std::wstring&, const std::wstring&) override {}
  std::vector<platform::XmlNode*> Children(const platform::XmlNode*) const override { return {}; }
  platform::XmlNode* Parent(const platform::XmlNode*) const override { return nullptr; }
  platform::XmlNode* Append(platform::XmlNode*, const std::wstring&) override { return Any(); }
  void Remove(platform::XmlNode*) override {}

 private:
  static platform::XmlNode* Any() {
    static int node = 0;
    return reinterpret_cast<platform::XmlNode*>(&node);
  }
};

class UntouchedFiles final : public platform::FileStore {
 public:
  platform::ReadResult Read(const std::wstring&, std::size_t) const override {
    return {platform::ReadStatus::kRead, "<MZP/>"};
  }
  std::optional<platform::WriteFailure> Replace(const std::wstring&, std::string_view) override {
    ADD_FAILURE() << "the file was written";
    return std::nullopt;
  }
  std::optional<platform::WriteFailure> Copy(const std::wstring&, const std::wstring&) override {
    return std::nullopt;
  }
};

template <typename Settings>
std::string EndOfSaving() {
  Settings settings;
  UntouchedFiles files;
  const auto create = []() -> std::unique_ptr<platform::XmlDom> { return std::make_unique<ExhaustedDom>(); };
  ConfigDocument document(std::make_unique<xmlclass>(create, files),
                          [](const std::wstring&) { ADD_FAILURE(); });
  EXPECT_TRUE(document.Open(L"any", false));
  try {
    settings.Save(document, [](const std::wstring& end) { throw std::runtime_error(platform::ToUtf8(end)); });
  } catch (const std::runtime_error& end) {
    EXPECT_FALSE(document.changed());
    return end.what();
  }
  return "saved";
}

TEST(OutOfMemory, SavingTheLoggingPageEndsTheProgramWithItsSentence) {
  EXPECT_EQ(EndOfSaving<LOGSettings>(), "Error converting LOG Edit settings!\nExiting program.");
}

TEST(OutOfMemory, SavingTheMsrPageEndsTheProgramWithItsSentence) {
  EXPECT_EQ(EndOfSaving<MSRSettings>(), "Error converting MSR settings!\nExiting program.");
}

}  // namespace
}  // namespace qlx
