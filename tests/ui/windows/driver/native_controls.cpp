#include "tests/ui/windows/driver/native_controls.h"

#include <commctrl.h>
#include <oleacc.h>

#include "tests/ui/windows/driver/RemoteBuffer.h"
#include "tests/ui/windows/driver/native_windows.h"

namespace qlx::driver {
namespace {

std::wstring DropDownItem(HWND list, int index) {
  const auto length = static_cast<std::size_t>(Ask(list, CB_GETLBTEXTLEN, static_cast<WPARAM>(index)));
  std::wstring text(length + 1, L'\0');
  Ask(list, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(length);
  return text;
}

void Notify(HWND control, WORD code) {
  const WPARAM what = MAKEWPARAM(GetDlgCtrlID(control), code);
  Ask(GetParent(control), WM_COMMAND, what, reinterpret_cast<LPARAM>(control));
}

std::wstring TabTitle(HWND tabs, int index) {
  RemoteBuffer<TCITEMW> buffer(tabs);
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = buffer.text_address();
  item.cchTextMax = buffer.kTextLength;
  buffer.Write(item);
  Ask(tabs, TCM_GETITEMW, static_cast<WPARAM>(index), buffer.address());
  return buffer.ReadText();
}

std::wstring ColumnTitle(HWND list, int column) {
  RemoteBuffer<LVCOLUMNW> buffer(list);
  LVCOLUMNW item{};
  item.mask = LVCF_TEXT;
  item.pszText = buffer.text_address();
  item.cchTextMax = buffer.kTextLength;
  buffer.Write(item);
  Ask(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column), buffer.address());
  return buffer.ReadText();
}

std::wstring CellText(HWND list, int row, int column) {
  RemoteBuffer<LVITEMW> buffer(list);
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = buffer.text_address();
  item.cchTextMax = buffer.kTextLength;
  buffer.Write(item);
  Ask(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), buffer.address());
  return buffer.ReadText();
}

/// In which the toolkit shows everything: a font of another process cannot be used.
HFONT MessageFont(HWND control) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, GetDpiForWindow(control));
  return CreateFontIndirectW(&metrics.lfMessageFont);
}

std::wstring TakeText(BSTR text) {
  const std::wstring taken = text == nullptr ? L"" : text;
  SysFreeString(text);
  return taken;
}

}  // namespace

Choices DropDownItems(HWND list) {
  Choices choices = {static_cast<int>(Ask(list, CB_GETCURSEL)), {}};
  const int count = static_cast<int>(Ask(list, CB_GETCOUNT));
  for (int index = 0; index < count; ++index) choices.items.push_back(DropDownItem(list, index));
  return choices;
}

void ChooseItem(HWND list, int index) {
  Ask(list, CB_SETCURSEL, static_cast<WPARAM>(index));
  Notify(list, CBN_SELENDOK);
  Notify(list, CBN_SELCHANGE);
}

Choices TabTitles(HWND tabs) {
  Choices choices = {static_cast<int>(Ask(tabs, TCM_GETCURSEL)), {}};
  const int count = static_cast<int>(Ask(tabs, TCM_GETITEMCOUNT));
  for (int index = 0; index < count; ++index) choices.items.push_back(TabTitle(tabs, index));
  return choices;
}

void ShowTab(HWND tabs, int index) {
  Ask(tabs, TCM_SETCURFOCUS, static_cast<WPARAM>(index));
}

Table TableOf(HWND list) {
  const auto header = reinterpret_cast<HWND>(Ask(list, LVM_GETHEADER));
  Table table = {static_cast<int>(Ask(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)),
                 static_cast<int>(Ask(header, HDM_GETITEMCOUNT)),
                 {}};
  const int rows = static_cast<int>(Ask(list, LVM_GETITEMCOUNT));
  for (int column = 0; column < table.columns; ++column) table.texts.push_back(ColumnTitle(list, column));
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < table.columns; ++column) table.texts.push_back(CellText(list, row, column));
  }
  return table;
}

RECT CellPlace(HWND list, int row) {
  RemoteBuffer<RECT> buffer(list);
  buffer.Write({LVIR_LABEL, 0, 0, 0});
  Ask(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), buffer.address());
  RECT place = buffer.Read();
  MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

SIZE RoomForText(HWND control) {
  const HDC screen = GetDC(nullptr);
  const HFONT font = MessageFont(control);
  const HGDIOBJ before = SelectObject(screen, font);
  RECT place{};
  GetClientRect(control, &place);
  const std::wstring text = TextOf(control);
  const UINT lines = ClassOf(control) == L"Static" ? DT_WORDBREAK : DT_SINGLELINE;
  DrawTextW(screen, text.c_str(), -1, &place, DT_CALCRECT | lines);
  SelectObject(screen, before);
  DeleteObject(font);
  ReleaseDC(nullptr, screen);
  return {place.right, place.bottom};
}

AccessibleTexts AccessibleTextsOf(HWND control) {
  IAccessible* accessible = nullptr;
  if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                        reinterpret_cast<void**>(&accessible)))) {
    return {};
  }
  VARIANT self;
  VariantInit(&self);
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  BSTR name = nullptr;
  BSTR description = nullptr;
  accessible->get_accName(self, &name);
  accessible->get_accDescription(self, &description);
  accessible->Release();
  return {TakeText(name), TakeText(description)};
}

}  // namespace qlx::driver
