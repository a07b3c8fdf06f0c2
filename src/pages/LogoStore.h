// The printer's logos without their window: which slots are used, with which picture, and how they get to
// the printer's drivers.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "config/ConfigDocument.h"
#include "config/FatalEnd.h"
#include "pages/LogoSystem.h"
#include "pages/WorkingCopies.h"
#include "pages/logo_entries.h"

namespace qlx {

/// What the page offers for the selected row of the list.
struct LogoSelection {
  bool can_add = false;
  bool can_delete = false;
  std::optional<std::wstring> preview;  ///< the picture to show
};

/// A row is a slot, counted from 0. The user-interface thread calls, and where stated a worker may while the
/// page is disabled and waits for it. What goes to a FatalEnd is logged first; a stand-in that returns leaves
/// the operation undone.
class LogoStore {
 public:
  /// Rows of the list.
  static constexpr int kRows = 20;

  explicit LogoStore(LogoSystem system = ThisLogoSystem());
  LogoStore(const LogoStore&) = delete;
  LogoStore& operator=(const LogoStore&) = delete;

  /// Takes the logos that `document` lists for those written last, so that Write has nothing to do before
  /// they are changed.
  void Load(ConfigDocument& document);

  /// In the order in which they were added.
  const std::vector<LogoRecord>& records() const { return records_; }

  /// For `row`, -1 for none.
  LogoSelection Select(int row) const;

  /// Puts the picture file `path` into the free row `row`, by the entry `encode_choice` of kEncodeChoices. A
  /// picture to be truncated is read at once. Nothing for a row that is used or out of range.
  void Add(int row, const std::wstring& path, int encode_choice, const FatalEnd& end);

  /// Frees `row`; a working copy of its picture is deleted. Nothing for a free row.
  void Delete(int row);

  /// When the logos differ from those written last: makes the bitmap files, lists them in `document`, writes
  /// that and deletes the bitmap files of other slots. Logos and files stay as they are when the document
  /// cannot be written, which it tells itself, and the next Write tries again. `show_status`, where there is
  /// one, gets a text before each conversion. On a worker thread, both functions and the document's own way
  /// of showing an error have to find their own way to the user-interface thread.
  void Write(ConfigDocument& document, const std::function<void(const std::wstring&)>& show_status,
             const FatalEnd& end);

  /// Deletes the working copies, the newest first. The page calls it when it is destroyed.
  void DeleteTempImages(const FatalEnd& end) { copies_.DeleteAll(end); }

 private:
  std::vector<LogoRecord>::const_iterator Find(int row) const;

  LogoSystem system_;
  WorkingCopies copies_;
  std::vector<LogoRecord> records_;
  std::optional<std::vector<LogoRecord>> written_ =
      std::vector<LogoRecord>();  ///< none after a write that failed
};

}  // namespace qlx
