#include "pages/logo_files.h"

#include <algorithm>
#include <string_view>

#include "pages/logo_image.h"
#include "platform/directories.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr wchar_t kExtension[] = L".bmp";

std::wstring FileName(int slot) {
  return std::to_wstring(slot) + kExtension;
}

}  // namespace

std::wstring LogoFile(const std::wstring& directory, int slot) {
  return directory + FileName(slot);
}

void EndFor(const LogoFailure& failure, const std::wstring& file, const LogoSystem& system,
            const FatalEnd& end) {
  const std::string place = std::string(failure.place) + " - ";
  system.log_error(place + std::string(failure.line));
  if (!file.empty()) system.log_error(place + platform::ToUtf8(file));
  end(std::wstring(failure.message));
}

bool SaveBitmap(const platform::RgbImage& image, const std::wstring& path, const LogoSystem& system) {
  const std::vector<std::uint8_t> bytes = system.encode(image);
  return !system.files->Replace(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool ConvertLogo(LogoRecord& record, const std::wstring& file, const LogoSystem& system,
                 const FatalEnd& end) {
  if (record.path == file) return true;
  const LogoFailure* failure = nullptr;
  if (const auto picture = system.decode(record.path); !picture) {
    failure = &kNotLoaded;
  } else if (const auto image = PrinterImage(*picture, record.station); !image) {
    failure = &kNotCreated;
  } else if (!SaveBitmap(*image, file, system)) {
    failure = &kNotSaved;
  }
  if (failure != nullptr) {
    EndFor(*failure, failure == &kNotSaved ? file : record.path, system, end);
    return false;
  }
  record.path = file;
  return true;
}

void RemoveStaleLogos(const std::wstring& directory, const std::vector<LogoRecord>& records,
                      const LogoSystem& system) {
  if (platform::IsRootDirectory(directory)) return;
  for (const std::wstring& name : system.files_in(directory)) {
    const bool current =
        std::ranges::any_of(records, [&](const LogoRecord& record) { return name == FileName(record.slot); });
    if (name.ends_with(kExtension) && !current) system.remove_file(directory + name);
  }
}

}  // namespace qlx
