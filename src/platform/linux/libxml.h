// What the XML library gives, owned and in this language's types.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <libxml/tree.h>

#include "platform/text.h"

namespace qlx::platform {

inline const char* Chars(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

/// UTF-8 in the form that libxml2 takes; lives as long as the expression it stands in.
class XmlText {
 public:
  explicit XmlText(std::wstring_view text) : bytes_(ToUtf8(text)) {}
  operator const xmlChar*() const { return reinterpret_cast<const xmlChar*>(bytes_.c_str()); }

 private:
  std::string bytes_;
};

template <auto Free>
struct XmlDeleter {
  template <typename T>
  void operator()(T* pointer) const {
    Free(pointer);
  }
};

inline void FreeXmlChars(xmlChar* text) {
  xmlFree(text);
}

using XmlDocument = std::unique_ptr<xmlDoc, XmlDeleter<xmlFreeDoc>>;
using XmlChars = std::unique_ptr<xmlChar, XmlDeleter<FreeXmlChars>>;

/// What belongs to no document (a byte that its encoding has not) the library would write to standard error.
class QuietXmlErrors {
 public:
  QuietXmlErrors() { xmlSetStructuredErrorFunc(nullptr, Ignore); }
  QuietXmlErrors(const QuietXmlErrors&) = delete;
  QuietXmlErrors& operator=(const QuietXmlErrors&) = delete;
  ~QuietXmlErrors() { xmlSetStructuredErrorFunc(nullptr, nullptr); }

 private:
  static void Ignore(void*, xmlError*) {}
};

}  // namespace qlx::platform
