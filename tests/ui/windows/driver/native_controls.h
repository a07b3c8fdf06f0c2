// What native controls hold, asked by messages.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace qlx::driver {

/// Items of which one may be chosen: a drop-down list's or a row of tabs'.
struct Choices {
  int chosen;  ///< -1 for none
  std::vector<std::wstring> items;
};

Choices DropDownItems(HWND list);
/// Chooses as a user does who opens the list and clicks.
void ChooseItem(HWND list, int index);

Choices TabTitles(HWND tabs);
void ShowTab(HWND tabs, int index);

/// A table: the titles of its columns, then its cells row by row.
struct Table {
  int selected;  ///< row, -1 for none
  int columns;
  std::vector<std::wstring> texts;
};

Table TableOf(HWND list);
/// On the screen.
RECT CellPlace(HWND list, int row);

/// What a label or a button needs for its text in its font; of a text in several lines at the control's
/// width.
SIZE RoomForText(HWND control);

struct AccessibleTexts {
  std::wstring name;
  std::wstring description;
};

/// What a screen reader is told of the control.
AccessibleTexts AccessibleTextsOf(HWND control);

}  // namespace qlx::driver
