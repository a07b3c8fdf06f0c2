// The store over one XML document.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "config/dataclass.h"
#include "platform/file_store.h"
#include "platform/xml_dom.h"

namespace qlx {

/// User-interface thread only. A `name` may be a path of names joined by "//": a section of the file is
/// "MZP//Logging_Configuration".
class xmlclass : public dataclass {
 public:
  using CreateDom = std::unique_ptr<platform::XmlDom> (*)();

  /// Files of more bytes count as not well-formed.
  static constexpr std::size_t kLargestFile = std::size_t{16} << 20;

  xmlclass(CreateDom create_dom, platform::FileStore& files);

  /// Throws std::runtime_error "Unable to create XML parser object" when the system has no parser.
  bool Load(const std::wstring& path, bool create_if_missing) override;
  /// False too, and nothing is touched, for a document that no Load would read: an empty one, one past a
  /// limit.
  bool Save(const std::wstring& path) override;
  std::vector<ConfigNode> GetNodes(const std::wstring& name, const AttributeMap& filter) override;
  void SetNode(const std::wstring& name, const AttributeMap& filter, const std::wstring& text,
               const AttributeMap& attributes) override;
  /// Never looks for an existing element of the name. Under the first parent in document order; a missing
  /// parent is created first. An empty parent is the document itself, which takes one root only.
  bool AddNode(const std::wstring& parent, const std::wstring& name, const std::wstring& text,
               const AttributeMap& attributes) override;
  void RemoveNodes(const std::wstring& name, const AttributeMap& filter) override;

  /// The child elements of every element `name`, each with its own children and nothing deeper: linear in the
  /// document, however the elements are nested.
  std::vector<ConfigNode> GetChildren(const std::wstring& name) const;
  bool Contains(const std::wstring& name) const;

  /// True once a Load has started a document.
  bool has_document() const { return dom_ != nullptr; }
  const std::wstring& path() const { return path_; }

 private:
  bool Read(const std::wstring& path);
  bool KeepOldFile(const std::wstring& path);
  /// With at most `levels` of descendants.
  ConfigNode ToNode(const platform::XmlNode* element, std::wstring name, int levels) const;
  platform::XmlNode* FoundOrAdded(const std::wstring& path);
  void Write(platform::XmlNode* element, const std::wstring& text, const AttributeMap& attributes);

  CreateDom create_dom_;
  platform::FileStore& files_;
  std::unique_ptr<platform::XmlDom> dom_;
  std::wstring path_;
  bool unreadable_ = false;       ///< a file is at path_ and could not be parsed
  std::set<std::wstring> saved_;  ///< paths, in this run
};

/// The query "//name[@first="value" and second="value"]"; only the first pair carries the "@", which is what
/// the file's other readers ask for too. A value that holds a double quotation mark matches nothing and gives
/// an empty query, as does a name that is none: no text from outside is ever read as an expression.
std::wstring ElementQuery(const std::wstring& name, const AttributeMap& filter);

}  // namespace qlx
