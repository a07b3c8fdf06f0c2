// The in-memory form in which pages exchange whole sections with the configuration document.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qlx {

/// Attribute name to value; written to the file in the map's sorted order of names.
using AttributeMap = std::map<std::wstring, std::wstring>;

/// One element of the configuration file with its children in document order.
struct ConfigNode {
  std::wstring name;
  std::wstring text;
  AttributeMap attributes;
  std::vector<ConfigNode> children;
};

}  // namespace qlx
