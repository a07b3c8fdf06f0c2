#include "platform/linux/xml_nodes.h"

#include "platform/xml_dom.h"

namespace qlx::platform {

bool IsOwnText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

bool IsOnlyText(const xmlNode* child) {
  return child != nullptr && child->type == XML_TEXT_NODE && child->next == nullptr;
}

bool IsBlankText(const xmlNode* node) {
  return node->type == XML_TEXT_NODE && xmlIsBlankNode(node) != 0;
}

xmlNode* NextNode(xmlNode* node, int& depth) {
  if (node->children != nullptr && node->type == XML_ELEMENT_NODE) {
    ++depth;
    return node->children;
  }
  while (node != nullptr && node->next == nullptr) {
    node = node->parent;
    --depth;
    if (node == nullptr || node->type == XML_DOCUMENT_NODE) return nullptr;
  }
  return node == nullptr ? nullptr : node->next;
}

// A reference that is still there after the parse names an entity that nobody declared. The text of the
// deepest element stands a level below it.
bool IsWithinBounds(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = NextNode(node, depth)) {
    if (node->type == XML_ENTITY_REF_NODE) return false;
    if (node->type == XML_ELEMENT_NODE && depth > kXmlDepthLimit) return false;
  }
  return true;
}

void DropBlankText(xmlNode* element) {
  for (xmlNode* child = element->children; child != nullptr;) {
    xmlNode* next = child->next;
    if (IsBlankText(child)) {
      xmlUnlinkNode(child);
      xmlFreeNode(child);
    }
    child = next;
  }
}

bool HoldsNoText(const xmlNode* element) {
  bool others = false;
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (IsOwnText(child) && !IsBlankText(child)) return false;
    others = others || !IsOwnText(child);
  }
  return others;
}

void DropFormatting(xmlDoc* document) {
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = NextNode(node, depth)) {
    if (node->type == XML_ELEMENT_NODE && HoldsNoText(node)) DropBlankText(node);
  }
}

}  // namespace qlx::platform
