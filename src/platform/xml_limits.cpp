#include "platform/xml_limits.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

/// The code units of a document as far as they are ASCII, whatever the width of its encoding.
class AsciiUnits {
 public:
  explicit AsciiUnits(std::string_view bytes) : bytes_(bytes) {
    const bool little = bytes.starts_with("\xFF\xFE");
    const bool big = bytes.starts_with("\xFE\xFF");
    width_ = little || big ? 2 : 1;
    low_ = big ? 1 : 0;
  }

  std::size_t size() const { return bytes_.size() / width_; }

  /// 0 where the unit is not ASCII.
  char operator[](std::size_t index) const {
    const std::size_t at = index * width_;
    if (width_ == 2 && bytes_[at + 1 - low_] != 0) return 0;
    return bytes_[at + low_];
  }

 private:
  std::string_view bytes_;
  std::size_t width_ = 1;
  std::size_t low_ = 0;
};

// Where a unit can stand for itself only, so that the count below cannot be misled.
constexpr std::array<std::string_view, 7> kEncodings = {"utf-8",       "utf-16", "us-ascii", "iso-8859-",
                                                        "windows-125", "koi8-",  "ibm"};
constexpr std::size_t kLongestDeclaration = 200;
constexpr std::size_t kLongestMark = 3;  // units that a byte order mark takes

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The encoding that the declaration names, in lower case; empty when it names none.
std::string DeclaredEncoding(const AsciiUnits& units) {
  std::string start;
  for (std::size_t i = 0; i < std::min(units.size(), kLongestDeclaration); ++i) start += Lower(units[i]);
  if (start.find("<?xml") > kLongestMark) return {};
  start = start.substr(0, start.find("?>"));
  const std::size_t key = start.find("encoding");
  const std::size_t open = key == std::string::npos ? key : start.find_first_of("\"'", key);
  if (open == std::string::npos) return {};
  return start.substr(open + 1, start.find(start[open], open + 1) - open - 1);
}

bool EncodingIsRead(const AsciiUnits& units) {
  const std::string encoding = DeclaredEncoding(units);
  return encoding.empty() ||
         std::ranges::any_of(kEncodings, [&](std::string_view known) { return encoding.starts_with(known); });
}

/// A "<" can stand neither in an attribute's value nor in text, so between two of them lies one tag at most.
bool AttributesAreFew(const AsciiUnits& units) {
  int attributes = 0;
  char before = 0;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char unit = units[i];
    if (unit == '<') attributes = 0;
    if ((unit == '"' || unit == '\'') && before == '=' && ++attributes > kXmlAttributeLimit) return false;
    if (!IsBlank(unit)) before = unit;
  }
  return true;
}

}  // namespace

bool WithinXmlLimits(std::string_view bytes) {
  const AsciiUnits units(bytes);
  return EncodingIsRead(units) && AttributesAreFew(units);
}

}  // namespace qlx::platform
