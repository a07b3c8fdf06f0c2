// The abstract store of named, nested values that the configuration document stands on.
#pragma once

#include <string>
#include <vector>

#include "config/ConfigNode.h"

namespace qlx {

/// Elements are found by name and by the values of their attributes; an empty filter takes every element of
/// the name. A query that matches nothing changes nothing. The order of the operations is fixed: other parts
/// of the suite call them by their place.
class dataclass {
 public:
  virtual ~dataclass() = default;

  /// True when the file was loaded, or is missing or unreadable and `create_if_missing` starts an empty one.
  virtual bool Load(const std::wstring& path, bool create_if_missing) = 0;
  /// Writes the file; an empty `path` means the one that was loaded last. False when it could not be written.
  virtual bool Save(const std::wstring& path) = 0;
  virtual std::vector<ConfigNode> GetNodes(const std::wstring& name, const AttributeMap& filter) = 0;
  virtual void SetNode(const std::wstring& name, const AttributeMap& filter, const std::wstring& text,
                       const AttributeMap& attributes) = 0;
  /// True when the element was appended.
  virtual bool AddNode(const std::wstring& parent, const std::wstring& name, const std::wstring& text,
                       const AttributeMap& attributes) = 0;
  virtual void RemoveNodes(const std::wstring& name, const AttributeMap& filter) = 0;
};

}  // namespace qlx
