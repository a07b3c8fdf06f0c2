// press_button NUMBER: presses the button of this control id in the first window to have one that can be
// pressed.
#include <chrono>
#include <iostream>
#include <string>
#include <thread>

#include <windows.h>

namespace {

constexpr std::chrono::seconds kLimit(30);

struct Search {
  int number;
  HWND button;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  const HWND button = GetDlgItem(window, search.number);
  if (button != nullptr && IsWindowVisible(button) != 0 && IsWindowEnabled(button) != 0 &&
      IsWindowEnabled(window) != 0) {
    search.button = button;
  }
  return search.button == nullptr;
}

}  // namespace

int main(int, char** arguments) {
  Search search{std::stoi(arguments[1]), nullptr};
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (search.button == nullptr) {
    if (std::chrono::steady_clock::now() > end) {
      std::cerr << "press_button: there is no button " << search.number << '\n';
      return 1;
    }
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  // Posted: the press may open a window that has to be answered first.
  PostMessageW(search.button, BM_CLICK, 0, 0);
}
