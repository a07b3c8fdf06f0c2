#include "tests/platform/pictures.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <gif_lib.h>
#include <jpeglib.h>

namespace qlx::testing {
namespace {

std::array<std::uint8_t, 3> Channels(std::uint32_t pixel) {
  return {static_cast<std::uint8_t>(pixel >> 16), static_cast<std::uint8_t>(pixel >> 8),
          static_cast<std::uint8_t>(pixel)};
}

std::vector<JSAMPLE> Samples(const std::vector<std::uint32_t>& row, const JpegOptions& options) {
  std::vector<JSAMPLE> samples;
  for (const std::uint32_t pixel : row) {
    const auto channels = Channels(pixel);
    samples.insert(samples.end(), channels.begin(), options.grey ? channels.begin() + 1 : channels.end());
    if (options.inks) samples.push_back(0xFF);
  }
  return samples;
}

/// A GIF in the making; every call that fails ends the test.
class GifWriter {
 public:
  GifWriter() : gif_(EGifOpen(&bytes_, Append, nullptr)) { EGifSetGifVersion(gif_, true); }
  GifWriter(const GifWriter&) = delete;
  GifWriter& operator=(const GifWriter&) = delete;
  ~GifWriter() { EGifCloseFile(gif_, nullptr); }

  GifFileType* gif() { return gif_; }

  static void Check(int result) {
    if (result == GIF_ERROR) throw std::runtime_error("the encoder refuses");
  }
  static ColorMapObject* Table(const std::vector<std::uint32_t>& palette) {
    if (palette.empty()) return nullptr;
    ColorMapObject* const table = GifMakeMapObject(static_cast<int>(palette.size()), nullptr);
    for (std::size_t i = 0; i < palette.size(); ++i) {
      const auto channels = Channels(palette[i]);
      table->Colors[i] = {channels[0], channels[1], channels[2]};
    }
    return table;
  }
  void PutFrame(const GifFrame& frame) {
    if (frame.transparent >= 0) {
      const std::array<std::uint8_t, 4> control = {1, 0, 0, static_cast<std::uint8_t>(frame.transparent)};
      Check(EGifPutExtension(gif_, GRAPHICS_EXT_FUNC_CODE, 4, control.data()));
    }
    const int width = static_cast<int>(frame.rows.front().size());
    const int height = static_cast<int>(frame.rows.size());
    ColorMapObject* const table = Table(frame.palette);
    Check(EGifPutImageDesc(gif_, frame.left, frame.top, width, height, frame.interlaced, table));
    GifFreeMapObject(table);
    for (const auto& [first, step] : frame.interlaced ? kInterlaced : kPlain) {
      for (int y = first; y < height; y += step) PutRow(frame.rows[static_cast<std::size_t>(y)]);
    }
  }
  std::string Finish() {
    Check(EGifCloseFile(std::exchange(gif_, nullptr), nullptr));
    return bytes_;
  }

 private:
  using Passes = std::vector<std::pair<int, int>>;
  static inline const Passes kInterlaced = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
  static inline const Passes kPlain = {{0, 1}};

  void PutRow(std::string row) {
    for (char& digit : row) digit = static_cast<char>(digit - '0');
    Check(EGifPutLine(gif_, reinterpret_cast<GifPixelType*>(row.data()), static_cast<int>(row.size())));
  }
  static int Append(GifFileType* gif, const GifByteType* bytes, int count) {
    static_cast<std::string*>(gif->UserData)->append(bytes, bytes + count);
    return count;
  }

  std::string bytes_;
  GifFileType* gif_;
};

}  // namespace

std::string LittleEndian(std::uint32_t value, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string FromHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    if (hex[i] == ' ') ++i;
    bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

std::string Bmp::Bytes() const {
  std::string info = LittleEndian(info_size, 4);
  if (info_size == 12) {
    info += LittleEndian(width, 2) + LittleEndian(height, 2) + LittleEndian(1, 2) + LittleEndian(bits, 2);
  } else {
    info += LittleEndian(width, 4) + LittleEndian(height, 4) + LittleEndian(1, 2) + LittleEndian(bits, 2) +
            LittleEndian(compression, 4) + std::string(12, '\0') + LittleEndian(colours_used, 4) +
            std::string(4, '\0') + more_info;
    if (info_size > info.size() && info_size < 1000) info.resize(info_size);
  }
  const std::size_t true_offset = 14 + info.size() + table.size() + gap.size();
  const std::size_t size = true_offset + pixels.size();
  return "BM" + LittleEndian(static_cast<std::uint32_t>(size), 4) + LittleEndian(0, 4) +
         LittleEndian(offset.value_or(static_cast<std::uint32_t>(true_offset)), 4) + info + table + gap +
         pixels;
}

std::string FourColours() {
  return FromHex("0000FF00 00FF0000 FF000000 FFFFFF00");
}

std::string Jpeg(const Pixels& pixels, const JpegOptions& options) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &memory, &size);
  info.image_width = static_cast<JDIMENSION>(pixels.front().size());
  info.image_height = static_cast<JDIMENSION>(pixels.size());
  info.input_components = options.grey ? 1 : options.inks ? 4 : 3;
  info.in_color_space = options.grey ? JCS_GRAYSCALE : options.inks ? JCS_CMYK : JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 100, TRUE);
  for (int i = 0; i < info.num_components; ++i) {
    info.comp_info[i].h_samp_factor = 1;
    info.comp_info[i].v_samp_factor = 1;
  }
  if (options.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  for (const auto& row : pixels) {
    auto samples = Samples(row, options);
    JSAMPROW line = samples.data();
    jpeg_write_scanlines(&info, &line, 1);
  }
  jpeg_finish_compress(&info);
  std::string bytes(memory, memory + size);
  jpeg_destroy_compress(&info);
  std::free(memory);
  return bytes;
}

std::string Gif::Bytes() const {
  GifWriter writer;
  ColorMapObject* const table = GifWriter::Table(palette);
  GifWriter::Check(EGifPutScreenDesc(writer.gif(), width, height, 8, 0, table));
  GifFreeMapObject(table);
  for (const GifFrame& frame : frames) writer.PutFrame(frame);
  return writer.Finish();
}

}  // namespace qlx::testing
