#include "pages/unsaved_pages.h"

namespace qlx {

Message UnsavedMessage(const std::vector<std::wstring>& pages) {
  if (pages.empty()) return {Translatable(L"No unsaved changes")};
  std::wstring names;
  for (const std::wstring& page : pages) names += (names.empty() ? L"" : L", ") + page;
  return {Translatable(L"Unsaved changes: %s"), names};
}

}  // namespace qlx
