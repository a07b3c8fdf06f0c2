// What a document type declares inside the document itself.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

/// A general entity of the document's own.
struct XmlEntity {
  std::string text;  ///< to put in its place, character references resolved
  bool external;     ///< its text is elsewhere, where nobody looks
};

struct XmlDocumentType {
  std::map<std::string, XmlEntity, std::less<>> entities;
  int default_attributes = 0;  ///< attributes that it may give one element
};

/// The name of the root element that `piece`, a whole "<!DOCTYPE ...>", asks for.
std::string_view XmlDocumentTypeName(std::string_view piece);

/// Reads `piece`, a whole "<!DOCTYPE ...>". Parameter entities must have been refused before. Empty when an
/// attribute's default value refers to an entity, which no bound would hold, and where a declaration is
/// broken.
std::optional<XmlDocumentType> ReadXmlDocumentType(std::string_view piece);

}  // namespace qlx::platform
