// The one configuration document of a run: the pages read and write the file through nothing else.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "config/ConfigNode.h"
#include "config/xmlclass.h"

namespace qlx {

/// Owned by the main dialog, lent by pointer to every page, used on the user-interface thread only.
class ConfigDocument {
 public:
  /// ReadTree's answer when no file has been opened.
  static constexpr int kNotLoaded = 1006;

  /// Tells the user in a box with the error icon, by the words of save_error.h, that `path` was not written.
  using ShowSaveError = std::function<void(const std::wstring& path)>;

  ConfigDocument(std::unique_ptr<xmlclass> xml, ShowSaveError show_save_error);

  /// Loads `path`. With `create_if_missing` a missing or unreadable file gives an empty document.
  bool Open(const std::wstring& path, bool create_if_missing);

  /// Writes the file; an empty `path` means the one that was opened. On success changed() is true; a failure
  /// is shown and leaves the old file whole and changed() as it was. Nothing happens before an Open
  /// succeeded. True when the file was written.
  bool Save(const std::wstring& path = {});

  /// Every element `name` with its descendants into `result`. 0, or kNotLoaded with an empty result. An
  /// element inside another of its name is copied with both.
  int ReadTree(const std::wstring& name, std::vector<ConfigNode>& result);

  /// True when an element `name` occurs anywhere in the document; `name` may be a path of names.
  bool Contains(const std::wstring& name) const;

  /// True when an element `name` occurs anywhere in `trees`.
  static bool FindNode(const std::vector<ConfigNode>& trees, const std::wstring& name);

  void AddNode(const std::wstring& parent, const std::wstring& name, const std::wstring& text,
               const AttributeMap& attributes);

  /// Adds `node` with its descendants under `parent_path` (empty: the document itself).
  void AddTree(const ConfigNode& node, const std::wstring& parent_path);

  /// The child elements of MZP / `section` in document order, each with its own children and nothing deeper;
  /// empty when there are none.
  std::vector<ConfigNode> ReadSection(const std::wstring& section);

  /// Writes text and attributes of MZP / `section` / `key`, appending the element when it is missing.
  void SetValue(const std::wstring& section, const std::wstring& key, const std::wstring& text,
                const AttributeMap& attributes = {});

  /// Removes the elements MZP / `section` / `name` whose attributes have the values of `filter`.
  void RemoveNodes(const std::wstring& section, const std::wstring& name, const AttributeMap& filter = {});

  bool loaded() const { return loaded_; }
  const std::wstring& path() const { return path_; }
  /// True once a save succeeded in this run; only the COM Ports page clears it, after its own restart.
  bool changed() const { return changed_; }
  void ClearChanged() { changed_ = false; }

 private:
  std::unique_ptr<xmlclass> xml_;
  bool loaded_ = false;
  std::wstring path_;
  bool changed_ = false;
  ShowSaveError show_save_error_;
};

/// A document over the system's parser and files.
std::unique_ptr<ConfigDocument> MakeConfigDocument(ConfigDocument::ShowSaveError show_save_error);

}  // namespace qlx
