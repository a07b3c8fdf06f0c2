// What a value is after a save and a load.
#pragma once

#include "tests/config/Installation.h"

namespace qlx {

class StoredValues : public Installation {
 protected:
  /// `value` as text and as attribute after `times` saves and loads.
  ConfigNode Stored(const std::wstring& value, int times = 2) {
    Opened("<MZP><S><k/></S></MZP>");
    ConfigNode node{L"k", value, {{L"a", value}}, {}};
    for (int i = 0; i < times; ++i) {
      const auto document = Reopened();
      document->SetValue(L"S", L"k", node.text, node.attributes);
      document->Save();
      node = Reopened()->ReadSection(L"S").at(0);
    }
    return node;
  }
};

}  // namespace qlx
