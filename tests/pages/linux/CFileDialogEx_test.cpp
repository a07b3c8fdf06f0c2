#include "pages/CFileDialogEx.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/choice.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include "pages/logo_image.h"
#include "pages/logo_station.h"

namespace qlx {
namespace {

using testing::Contains;

/// The system's own dialog, open on a folder of pictures; what a test does in it are steps, each repeated
/// until it says that it is done.
class CFileDialogExTest : public testing::Test {
 protected:
  using Step = std::function<bool()>;

  CFileDialogExTest() {
    std::string name = (std::filesystem::temp_directory_path() / "qlx-dialog-XXXXXX").native();
    root_ = mkdtemp(name.data());
    std::ofstream(root_ / "text.bmp") << "no picture";
    const auto bitmap = platform::EncodeBmp(NewImage({3, 2}));
    std::ofstream(root_ / "picture.bmp", std::ios::binary)
        .write(reinterpret_cast<const char*>(bitmap.data()), static_cast<std::streamsize>(bitmap.size()));
  }
  ~CFileDialogExTest() override { std::filesystem::remove_all(root_); }

  /// Opens the dialog, does the steps and returns what it ends with; wxID_NONE when that takes 30 seconds.
  int Run(const std::vector<Step>& steps) {
    constexpr int kTurnMs = 10;
    constexpr int kMostTurns = 3000;
    std::size_t next = 0;
    int turns = 0;
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
      if (++turns > kMostTurns) return dialog_.EndModal(wxID_NONE);
      if (next < steps.size() && steps[next]()) ++next;
    });
    timer.Start(kTurnMs);
    return dialog_.ShowModal();
  }

  Step Choose(const char* name) {
    return [this, name] {
      dialog_.SetPath((root_ / name).native());
      return true;
    };
  }
  Step Chosen(const char* name) {
    return [this, name] { return dialog_.GetCurrentlySelectedFilename() == (root_ / name).native(); };
  }
  Step Published() {
    return [this] { return dialog_.FindWindow(CFileDialogEx::kEncodeList) != nullptr; };
  }
  Step Do(const std::function<void()>& action) {
    return [action] {
      action();
      return true;
    };
  }
  Step End(int button) {
    return Do([this, button] {
      wxCommandEvent click(wxEVT_BUTTON, button);
      dialog_.GetEventHandler()->ProcessEvent(click);
    });
  }
  wxChoice& List() const { return *static_cast<wxChoice*>(dialog_.FindWindow(CFileDialogEx::kEncodeList)); }

  std::filesystem::path root_;
  CFileDialogEx dialog_{nullptr};
};

TEST_F(CFileDialogExTest, AsksForAPictureFileThatExists) {
  EXPECT_EQ(dialog_.GetWildcard(), "Image Files (*.bmp; *.jpg; *.gif)|*.bmp;*.jpg;*.gif");
  EXPECT_TRUE(dialog_.HasFlag(wxFD_FILE_MUST_EXIST));
  EXPECT_TRUE(dialog_.HasFlag(wxFD_OPEN));
}

TEST_F(CFileDialogExTest, OffersTheFourChoicesWithTheFirstSelectedAndDisabled) {
  std::vector<std::wstring> texts;
  int selection = -1;
  bool enabled = true;
  wxString label;
  const auto look = Do([&] {
    for (const wxString& text : List().GetStrings()) texts.push_back(text.ToStdWstring());
    selection = List().GetSelection();
    enabled = List().IsEnabled();
    label = dialog_.FindWindow(CFileDialogEx::kEncodeLabel)->GetLabel();
  });
  EXPECT_EQ(Run({Published(), look, End(wxID_CANCEL)}), wxID_CANCEL);
  EXPECT_EQ(texts.size(), kEncodeChoices.size());
  for (const EncodeChoice& choice : kEncodeChoices) EXPECT_THAT(texts, Contains(std::wstring(choice.text)));
  EXPECT_EQ(selection, 0);
  EXPECT_FALSE(enabled);
  EXPECT_EQ(label, "Encode:");
}

TEST_F(CFileDialogExTest, EnablesTheListForAPicture) {
  const Step enabled = [this] { return List().IsEnabled(); };
  EXPECT_EQ(Run({Published(), Choose("picture.bmp"), Chosen("picture.bmp"), enabled, End(wxID_CANCEL)}),
            wxID_CANCEL);
}

TEST_F(CFileDialogExTest, DisablesTheListAgainForAFileThatIsNone) {
  const Step enabled = [this] { return List().IsEnabled(); };
  const Step disabled = [this] { return !List().IsEnabled(); };
  EXPECT_EQ(Run({Published(), Choose("picture.bmp"), enabled, Choose("text.bmp"), Chosen("text.bmp"),
                 disabled, End(wxID_CANCEL)}),
            wxID_CANCEL);
}

TEST_F(CFileDialogExTest, GivesTheFileAndTheChoiceWhenItCloses) {
  const Step enabled = [this] { return List().IsEnabled(); };
  const Step choose = Do([this] { List().SetSelection(3); });
  EXPECT_EQ(Run({Published(), Choose("picture.bmp"), enabled, choose, End(wxID_OK)}), wxID_OK);
  EXPECT_EQ(dialog_.path(), (root_ / "picture.bmp").wstring());
  EXPECT_EQ(dialog_.encode_choice(), 3);
}

TEST_F(CFileDialogExTest, GivesTheFirstChoiceWhenNoneWasMade) {
  EXPECT_EQ(Run({Published(), Choose("text.bmp"), Chosen("text.bmp"), End(wxID_OK)}), wxID_OK);
  EXPECT_EQ(dialog_.path(), (root_ / "text.bmp").wstring());
  EXPECT_EQ(dialog_.encode_choice(), 0);
}

}  // namespace
}  // namespace qlx
