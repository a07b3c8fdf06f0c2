// What the nodes of a parsed tree are and hold.
#pragma once

#include <string>

#include <libxml/tree.h>

#include "platform/linux/libxml.h"

namespace qlx::platform {

/// Of an element itself, not of an element in it.
bool IsOwnText(const xmlNode* node);
/// Whether `child`, the first one or null, is all that its parent holds, and plain text.
bool IsOnlyText(const xmlNode* child);
bool IsBlankText(const xmlNode* node);

/// The node after `node` in document order; null after the last one. `depth`, 1 at the root element, is kept
/// up. No recursion, however deep the tree.
xmlNode* NextNode(xmlNode* node, int& depth);

/// Whether the tree is as deep as the tool reads at most, and every entity in it is known.
bool IsWithinBounds(xmlDoc* document);

/// Blanks between child elements or comments only set them apart: true when `element` holds such and no other
/// text. A CDATA section counts as text even when it is empty.
bool HoldsNoText(const xmlNode* element);
void DropBlankText(xmlNode* element);
/// Drops the blank text of every element that holds no other.
void DropFormatting(xmlDoc* document);

/// Of an element or attribute.
template <typename Node>
std::wstring QualifiedName(const Node* node) {
  if (node->ns == nullptr || node->ns->prefix == nullptr) return FromUtf8(Chars(node->name));
  return FromUtf8(std::string(Chars(node->ns->prefix)) + ":" + Chars(node->name));
}

}  // namespace qlx::platform
