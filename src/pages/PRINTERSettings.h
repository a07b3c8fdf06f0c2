// The printer page without its window.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigDocument.h"
#include "config/FatalEnd.h"
#include "config/Message.h"

namespace qlx {

/// A drop-down list: its items and the one chosen, kNoItem for none.
struct ItemList {
  static constexpr int kNoItem = -1;

  std::vector<std::wstring> items;
  int chosen = kNoItem;

  /// An index outside the list clears the choice.
  void Choose(int index);
};

/// The texts of the keys that the page writes.
struct PrinterValues {
  std::wstring code_page;
  std::wstring emulation_mode;
  std::wstring unsolicited_status;
};

/// Section Printer_Configuration but its logos. What the file holds is put into the two lists only once the
/// printer has answered, or cannot: wanted, the services count on the page's standard choice until then.
class PRINTERSettings {
 public:
  static constexpr int kNative = 0;
  static constexpr std::wstring_view kSection = L"Printer_Configuration";
  static constexpr std::wstring_view kNotConverted =
      Translatable(L"Error converting Combo Box settings!\nExiting program.");

  PRINTERSettings();

  /// Takes the port of the printer and the stored values, child by child in the file's order.
  void Load(const std::vector<ConfigNode>& ports, const std::vector<ConfigNode>& printer);

  const std::wstring& port() const { return port_; }
  /// Whether the printer works in its native mode as far as the file tells.
  bool stored_native() const { return stored_emulation_mode_ == kNative; }
  /// Whether the lists show what the file holds.
  bool shows_stored() const { return shows_stored_; }

  const ItemList& code_page() const { return code_page_; }
  const ItemList& emulation() const { return emulation_; }
  bool unsolicited_status() const { return unsolicited_status_; }

  /// The user's choices. Another programming interface brings its own list of code pages.
  void ChooseCodePage(int index) { code_page_.Choose(index); }
  void ChooseEmulation(int index);
  void SetUnsolicitedStatus(bool on) { unsolicited_status_ = on; }

  /// The Default button; leaves the code page alone on purpose.
  void SetDefaults();

  /// The printer is of a type without a list of its own: the standard list and the stored values.
  void ShowStandardCodePages();
  /// The printer has told its code pages: its list and the stored values.
  void ShowPrinterCodePages(std::span<const std::wstring> code_pages);
  /// The printer is not asked, since it does not work in its native mode: the standard list and the stored
  /// values.
  void ShowWithoutAsking();

  /// What is stored for the present choices. A number of more than two characters goes to `end`.
  PrinterValues Values(const FatalEnd& end) const;

  /// Writes `values` into `document` and has the file written; true when it was. Any thread while no other
  /// uses the document.
  static bool Save(const PrinterValues& values, ConfigDocument& document);

  /// Takes the present choices for those of the file.
  void MarkStored() { stored_ = Choices(); }
  /// Whether something else is chosen than when the lists last showed the file, or their standard choices,
  /// and since the last MarkStored.
  bool changed() const { return stored_ != Choices(); }

 private:
  /// What a save would put into words.
  struct Chosen {
    int code_page = 0;
    int emulation = 0;
    bool unsolicited_status = false;
    bool operator==(const Chosen&) const = default;
  };

  Chosen Choices() const { return {CodePageValue(), emulation_.chosen, unsolicited_status_}; }
  void LoadValue(const ConfigNode& pair);
  void FillStandard(int chosen);
  void ShowStoredEmulation();
  int CodePageValue() const;

  std::wstring port_;
  std::int32_t stored_code_page_ = 1;
  std::int32_t stored_emulation_mode_ = kNative;
  bool shows_stored_ = false;
  ItemList code_page_;
  ItemList emulation_;
  bool unsolicited_status_ = false;
  std::vector<std::wstring> printer_code_pages_;
  Chosen stored_;
};

}  // namespace qlx
