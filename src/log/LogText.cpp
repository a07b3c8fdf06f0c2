#include "log/LogText.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace qlx {

LogText::LogText(const char* format, std::va_list arguments) {
  text_.front() = '\0';
  text_.back() = '\0';
  std::vsnprintf(text_.data(), text_.size(), format, arguments);
  length_ = std::strlen(text_.data());
}

void LogText::Append(std::string_view more) {
  const std::size_t fits = std::min(more.size(), kLimit - length_);
  std::copy_n(more.begin(), fits, text_.begin() + static_cast<std::ptrdiff_t>(length_));
  length_ += fits;
}

}  // namespace qlx
