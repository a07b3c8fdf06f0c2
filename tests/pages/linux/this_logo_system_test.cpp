// The store on the system itself: the settings file, the temporary directory.
#include <cstdlib>

#include "pages/LogoStore.h"
#include "tests/pages/LogoTestbed.h"
#include "tests/platform/pictures.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;

class ThisSystemsLogos : public LogoTestbed {
 protected:
  ThisSystemsLogos() {
    Put("quillon.conf", "Directory=" + root_.native() + "\n");
    std::filesystem::create_directory(root_ / "DAT");
    setenv("QUILLON_SETTINGS", (root_ / "quillon.conf").c_str(), 1);
    setenv("TMPDIR", (root_ / "tmp").c_str(), 1);
    Put("picture", test::Gif().Bytes());
  }
  ~ThisSystemsLogos() override {
    unsetenv("QUILLON_SETTINGS");
    unsetenv("TMPDIR");
  }

  /// The store with the picture, cut for the document insert station.
  std::unique_ptr<LogoStore> Store() {
    LogoSystem system = ThisLogoSystem();
    system.log_error = [this](const std::string& line) { log_.push_back(line); };
    auto store = std::make_unique<LogoStore>(std::move(system));
    store->Add(0, (root_ / "picture").wstring(), 3, ThrowEnded);
    return store;
  }
};

TEST_F(ThisSystemsLogos, AreListedInTheDirectoryOfTheSettings) {
  const auto store = Store();
  store->Write(*document_, {}, ThrowEnded);
  EXPECT_THAT(Names("DAT"), ElementsAre("1.bmp"));
  EXPECT_THAT(store->records(),
              ElementsAre(LogoRecord{1, (root_ / "DAT/1.bmp").wstring(), Station::kDocumentInsert}));
}

TEST_F(ThisSystemsLogos, HaveTheirWorkingCopiesInTheTemporaryDirectory) {
  const auto store = Store();
  EXPECT_THAT(Names("tmp/logos"), ElementsAre("picture.bmp"));
  store->DeleteTempImages(ThrowEnded);
}

TEST_F(ThisSystemsLogos, EndTheProgramWhenTheSettingCannotBeUsed) {
  Put("quillon.conf", "Directory=here");
  try {
    Store()->Write(*document_, {}, ThrowEnded);
    FAIL() << "written";
  } catch (const Ended& ended) {
    EXPECT_STREQ(ended.what(), "Error getting DAT directory!\nExiting program.");
  }
}

}  // namespace
}  // namespace qlx
