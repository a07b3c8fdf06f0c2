#include "platform/windows/xml_selection.h"

#include <algorithm>
#include <optional>

namespace qlx::platform {
namespace {

/// One name of a path.
struct Step {
  std::wstring name;
  bool any_depth;  ///< behind "//": not the next element's child only
};

/// The steps of "//name/name//name"; empty when `path` is none.
std::vector<Step> Steps(std::wstring_view path) {
  std::vector<Step> steps;
  while (!path.empty()) {
    const bool any_depth = path.starts_with(L"//");
    if (!path.starts_with(L'/') || (steps.empty() && !any_depth)) return {};
    path.remove_prefix(any_depth ? 2 : 1);
    const std::wstring_view name = path.substr(0, path.find(L'/'));
    if (name.empty()) return {};
    steps.push_back({std::wstring(name), any_depth});
    path.remove_prefix(name.size());
  }
  return steps;
}

/// Names of the elements round `element`, the nearest first. One in a namespace has a name that no step has.
std::vector<std::wstring> NamesAround(IXMLDOMNode* element) {
  std::vector<std::wstring> names;
  const auto parent = [](IXMLDOMNode* node) {
    return Got<IXMLDOMNode>([&](IXMLDOMNode** found) { return node->get_parentNode(found); });
  };
  for (NodePtr node = parent(element); node && TypeOf(node.get()) == NODE_ELEMENT;
       node = parent(node.get())) {
    names.push_back(NamespaceOf(node.get()).empty() ? NameOf(node.get()) : std::wstring());
  }
  return names;
}

/// True when the first `count` of `steps` can be found in `names` from `from` on, the last of them first;
/// `any_depth` lets it be further out than there.
bool StandsWithin(const std::vector<std::wstring>& names, std::size_t from, const std::vector<Step>& steps,
                  std::size_t count, bool any_depth) {
  if (count == 0) return any_depth || from == names.size();
  const Step& step = steps[count - 1];
  const std::size_t end = any_depth ? names.size() : std::min(from + 1, names.size());
  for (std::size_t i = from; i < end; ++i) {
    if (names[i] == step.name && StandsWithin(names, i + 1, steps, count - 1, step.any_depth)) return true;
  }
  return false;
}

}  // namespace

std::vector<NodePtr> SelectElements(IXMLDOMDocument2* document, const std::wstring& xpath) {
  std::vector<NodePtr> selected;
  const std::size_t bracket = std::min(xpath.find(L'['), xpath.size());
  const auto steps = Steps(std::wstring_view(xpath).substr(0, bracket));
  if (steps.empty()) return selected;
  // The whole path, evaluated by the parser, would take time by the square where sections are nested or
  // repeated.
  const Bstr last(L"//" + steps.back().name + xpath.substr(bracket));
  const auto found =
      Got<IXMLDOMNodeList>([&](IXMLDOMNodeList** list) { return document->selectNodes(last.get(), list); });
  while (found) {
    auto node = Got<IXMLDOMNode>([&](IXMLDOMNode** next) { return found->nextNode(next); });
    if (!node) break;
    const bool taken = TypeOf(node.get()) == NODE_ELEMENT &&
                       (steps.size() == 1 || StandsWithin(NamesAround(node.get()), 0, steps, steps.size() - 1,
                                                          steps.back().any_depth));
    if (taken) selected.push_back(std::move(node));
  }
  return selected;
}

}  // namespace qlx::platform
