#include "config/ConfigDocument.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace qlx {
namespace {

std::wstring SectionPath(const std::wstring& section) {
  return L"MZP//" + section;
}

}  // namespace

ConfigDocument::ConfigDocument(std::unique_ptr<xmlclass> xml, ShowSaveError show_save_error)
    : xml_(std::move(xml)), show_save_error_(std::move(show_save_error)) {}

std::unique_ptr<ConfigDocument> MakeConfigDocument(ConfigDocument::ShowSaveError show_save_error) {
  auto xml = std::make_unique<xmlclass>(platform::CreateXmlDom, platform::SystemFileStore());
  return std::make_unique<ConfigDocument>(std::move(xml), std::move(show_save_error));
}

bool ConfigDocument::Open(const std::wstring& path, bool create_if_missing) {
  loaded_ = xml_->Load(path, create_if_missing);
  if (loaded_) path_ = path;
  return loaded_;
}

bool ConfigDocument::Save(const std::wstring& path) {
  if (!loaded_) return false;
  const std::wstring& target = path.empty() ? path_ : path;
  const bool saved = xml_->Save(target);
  if (saved) {
    changed_ = true;
  } else {
    show_save_error_(target);
  }
  return saved;
}

int ConfigDocument::ReadTree(const std::wstring& name, std::vector<ConfigNode>& result) {
  result.clear();
  if (!loaded_) return kNotLoaded;
  result = xml_->GetNodes(name, {});
  return 0;
}

bool ConfigDocument::Contains(const std::wstring& name) const {
  return loaded_ && xml_->Contains(name);
}

bool ConfigDocument::FindNode(const std::vector<ConfigNode>& trees, const std::wstring& name) {
  return std::ranges::any_of(
      trees, [&](const ConfigNode& tree) { return tree.name == name || FindNode(tree.children, name); });
}

void ConfigDocument::AddNode(const std::wstring& parent, const std::wstring& name, const std::wstring& text,
                             const AttributeMap& attributes) {
  if (loaded_) xml_->AddNode(parent, name, text, attributes);
}

void ConfigDocument::AddTree(const ConfigNode& node, const std::wstring& parent_path) {
  AddNode(parent_path, node.name, node.text, node.attributes);
  const std::wstring path = parent_path.empty() ? node.name : parent_path + L"//" + node.name;
  for (const ConfigNode& child : node.children) AddTree(child, path);
}

std::vector<ConfigNode> ConfigDocument::ReadSection(const std::wstring& section) {
  return loaded_ ? xml_->GetChildren(SectionPath(section)) : std::vector<ConfigNode>();
}

void ConfigDocument::SetValue(const std::wstring& section, const std::wstring& key, const std::wstring& text,
                              const AttributeMap& attributes) {
  if (!loaded_) return;
  const std::wstring path = SectionPath(section);
  const std::wstring element = path + L"/" + key;
  if (xml_->Contains(element)) {
    xml_->SetNode(element, {}, text, attributes);
  } else {
    xml_->AddNode(path, key, text, attributes);
  }
}

void ConfigDocument::RemoveNodes(const std::wstring& section, const std::wstring& name,
                                 const AttributeMap& filter) {
  if (loaded_) xml_->RemoveNodes(SectionPath(section) + L"/" + name, filter);
}

}  // namespace qlx
