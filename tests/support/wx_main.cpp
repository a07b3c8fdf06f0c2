// Runs GoogleTest inside the toolkit's event loop; link it instead of gtest_main.
#include <gtest/gtest.h>
#include <wx/app.h>

namespace qlx {

class TestApp : public wxApp {
 public:
  bool OnInit() override { return true; }  // the command line belongs to GoogleTest

  int OnRun() override {
    int result = 1;
    CallAfter([&] {
      result = RUN_ALL_TESTS();
      ExitMainLoop();
    });
    SetExitOnFrameDelete(false);
    MainLoop();
    return result;
  }
};

}  // namespace qlx

wxIMPLEMENT_APP_NO_MAIN(qlx::TestApp);

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return wxEntry(argc, argv);
}
