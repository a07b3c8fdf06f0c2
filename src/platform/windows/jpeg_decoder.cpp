#include "platform/picture_decoders.h"
#include "platform/windows/JpegFile.h"
#include "platform/windows/gdi_plus.h"

namespace qlx::platform {

/// GDI+ paints grey or noise where pixels are missing or damaged, and says nothing: they are followed first.
std::optional<DecodedImage> DecodeJpeg(PictureBytes& bytes) {
  JpegFile file(bytes);
  if (!file.Read()) return std::nullopt;
  auto image = DecodeByGdiPlus(file.bytes(), file.width(), file.height());
  if (!image) return std::nullopt;
  return DecodedImage{std::move(*image), file.bits_per_pixel()};
}

}  // namespace qlx::platform
