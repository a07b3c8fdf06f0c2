// The iButton page without its window.
#pragma once

#include <string>
#include <string_view>

#include "pages/PageSettings.h"

namespace qlx {

/// Section IB_Configuration. Start and length of the reported identifier count from one in the file, the
/// delimiter from zero: wanted, the services read them so.
class IBSettings : public PageSettings {
 public:
  static constexpr int kPrefix = 1040;
  static constexpr int kSuffix = 1041;
  static constexpr int kOnRemove = 1042;
  static constexpr int kDelimiter = 1043;
  static constexpr int kStart = 1044;
  static constexpr int kLength = 1045;

  IBSettings();

  /// The first of the three byte strings that is not valid hexadecimal.
  std::optional<Refusal> FindRefusal() const override;
};

/// Most UTF-16 code units that the converter takes.
inline constexpr std::size_t kConverterLength = 16;

/// The UTF-16 codes of `text` in upper-case hexadecimal with blanks between them. A code has as many digits
/// as it needs: one below 16, more than two above 255; wanted, and not laid out in pairs.
std::wstring AsciiToHex(std::wstring_view text);

}  // namespace qlx
