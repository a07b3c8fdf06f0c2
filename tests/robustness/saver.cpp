// saver FILE [COUNT [FIRST]]: saves FILE COUNT times (without end if none is given or it is below 0), each
// time with the next number from FIRST (0) on in its first and its last value. Prints "saving" before the
// first save and "saved NUMBER" after each one. A save that fails ends it with 1.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "config/ConfigDocument.h"

namespace {

constexpr int kKeysBetween = 300;  // so that the file does not fit one write of a page

void Fill(qlx::ConfigDocument& document) {
  for (int i = 0; i < kKeysBetween; ++i)
    document.SetValue(L"MSR_Configuration", L"Key" + std::to_wstring(i), std::wstring(260, L'x'));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const long count = argc > 2 ? std::atol(argv[2]) : -1;
  const long first = argc > 3 ? std::atol(argv[3]) : 0;
  const std::wstring path = std::filesystem::path(argv[1]).wstring();
  const auto document = qlx::MakeConfigDocument([](const auto&) { std::exit(1); });
  const bool existed = document->Open(path, false);
  if (!existed) document->Open(path, true);
  document->SetValue(L"Ports_Configuration", L"Number", L"0");
  if (!existed) Fill(*document);
  std::puts("saving");
  std::fflush(stdout);
  for (long number = first; count < 0 || number - first < count; ++number) {
    document->SetValue(L"Ports_Configuration", L"Number", std::to_wstring(number));
    document->SetValue(L"Printer_Configuration", L"Number", std::to_wstring(number));
    document->Save();
    std::printf("saved %ld\n", number);
    std::fflush(stdout);
  }
}
