#include "platform/image_file.h"

#include <unistd.h>

#include "platform/linux/path_text.h"
#include "platform/linux/regular_file.h"
#include "platform/picture_decoders.h"

namespace qlx::platform {

std::optional<DecodedImage> DecodeImageFile(const std::wstring& path) {
  const OpenedFile file = OpenRegular(PathBytes(path));
  if (file.status != ReadStatus::kRead) return std::nullopt;
  PictureBytes bytes([&](std::span<std::uint8_t> block) {
    const ssize_t got = Retry([&] { return read(file.descriptor.number(), block.data(), block.size()); });
    return got < 0 ? 0 : static_cast<std::size_t>(got);
  });
  return DecodePicture(bytes);
}

}  // namespace qlx::platform
