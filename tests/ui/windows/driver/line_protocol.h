// The lines in which a test and the driver speak: UTF-8, fields parted by tabs, in a field \\ \t \n \r for
// what a line cannot hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qlx::driver {

using Fields = std::vector<std::wstring>;

Fields ParseLine(std::string_view line);
std::string FormatLine(const Fields& fields);

}  // namespace qlx::driver
