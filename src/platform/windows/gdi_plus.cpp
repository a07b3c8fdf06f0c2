#include "platform/windows/gdi_plus.h"

#include <memory>
#include <utility>

// The headers of GDI+ take for granted what the lean windows.h leaves out.
// clang-format off
#include <windows.h>
#include <objidl.h>
#include <gdiplus.h>
#include <shlwapi.h>
// clang-format on

#include "platform/picture_decoders.h"

namespace qlx::platform {
namespace {

/// GDI+ counts its users; the last one to go ends it.
class Session {
 public:
  Session() {
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    if (token_ != 0) Gdiplus::GdiplusShutdown(token_);
  }
  explicit operator bool() const { return token_ != 0; }

 private:
  ULONG_PTR token_ = 0;
};

struct Release {
  void operator()(IUnknown* object) const { object->Release(); }
};
using Stream = std::unique_ptr<IStream, Release>;

bool IsOfSize(Gdiplus::Bitmap& bitmap, int width, int height) {
  return bitmap.GetLastStatus() == Gdiplus::Ok && std::cmp_equal(bitmap.GetWidth(), width) &&
         std::cmp_equal(bitmap.GetHeight(), height);
}

/// GDI+ writes blue first.
void SwapRedAndBlue(const RgbImage& image) {
  for (int y = 0; y < image.height; ++y) {
    const auto row = image.Row(y);
    for (std::size_t i = 0; i < row.size(); i += 3) std::swap(row[i], row[i + 2]);
  }
}

/// Straight into `image`: no second copy of the pixels.
bool ReadPixels(Gdiplus::Bitmap& bitmap, const RgbImage& image) {
  const Gdiplus::Rect whole(0, 0, image.width, image.height);
  Gdiplus::BitmapData data;
  data.Stride = static_cast<INT>(image.stride);
  data.Scan0 = image.pixels.get();
  constexpr unsigned kIntoOurs = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf;
  if (bitmap.LockBits(&whole, kIntoOurs, PixelFormat24bppRGB, &data) != Gdiplus::Ok) return false;
  if (bitmap.UnlockBits(&data) != Gdiplus::Ok) return false;
  SwapRedAndBlue(image);
  return true;
}

}  // namespace

std::optional<RgbImage> DecodeByGdiPlus(std::span<const std::uint8_t> file, int width, int height) {
  const Session session;
  if (!session || !std::in_range<UINT>(file.size())) return std::nullopt;
  const Stream stream(SHCreateMemStream(file.data(), static_cast<UINT>(file.size())));
  if (!stream) return std::nullopt;
  Gdiplus::Bitmap bitmap(stream.get());
  if (!IsOfSize(bitmap, width, height)) return std::nullopt;
  auto image = NewImage(width, height);
  if (!image || !ReadPixels(bitmap, *image)) return std::nullopt;
  return image;
}

}  // namespace qlx::platform
