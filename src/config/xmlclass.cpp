#include "config/xmlclass.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "config/xml_text.h"

namespace qlx {

using platform::ReadStatus;
using platform::XmlNode;

namespace {

bool IsNameCharacter(wchar_t c) {
  const bool letter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_' || c > 0x7F;
  return letter || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.';
}

bool MayStartName(wchar_t c) {
  return IsNameCharacter(c) && c != L'-' && c != L'.' && !(c >= L'0' && c <= L'9');
}

bool IsName(std::wstring_view text) {
  return !text.empty() && MayStartName(text.front()) && std::ranges::all_of(text, IsNameCharacter);
}

/// Names joined by "/" or "//".
bool IsNamePath(std::wstring_view text) {
  for (std::size_t slash = text.find(L'/'); slash != std::wstring_view::npos; slash = text.find(L'/')) {
    if (!IsName(text.substr(0, slash))) return false;
    text.remove_prefix(text.substr(slash).starts_with(L"//") ? slash + 2 : slash + 1);
  }
  return IsName(text);
}

}  // namespace

std::wstring ElementQuery(const std::wstring& name, const AttributeMap& filter) {
  if (!IsNamePath(name)) return {};
  std::wstring query = L"//" + name;
  const wchar_t* before = L"[@";
  for (const auto& [attribute, value] : filter) {
    if (!IsName(attribute) || value.find(L'"') != std::wstring::npos) return {};
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
  if (bytes.size() > kLargestFile || !dom_->CanBeParsedAgain(bytes)) return false;
  if (!KeepOldFile(target) || files_.Replace(target, bytes)) return false;
  saved_.insert(target);
  return true;
}

/// What a save overwrites can be had back. False when the only copy of bytes that nobody has read would be
/// lost; a file whose values stand in the new one may be replaced without a copy.
bool xmlclass::KeepOldFile(const std::wstring& path) {
  if (saved_.contains(path)) return true;
  if (unreadable_ && path == path_) return !files_.Copy(path, path + L".unreadable");
  files_.Copy(path, path + L".bak");
  return true;
}

std::vector<ConfigNode> xmlclass::GetNodes(const std::wstring& name, const AttributeMap& filter) {
  std::vector<ConfigNode> nodes;
  const std::wstring query = ElementQuery(name, filter);
  if (!dom_ || query.empty()) return nodes;
  for (const XmlNode* element : dom_->Select(query)) {
    nodes.push_back(ToNode(element, dom_->Name(element), platform::kXmlDepthLimit));
  }
  return nodes;
}

std::vector<ConfigNode> xmlclass::GetChildren(const std::wstring& name) const {
  std::vector<ConfigNode> nodes;
  const std::wstring query = ElementQuery(name, {});
  if (!dom_ || query.empty()) return nodes;
  for (const XmlNode* element : dom_->Select(query)) {
    std::vector<ConfigNode> children = ToNode(element, {}, 2).children;
    if (nodes.empty()) {
      nodes = std::move(children);
    } else {
      std::ranges::move(children, std::back_inserter(nodes));
    }
  }
  return nodes;
}

bool xmlclass::Contains(const std::wstring& name) const {
  const std::wstring query = ElementQuery(name, {});
  return dom_ && !query.empty() && !dom_->Select(query).empty();
}

ConfigNode xmlclass::ToNode(const XmlNode* element, std::wstring name, int levels) const {
  ConfigNode node{std::move(name), dom_->Text(element), dom_->Attributes(element), {}};
  if (levels == 0) return node;
  const auto children = dom_->Children(element);
  node.children.reserve(children.size());
  for (const XmlNode* child : children) {
    std::wstring child_name = dom_->Name(child);
    if (child_name != L"#comment") node.children.push_back(ToNode(child, std::move(child_name), levels - 1));
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
  XmlNode* const under = parent.empty() ? nullptr : FoundOrAdded(parent);
  if (under == nullptr && !parent.empty()) return false;
  XmlNode* const element = dom_->Append(under, name);
  if (element == nullptr) return false;
  Write(element, text, attributes);
  return true;
}

/// The first element of the path in document order, created with its own parents when there is none; null
/// when it cannot be.
XmlNode* xmlclass::FoundOrAdded(const std::wstring& path) {
  const std::wstring query = ElementQuery(path, {});
  if (query.empty()) return nullptr;
  auto found = dom_->Select(query);
  if (found.empty()) {
    const std::size_t joint = path.rfind(L"//");
    const bool nested = joint != std::wstring::npos;
    AddNode(nested ? path.substr(0, joint) : L"", nested ? path.substr(joint + 2) : path, L"", {});
    found = dom_->Select(query);
  }
  return found.empty() ? nullptr : found.front();
}

void xmlclass::RemoveNodes(const std::wstring& name, const AttributeMap& filter) {
  const std::wstring query = ElementQuery(name, filter);
  if (!dom_ || query.empty()) return;
  // From the last to the first: a match inside another match goes before it.
  const auto found = dom_->Select(query);
  for (auto element = found.rbegin(); element != found.rend(); ++element) dom_->Remove(*element);
}

}  // namespace qlx
