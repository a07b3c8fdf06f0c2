// The preview of a picture file.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <wx/bitmap.h>
#include <wx/window.h>

#include "pages/logo_station.h"
#include "platform/image_file.h"

namespace qlx {

/// The largest size of the proportions of `picture` that `box` holds, each side at least 1.
PixelSize SizeInBox(PixelSize picture, PixelSize box);

/// Paints one picture in the middle, as large as fits with its proportions kept. The user-interface thread
/// reads the file: the largest pictures take it half a second.
class CPictureBox : public wxWindow {
 public:
  using Decode = std::function<std::optional<platform::DecodedImage>(const std::wstring& path)>;

  CPictureBox(wxWindow* parent, int id, Decode decode = platform::DecodeImageFile);

  /// Shows the file `path`, or nothing without one and for a file that cannot be read.
  void ShowPicture(const std::optional<std::wstring>& path);

  bool AcceptsFocus() const override { return false; }

 protected:
  wxSize DoGetBestClientSize() const override;

 private:
  void Paint();
  void FitBitmap();

  Decode decode_;
  std::optional<platform::RgbImage> picture_;
  wxBitmap bitmap_;  ///< the picture as it fits into fitted_to_
  wxSize fitted_to_;
};

}  // namespace qlx
