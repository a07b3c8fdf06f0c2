#include "controls/insertion_filter.h"

#include <memory>
#include <utility>

#include <gtk/gtk.h>

#include "platform/text.h"

namespace qlx {
namespace {

/// GTK announces typing, pasting, dropping, input methods and accessibility tools by the one signal
/// "insert-text" before the text is there, so the caret needs no repair afterwards.
void OnInsertText(GtkEditable* editable, const char* bytes, int count, int* position, void* data) {
  const std::string_view inserted(
      bytes, count < 0 ? std::string_view(bytes).size() : static_cast<std::size_t>(count));
  const std::unique_ptr<char, decltype(&g_free)> held(gtk_editable_get_chars(editable, 0, -1), &g_free);
  const auto& filter = *static_cast<InsertionFilter*>(data);
  const std::string accepted =
      platform::ToUtf8(filter(platform::FromUtf8(held.get()), platform::FromUtf8(inserted)));
  if (accepted == inserted) return;

  g_signal_stop_emission_by_name(editable, "insert-text");
  if (accepted.empty()) {
    gtk_widget_error_bell(GTK_WIDGET(editable));
    return;
  }
  const auto self = reinterpret_cast<void*>(OnInsertText);
  g_signal_handlers_block_matched(editable, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr, self, nullptr);
  gtk_editable_insert_text(editable, accepted.data(), static_cast<int>(accepted.size()), position);
  g_signal_handlers_unblock_matched(editable, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr, self, nullptr);
}

}  // namespace

void FilterInsertions(wxTextCtrl& control, InsertionFilter filter) {
  auto* owned = new InsertionFilter(std::move(filter));
  const GClosureNotify release = [](void* data, GClosure*) { delete static_cast<InsertionFilter*>(data); };
  g_signal_connect_data(control.GetHandle(), "insert-text", G_CALLBACK(OnInsertText), owned, release,
                        GConnectFlags(0));
}

}  // namespace qlx
