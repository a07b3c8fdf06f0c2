#include "ports/port_discovery.h"

#include <algorithm>
#include <cwctype>

namespace qlx {
namespace {

constexpr std::wstring_view kMark = L"\\MZP_COM";
constexpr std::size_t kShortestName = 9;   // the mark and one character
constexpr std::size_t kBeforeTheName = 5;  // "\MZP_"

}  // namespace

std::wstring PortName(std::wstring_view path) {
  std::wstring upper(path);
  std::ranges::transform(upper, upper.begin(), [](wchar_t c) {
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
  });
  const std::size_t mark = upper.find(kMark);
  if (mark == std::wstring::npos || upper.size() - mark < kShortestName) return {};
  return upper.substr(mark + kBeforeTheName);
}

std::vector<std::wstring> DiscoverPorts(const platform::DeviceInterfaces& interfaces) {
  std::vector<std::wstring> names;
  for (const std::wstring& path : interfaces.PresentPaths()) names.push_back(PortName(path));
  return names;
}

}  // namespace qlx
