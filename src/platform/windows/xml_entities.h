// A document's own entities, put in before the system's parser sees it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

/// The document `text` (UTF-8) with the text of its own entities in the place of each reference: the system's
/// parser knows no bound on their growth, and keeps references in the tree. Empty when they would grow past
/// 10 million bytes, when one refers to itself, is external or undeclared, when one that holds markup is used
/// more than once or is no whole piece of a document, and when a document type would give the elements too
/// many attributes.
std::optional<std::string> WithXmlEntities(std::string_view text);

}  // namespace qlx::platform
