#include "platform/linux/xml_selection.h"

#include <algorithm>

#include <libxml/pattern.h>
#include <libxml/xpath.h>

#include "platform/linux/xml_nodes.h"

namespace qlx::platform {
namespace {

/// A query in two halves: which elements by name, in linear time, and which of these by their attributes. The
/// library's own evaluation of the whole takes quadratic time where sections are nested or repeated.
class Query {
 public:
  Query(const std::wstring& xpath, xmlDoc* document) : context_(xmlXPathNewContext(document)) {
    const std::size_t bracket = std::min(xpath.find(L'['), xpath.size());
    const std::wstring names = xpath.substr(0, bracket);
    names_.reset(xmlPatterncompile(XmlText(names), nullptr, 0, nullptr));
    const std::wstring last = names.substr(names.rfind(L'/') + 1);
    if (last.find_first_of(L":*@.(|") == std::wstring::npos) last_name_ = ToUtf8(last);
    if (bracket < xpath.size())
      predicate_.reset(xmlXPathCompile(XmlText(L"self::node()" + xpath.substr(bracket))));
    valid_ = names_ && context_ && (predicate_ || bracket == xpath.size());
  }
  bool valid() const { return valid_; }

  bool Selects(xmlNode* node) const {
    if (node->type != XML_ELEMENT_NODE || !MayMatch(node) || xmlPatternMatch(names_.get(), node) != 1) {
      return false;
    }
    if (!predicate_) return true;
    context_->node = node;
    return xmlXPathCompiledEvalToBoolean(predicate_.get(), context_.get()) == 1;
  }

 private:
  /// Rules most elements out before the pattern is tried, which costs more than the rest of the walk.
  bool MayMatch(const xmlNode* element) const {
    return last_name_.empty() || last_name_ == Chars(element->name);
  }

  QuietXmlErrors quiet_;
  std::unique_ptr<xmlPattern, XmlDeleter<xmlFreePattern>> names_;
  std::string last_name_;  ///< of the last step; empty when it is more than a name
  std::unique_ptr<xmlXPathCompExpr, XmlDeleter<xmlXPathFreeCompExpr>> predicate_;
  std::unique_ptr<xmlXPathContext, XmlDeleter<xmlXPathFreeContext>> context_;
  bool valid_ = false;
};

}  // namespace

std::vector<xmlNode*> SelectNodes(const std::wstring& xpath, xmlDoc* document) {
  std::vector<xmlNode*> nodes;
  const Query query(xpath, document);
  if (!query.valid()) return nodes;
  int depth = 1;
  for (xmlNode* node = document->children; node != nullptr; node = NextNode(node, depth)) {
    if (query.Selects(node)) nodes.push_back(node);
  }
  return nodes;
}

}  // namespace qlx::platform
