#include "platform/image_file.h"

#include "platform/picture_decoders.h"
#include "platform/windows/Handle.h"

namespace qlx::platform {
namespace {

/// Whether `path` names a device, such as "COM1": to open one can have effects of its own.
bool IsDevice(const std::wstring& path) {
  std::wstring full(MAX_PATH, L'\0');
  DWORD size = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (size > full.size()) {
    full.resize(size);
    size = GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  }
  full.resize(size);
  return full.starts_with(L"\\\\.\\");
}

Handle OpenRegular(const std::wstring& path) {
  if (path.empty() || IsDevice(path)) return Handle();
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  Handle file(CreateFileW(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                          nullptr));
  return file && GetFileType(file.get()) == FILE_TYPE_DISK ? std::move(file) : Handle();
}

}  // namespace

std::optional<DecodedImage> DecodeImageFile(const std::wstring& path) {
  const Handle file = OpenRegular(path);
  if (!file) return std::nullopt;
  PictureBytes bytes([&](std::span<std::uint8_t> block) -> std::size_t {
    DWORD got = 0;
    const auto size = static_cast<DWORD>(block.size());
    return ReadFile(file.get(), block.data(), size, &got, nullptr) != 0 ? got : 0;
  });
  return DecodePicture(bytes);
}

}  // namespace qlx::platform
