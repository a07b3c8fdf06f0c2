// What every settings page is made of without its window: a table of settings and their values.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "config/ConfigDocument.h"
#include "config/FatalEnd.h"

namespace qlx {

/// How a setting's text in the file becomes the state of a control.
enum class SettingForm {
  kCheck,       ///< check box: on exactly when the text is "true" in any letter case
  kText,        ///< text field: at most `limit` UTF-16 units
  kFilledText,  ///< as kText, and an empty text in the file leaves the default
  kDigits,      ///< as kText, and a non-empty run of digits
  kChoice,      ///< drop-down list: a number below `limit`, the index
  kOrdinal,     ///< drop-down list of `limit` items: a number up to `limit` + 1, the index + 1
  kHex,         ///< field for hexadecimal bytes: at most `limit` characters, stored without blanks
};

/// One setting: the control that shows it, the key that stores it, the form of its text.
struct SettingRow {
  int control;
  std::wstring_view key;
  SettingForm form;
  std::size_t limit = 0;
};

/// The sentences and the section of one page.
struct PageFacts {
  std::wstring_view section;
  std::wstring_view no_document;
  std::wstring_view edit_not_converted;
  std::wstring_view choice_not_converted;
  std::wstring_view saved;
};

/// Why a page's values cannot be saved as they are.
struct Refusal {
  int control;  ///< the control to mend
  std::wstring message;
};

/// The values of one section of the file as a page holds them, on the user-interface thread. The rows stand
/// in the order in which they are saved; their defaults are those of a new file. Nothing reaches the document
/// before Save.
class PageSettings {
 public:
  PageSettings(const PageFacts& facts, std::span<const SettingRow> rows);
  virtual ~PageSettings() = default;

  virtual void SetDefaults();

  /// Takes each known key of `pairs` whose text passes its form's test; everything else stays as it is.
  virtual void Load(const std::vector<ConfigNode>& pairs);

  /// Writes every row into `document` and has the file written. A value that cannot be put into words goes to
  /// `end` with the page's sentence for it.
  void Save(ConfigDocument& document, const FatalEnd& end);

  /// Takes the present values for those of the file, which Save does by itself once the file is written.
  void MarkStored() { stored_ = values_; }
  /// Whether a value is another than the file's.
  bool changed() const { return values_ != stored_; }

  /// What the Apply button finds wrong first; Save itself tests nothing.
  virtual std::optional<Refusal> FindRefusal() const { return std::nullopt; }

  /// Whether the user may change the page; true until it is said otherwise.
  void SetEditable(bool editable) { editable_ = editable; }
  bool editable() const { return editable_; }

  const PageFacts& facts() const { return facts_; }
  std::span<const SettingRow> rows() const { return rows_; }

  /// State of the control `control`, which must be one of the rows and of the form asked for.
  const std::wstring& Text(int control) const { return std::get<std::wstring>(values_.at(control)); }
  bool Checked(int control) const { return std::get<bool>(values_.at(control)); }
  /// The index chosen, -1 for none.
  int Choice(int control) const { return std::get<int>(values_.at(control)); }

  virtual void SetText(int control, const std::wstring& text) { values_.at(control) = text; }
  void SetChecked(int control, bool checked) { values_.at(control) = checked; }
  void SetChoice(int control, int index) { values_.at(control) = index; }

 private:
  using Values = std::map<int, std::variant<bool, int, std::wstring>>;

  void LoadValue(const SettingRow& row, const std::wstring& text);
  void LoadOrdinal(const SettingRow& row, int number);
  std::wstring FileText(const SettingRow& row, const FatalEnd& end) const;
  std::wstring ChoiceText(int number, const FatalEnd& end) const;

  PageFacts facts_;
  std::span<const SettingRow> rows_;
  Values values_;
  Values stored_;
  bool editable_ = true;
};

}  // namespace qlx
