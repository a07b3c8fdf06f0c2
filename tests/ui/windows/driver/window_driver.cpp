// window_driver: starts the program under test and tells a test what its windows hold, or does to them what
// automation does, by control ids and window messages. Commands come line by line on standard input, each is
// answered by one line on standard output; the program ends with the input.
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <io.h>
#include <objbase.h>

#include "platform/text.h"
#include "tests/platform/windows/RegisteredInterface.h"
#include "tests/support/windows/InstalledService.h"
#include "tests/ui/windows/driver/DrivenProcess.h"
#include "tests/ui/windows/driver/line_protocol.h"
#include "tests/ui/windows/driver/native_controls.h"
#include "tests/ui/windows/driver/native_windows.h"

namespace qlx::driver {
namespace {

std::unique_ptr<DrivenProcess> program;
std::map<std::wstring, std::unique_ptr<testing::RegisteredInterface>> interfaces;
std::map<std::wstring, std::unique_ptr<test::InstalledService>> services;

DrivenProcess& Program() {
  if (!program) throw std::runtime_error("the program has not been started");
  return *program;
}

std::wstring Number(long long number) {
  return std::to_wstring(number);
}

std::wstring Number(HWND window) {
  return Number(reinterpret_cast<long long>(window));
}

int Integer(const Fields& arguments, std::size_t index) {
  return std::stoi(arguments.at(index));
}

HWND Window(const Fields& arguments) {
  const auto window = reinterpret_cast<HWND>(std::stoll(arguments.at(1)));
  if (IsWindow(window) == 0) throw std::runtime_error("gone");
  return window;
}

Fields Place(const RECT& place) {
  return {Number(place.left), Number(place.top), Number(place.right - place.left),
          Number(place.bottom - place.top)};
}

Fields PlaceOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return Place(place);
}

void Append(Fields& fields, const Fields& more) {
  fields.insert(fields.end(), more.begin(), more.end());
}

/// PROGRAM DIRECTORY and "elevated" or "ordinary".
Fields Start(const Fields& arguments) {
  const Rights rights = arguments.at(3) == L"elevated" ? Rights::kElevated : Rights::kOrdinary;
  program = std::make_unique<DrivenProcess>(arguments.at(1), arguments.at(2), rights);
  return {};
}

Fields ExitCode(const Fields&) {
  const auto code = Program().ExitCode();
  return code ? Fields{Number(static_cast<int>(*code))} : Fields{};
}

Fields Kill(const Fields&) {
  Program().Kill();
  return {};
}

Fields Threads(const Fields&) {
  return {Number(Program().CountThreads())};
}

/// Handle, class, title and place of each window.
Fields Windows(const Fields&) {
  Fields fields;
  for (const HWND window : TopLevelWindows(Program().id())) {
    Append(fields, {Number(window), ClassOf(window), TextOf(window)});
    Append(fields, PlaceOf(window));
  }
  return fields;
}

/// Handle, id, class, "1" for shown, text and place of each control.
Fields Controls(const Fields& arguments) {
  Fields fields;
  for (const HWND control : Descendants(Window(arguments))) {
    Append(fields, {Number(control), Number(GetDlgCtrlID(control)), ClassOf(control),
                    Number(IsWindowVisible(control)), TextOf(control)});
    Append(fields, PlaceOf(control));
  }
  return fields;
}

/// Handle and "1" for shown, or nothing.
Fields Find(const Fields& arguments) {
  const HWND control = FindControl(Program().id(), Integer(arguments, 1));
  if (control == nullptr) return {};
  return {Number(control), Number(IsWindowVisible(control))};
}

Fields Bounds(const Fields& arguments) {
  return PlaceOf(Window(arguments));
}

Fields Enabled(const Fields& arguments) {
  return {Number(IsUsable(Window(arguments)) ? 1 : 0)};
}

Fields Checked(const Fields& arguments) {
  return {Number(Ask(Window(arguments), BM_GETCHECK))};
}

Fields Focus(const Fields& arguments) {
  GiveFocus(Window(arguments));
  return {};
}

Fields Focused(const Fields&) {
  return {Number(FocusOf(Program().id()))};
}

Fields Foreground(const Fields&) {
  return {Number(GetForegroundWindow())};
}

Fields Text(const Fields& arguments) {
  return {TextOf(Window(arguments))};
}

/// CONTROL and how many characters of its text at most.
Fields TextStart(const Fields& arguments) {
  const auto count = static_cast<std::size_t>(Integer(arguments, 2));
  return {TextStartOf(Window(arguments), count)};
}

Fields TextLength(const Fields& arguments) {
  return {Number(Ask(Window(arguments), WM_GETTEXTLENGTH))};
}

Fields SetText(const Fields& arguments) {
  Ask(Window(arguments), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(arguments.at(2).c_str()));
  return {};
}

/// Where the selection, or the caret, ends.
Fields Caret(const Fields& arguments) {
  return {Number(HIWORD(Ask(Window(arguments), EM_GETSEL)))};
}

Fields Told(const Choices& choices) {
  Fields fields = {Number(choices.chosen)};
  Append(fields, choices.items);
  return fields;
}

Fields Items(const Fields& arguments) {
  return Told(DropDownItems(Window(arguments)));
}

Fields Choose(const Fields& arguments) {
  ChooseItem(Window(arguments), Integer(arguments, 2));
  return {};
}

Fields Tabs(const Fields& arguments) {
  return Told(TabTitles(Window(arguments)));
}

Fields Tab(const Fields& arguments) {
  ShowTab(Window(arguments), Integer(arguments, 2));
  return {};
}

Fields Rows(const Fields& arguments) {
  const Table table = TableOf(Window(arguments));
  Fields fields = {Number(table.selected), Number(table.columns)};
  Append(fields, table.texts);
  return fields;
}

Fields Cell(const Fields& arguments) {
  return Place(CellPlace(Window(arguments), Integer(arguments, 2)));
}

Fields Accessible(const Fields& arguments) {
  const AccessibleTexts texts = AccessibleTextsOf(Window(arguments));
  return {texts.name, texts.description};
}

/// The width and the height that the control needs to show all of its text.
Fields Room(const Fields& arguments) {
  const SIZE room = RoomForText(Window(arguments));
  return {Number(room.cx), Number(room.cy)};
}

/// Registers an interface of the class of the virtual ports.
Fields Plug(const Fields& arguments) {
  interfaces[arguments.at(1)] = std::make_unique<testing::RegisteredInterface>(arguments.at(1));
  return {};
}

Fields Unplug(const Fields& arguments) {
  interfaces.erase(arguments.at(1));
  return {};
}

/// Makes a service, NAME JOURNAL BEHAVIOUR, and starts it.
Fields Install(const Fields& arguments) {
  static const std::map<std::wstring, test::StubBehaviour> kBehaviours = {
      {L"", test::StubBehaviour::kGood},
      {L"refuses-to-stop", test::StubBehaviour::kRefusesToStop},
      {L"hangs-stopping", test::StubBehaviour::kHangsStopping}};
  const std::wstring& name = arguments.at(1);
  services[name] =
      std::make_unique<test::InstalledService>(name, arguments.at(2), kBehaviours.at(arguments.at(3)));
  services[name]->Start();
  return {};
}

Fields LetGo(const Fields& arguments) {
  services.at(arguments.at(1))->LetGo();
  return {};
}

const std::map<std::wstring, std::function<Fields(const Fields&)>> kCommands = {
    {L"start", Start},
    {L"exit-code", ExitCode},
    {L"kill", Kill},
    {L"threads", Threads},
    {L"windows", Windows},
    {L"controls", Controls},
    {L"find", Find},
    {L"bounds", Bounds},
    {L"enabled", Enabled},
    {L"checked", Checked},
    {L"focus", Focus},
    {L"focused", Focused},
    {L"text", Text},
    {L"set-text", SetText},
    {L"caret", Caret},
    {L"items", Items},
    {L"choose", Choose},
    {L"tabs", Tabs},
    {L"tab", Tab},
    {L"rows", Rows},
    {L"cell", Cell},
    {L"text-length", TextLength},
    {L"text-start", TextStart},
    {L"accessible", Accessible},
    {L"foreground", Foreground},
    {L"room", Room},
    {L"plug", Plug},
    {L"unplug", Unplug},
    {L"install", Install},
    {L"let-go", LetGo},
};

Fields Answer(const Fields& command) {
  try {
    Fields answer = {L"ok"};
    Append(answer, kCommands.at(command.front())(command));
    return answer;
  } catch (const std::exception& failure) {
    return {L"error", platform::FromUtf8(failure.what())};
  }
}

void Serve() {
  for (std::string line; std::getline(std::cin, line);) {
    std::cout << FormatLine(Answer(ParseLine(line))) << '\n' << std::flush;
  }
}

}  // namespace
}  // namespace qlx::driver

int main() {
  // Places as they are on the screen, where the mouse of a test goes.
  SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  CoInitialize(nullptr);
  qlx::driver::Serve();
  qlx::driver::program.reset();
  qlx::driver::interfaces.clear();
  qlx::driver::services.clear();
  CoUninitialize();
}
