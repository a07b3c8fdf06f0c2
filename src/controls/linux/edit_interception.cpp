#include "controls/edit_interception.h"

#include <optional>
#include <string_view>
#include <utility>

#include <gtk/gtk.h>

#include "platform/text.h"

namespace qlx {
namespace {

constexpr wchar_t kFirstPrintable = 0x20;
constexpr wchar_t kDelete = 0x7F;

/// The toolkit's own character event comes too late: GTK has taken the selection out by then.
std::optional<wchar_t> PrintableCharacter(const wxKeyEvent& event) {
  if (event.ControlDown() || event.AltDown() || event.MetaDown()) return std::nullopt;
  const auto character = static_cast<wchar_t>(gdk_keyval_to_unicode(event.GetRawKeyCode()));
  if (character < kFirstPrintable || character == kDelete) return std::nullopt;
  return character;
}

void OnInsertText(GtkEditable* editable, const char* bytes, int count, int* position, void* data) {
  const std::string_view inserted(
      bytes, count < 0 ? std::string_view(bytes).size() : static_cast<std::size_t>(count));
  const auto& maker = *static_cast<EditMaker*>(data);
  const std::optional<long> caret = maker.insert(*position, platform::FromUtf8(inserted));
  if (!caret) return;
  g_signal_stop_emission_by_name(editable, "insert-text");
  *position = static_cast<int>(*caret);
}

void OnDeleteText(GtkEditable* editable, int start, int end, void* data) {
  const auto& maker = *static_cast<EditMaker*>(data);
  // GTK says -1 for the end of the text.
  const long last = end < 0 ? gtk_entry_get_text_length(GTK_ENTRY(editable)) : end;
  if (maker.erase(start, last)) g_signal_stop_emission_by_name(editable, "delete-text");
}

}  // namespace

void InterceptEdits(wxTextCtrl& control, EditMaker maker) {
  control.Bind(wxEVT_KEY_DOWN, [type = maker.type](wxKeyEvent& event) {
    const auto character = PrintableCharacter(event);
    if (!character || !type(*character)) event.Skip();
  });
  auto* owned = new EditMaker(std::move(maker));
  const GClosureNotify release = [](void* data, GClosure*) { delete static_cast<EditMaker*>(data); };
  g_signal_connect_data(control.GetHandle(), "insert-text", G_CALLBACK(OnInsertText), owned, release,
                        GConnectFlags(0));
  g_signal_connect(control.GetHandle(), "delete-text", G_CALLBACK(OnDeleteText), owned);
}

}  // namespace qlx
