#include "sim/IButtonReader.h"

#include <algorithm>
#include <cctype>

namespace qlx::sim {

std::string IButtonReader::Touch(const std::string& id) const {
  std::string digits = id.substr(std::min(settings_.start - 1, id.size()), settings_.length);
  std::ranges::transform(digits, digits.begin(),
                         [](unsigned char digit) { return static_cast<char>(std::toupper(digit)); });
  return settings_.prefix + digits + settings_.suffix + settings_.delimiter;
}

}  // namespace qlx::sim
