#include "config/xmlclass.h"

#include <stdexcept>

#include "config/xml_text.h"

namespace qlx {

using platform::ReadStatus;
using platform::XmlNode;

std::wstring ElementQuery(const std::wstring& name, const AttributeMap& filter) {
  if (name.empty()) return {};
  std::wstring query = L"//" + name;
  const wchar_t* before = L"[@";
  for (const auto& [attribute, value] : filter) {
    if (value.find(L'"') != std::wstring::npos) return {};
    query += before + attribute + L"=\"" + value + L"\"";
    before = L" and ";
  }
  return filter.empty() ? query : query + L"]";
}

xmlclass::xmlclass(CreateDom create_dom, platform::FileStore& files)
    : create_dom_(create_dom), files_(files) {}

bool xmlclass::Load(const std::wstring& path, bool create_if_missing) {
  dom_.reset();
  dom_ = create_dom_();
  if (!dom_) throw std::runtime_error("Unable to create XML parser object");
  if (!Read(path) && !create_if_missing) return false;
  path_ = path;
  return true;
}

bool xmlclass::Read(const std::wstring& path) {
  const platform::ReadResult file = files_.Read(path, kLargestFile);
  const bool parsed = file.status == ReadStatus::kRead && dom_->Parse(file.bytes);
  unreadable_ = !parsed && file.status != ReadStatus::kMissing;
  return parsed;
}

bool xmlclass::Save(const std::wstring& path) {
  if (!dom_) return true;
  const std::wstring& target = path.empty() ? path_ : path;
  const std::string bytes = dom_->Serialise();
  if (bytes.size() > kLargestFile) return false;  // nobody could read it again
  KeepOldFile(target);
  if (files_.Replace(target, bytes)) return false;
  saved_before_ = true;
  unreadable_ = false;
  return true;
}

/// What a save overwrites can be had back. Best effort: without the copy the save itself is still as asked
/// for.
void xmlclass::KeepOldFile(const std::wstring& path) {
  if (unreadable_) {
    files_.Copy(path, path + L".unreadable");
  } else if (!saved_before_) {
    files_.Copy(path, path + L".bak");
  }
}

std::vector<ConfigNode> xmlclass::GetNodes(const std::wstring& name, const AttributeMap& filter) {
  std::vector<ConfigNode> nodes;
  const std::wstring query = ElementQuery(name, filter);
  if (!dom_ || query.empty()) return nodes;
  for (const XmlNode* element : dom_->Select(query)) nodes.push_back(ToNode(element));
  return nodes;
}

/// Recursion is bounded by the depth that the document may have.
ConfigNode xmlclass::ToNode(const XmlNode* element) const {
  ConfigNode node{dom_->Name(element), dom_->Text(element), dom_->Attributes(element), {}};
  for (const XmlNode* child : dom_->Children(element)) {
    if (dom_->Name(child) != L"#comment") node.children.push_back(ToNode(child));
  }
  return node;
}

void xmlclass::SetNode(const std::wstring& name, const AttributeMap& filter, const std::wstring& text,
                       const AttributeMap& attributes) {
  const std::wstring query = ElementQuery(name, filter);
  if (!dom_ || query.empty()) return;
  for (XmlNode* element : dom_->Select(query)) Write(element, text, attributes);
}

void xmlclass::Write(XmlNode* element, const std::wstring& text, const AttributeMap& attributes) {
  dom_->SetText(element, XmlCharacters(text));
  for (const auto& [name, value] : attributes) dom_->SetAttribute(element, name, XmlCharacters(value));
}

bool xmlclass::AddNode(const std::wstring& parent, const std::wstring& name, const std::wstring& text,
                       const AttributeMap& attributes) {
  if (!dom_) return false;
  XmlNode* under = nullptr;
  if (!parent.empty()) {
    const std::wstring query = ElementQuery(parent, {});
    auto found = dom_->Select(query);
    if (found.empty()) {
      const std::size_t joint = parent.rfind(L"//");
      const bool nested = joint != std::wstring::npos;
      if (!AddNode(nested ? parent.substr(0, joint) : L"", nested ? parent.substr(joint + 2) : parent, L"",
                   {})) {
        return false;
      }
      found = dom_->Select(query);
    }
    under = found.front();
  }
  XmlNode* element = dom_->Append(under, name);
  if (element == nullptr) return false;
  Write(element, text, attributes);
  return true;
}

void xmlclass::RemoveNodes(const std::wstring& name, const AttributeMap& filter) {
  const std::wstring query = ElementQuery(name, filter);
  if (!dom_ || query.empty()) return;
  // From the last to the first: a match inside another match goes before it.
  const auto found = dom_->Select(query);
  for (auto element = found.rbegin(); element != found.rend(); ++element) dom_->Remove(*element);
}

}  // namespace qlx
