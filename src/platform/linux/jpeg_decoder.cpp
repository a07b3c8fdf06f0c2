#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <utility>

// jerror.h numbers its codes by what jpeglib.h defines.
// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include "platform/picture_decoders.h"

namespace qlx::platform {
namespace {

/// A few bytes can claim any number of scans over 50 million pixels; no encoder writes a tenth of these.
constexpr int kMostScans = 100;

/// What libjpeg repairs with pixels of its own making. Its other warnings leave the picture whole.
constexpr int kDamage[] = {JWRN_HIT_MARKER, JWRN_HUFF_BAD_CODE, JWRN_ARITH_BAD_CODE, JWRN_MUST_RESYNC};

/// libjpeg reports an error by a jump out of its depths: no local of a function below Guarded may need a
/// destructor while libjpeg runs.
class JpegDecoder {
 public:
  explicit JpegDecoder(PictureBytes& bytes) : bytes_(bytes) {
    info_.err = jpeg_std_error(&errors_);
    errors_.error_exit = OnError;
    errors_.emit_message = OnMessage;
    progress_.progress_monitor = OnProgress;
    source_.init_source = OnStart;
    source_.fill_input_buffer = OnEmpty;
    source_.skip_input_data = OnSkip;
    source_.resync_to_restart = jpeg_resync_to_restart;
    source_.term_source = OnStart;
    info_.client_data = this;
  }
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;
  ~JpegDecoder() { jpeg_destroy_decompress(&info_); }

  std::optional<DecodedImage> Decode() {
    if (!Guarded(&JpegDecoder::ReadHeader)) return std::nullopt;
    auto image = NewImage(info_.image_width, info_.image_height);
    if (!image) return std::nullopt;
    image_ = std::move(*image);
    if (!Guarded(&JpegDecoder::ReadRows)) return std::nullopt;
    return DecodedImage{std::move(image_), info_.num_components * info_.data_precision};
  }

 private:
  /// False when libjpeg gives up on the way.
  bool Guarded(void (JpegDecoder::*step)()) {
    if (setjmp(failed_) != 0) return false;
    (this->*step)();
    return true;
  }

  void ReadHeader() {
    jpeg_create_decompress(&info_);
    info_.client_data = this;
    info_.src = &source_;
    info_.progress = &progress_;
    jpeg_read_header(&info_, TRUE);
    const bool inks = info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
    info_.out_color_space = inks ? JCS_CMYK : JCS_RGB;
  }

  void ReadRows() {
    jpeg_start_decompress(&info_);
    const bool inks = info_.out_color_space == JCS_CMYK;
    JSAMPROW ink_row = nullptr;
    if (inks) {
      auto* const common = reinterpret_cast<j_common_ptr>(&info_);
      ink_row = *info_.mem->alloc_sarray(common, JPOOL_IMAGE, info_.output_width * 4, 1);
    }
    for (int y = 0; y < image_.height; ++y) {
      JSAMPROW row = inks ? ink_row : image_.Row(y).data();
      jpeg_read_scanlines(&info_, &row, 1);
      if (inks) PutInks(ink_row, image_.Row(y));
    }
    // A file that ends here, before its end marker, was cut.
    jpeg_finish_decompress(&info_);
  }

  /// Files of four inks hold them inverted, as all programs that write such files do.
  static void PutInks(const JSAMPLE* inks, std::span<std::uint8_t> row) {
    for (std::size_t i = 0; i < row.size(); i += 3, inks += 4) {
      for (std::size_t ink = 0; ink < 3; ++ink) {
        row[i + ink] = static_cast<std::uint8_t>(inks[ink] * inks[3] / 255);
      }
    }
  }

  static JpegDecoder& Self(const void* client_data) {
    return *static_cast<JpegDecoder*>(const_cast<void*>(client_data));
  }

  [[noreturn]] static void OnError(j_common_ptr info) { std::longjmp(Self(info->client_data).failed_, 1); }
  static void OnMessage(j_common_ptr info, int level) {
    if (level < 0 && std::ranges::find(kDamage, info->err->msg_code) != std::end(kDamage)) OnError(info);
  }
  static void OnProgress(j_common_ptr info) {
    if (reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > kMostScans) OnError(info);
  }

  static void OnStart(j_decompress_ptr) {}
  /// What libjpeg was given before is used up.
  static boolean OnEmpty(j_decompress_ptr info) {
    JpegDecoder& self = Self(info->client_data);
    self.bytes_.Drop(self.given_);
    const auto block = self.bytes_.Block();
    self.given_ = block.size();
    if (block.empty()) OnError(reinterpret_cast<j_common_ptr>(info));
    self.source_.next_input_byte = block.data();
    self.source_.bytes_in_buffer = block.size();
    return TRUE;
  }
  static void OnSkip(j_decompress_ptr info, long count) {
    auto left = static_cast<std::size_t>(std::max(count, 0L));
    jpeg_source_mgr& source = *info->src;
    while (left > source.bytes_in_buffer) {
      left -= source.bytes_in_buffer;
      OnEmpty(info);
    }
    source.next_input_byte += left;
    source.bytes_in_buffer -= left;
  }

  PictureBytes& bytes_;
  std::size_t given_ = 0;
  std::jmp_buf failed_{};
  jpeg_error_mgr errors_{};
  jpeg_progress_mgr progress_{};
  jpeg_source_mgr source_{};
  jpeg_decompress_struct info_{};
  RgbImage image_;
};

}  // namespace

/// On libjpeg, which says what is missing; gdk-pixbuf keeps that to itself and shows grey for it.
std::optional<DecodedImage> DecodeJpeg(PictureBytes& bytes) {
  return JpegDecoder(bytes).Decode();
}

}  // namespace qlx::platform
