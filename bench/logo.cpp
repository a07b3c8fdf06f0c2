// A photograph becomes a printer's logo: the whole conversion against gdk-pixbuf's decoders before the same
// loops and against GraphicsMagick doing the same steps, its peak memory, and the reduction to two tones
// against a tight loop. usage: logo (pictures and results are written to TMPDIR; takes the program gm)
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/peak_memory.h"
#include "bench/rounds.h"
#include "pages/logo_image.h"

namespace {

namespace fs = std::filesystem;
using qlx::bench::PeakMemory;
using qlx::bench::Rounds;
using qlx::bench::Seconds;
using qlx::platform::RgbImage;

constexpr qlx::PixelSize kPhotograph = {4000, 3000};
constexpr qlx::Station kStation = qlx::Station::kCustomerReceipt;
constexpr int kDithers = 20;

void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

void RunProgram(std::vector<std::string> arguments) {
  std::vector<char*> texts;
  texts.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) texts.push_back(argument.data());
  texts.push_back(nullptr);
  pid_t child = 0;
  Require(posix_spawnp(&child, texts[0], nullptr, nullptr, texts.data(), environ) == 0, "gm cannot be run");
  int status = 0;
  waitpid(child, &status, 0);
  Require(WIFEXITED(status) && WEXITSTATUS(status) == 0, "gm failed");
}

void WriteFile(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  Require(file.flush().good(), "a file cannot be written");
}

/// Soft shapes with a sensor's noise.
RgbImage Photograph(qlx::PixelSize size) {
  std::mt19937 random(1);
  RgbImage image = qlx::NewImage(size);
  for (int y = 0; y < size.height; ++y) {
    std::uint8_t* pixel = image.Row(y).data();
    for (int x = 0; x < size.width; ++x, pixel += 3) {
      const int noise = static_cast<int>(random() % 16);
      pixel[0] = static_cast<std::uint8_t>(x * 200 / size.width + noise);
      pixel[1] = static_cast<std::uint8_t>(y * 200 / size.height + noise);
      pixel[2] = static_cast<std::uint8_t>((x / 64 * 37 + y / 64 * 53) % 200 + noise);
    }
  }
  return image;
}

/// A picture as gdk-pixbuf's ordinary user has it; the fourth channel of a GIF is squeezed out in place.
RgbImage DecodedByPixbuf(const fs::path& path) {
  GdkPixbuf* pixbuf = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
  Require(pixbuf != nullptr, "gdk-pixbuf cannot read the picture");
  RgbImage image;
  image.width = gdk_pixbuf_get_width(pixbuf);
  image.height = gdk_pixbuf_get_height(pixbuf);
  image.stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(pixbuf));
  image.pixels = {gdk_pixbuf_get_pixels(pixbuf), [pixbuf](std::uint8_t*) { g_object_unref(pixbuf); }};
  if (gdk_pixbuf_get_n_channels(pixbuf) == 4) {
    for (int y = 0; y < image.height; ++y) {
      std::uint8_t* row = image.Row(y).data();
      for (std::ptrdiff_t x = 0; x < image.width; ++x) std::memmove(row + 3 * x, row + 4 * x, 3);
    }
  }
  return image;
}

struct Picture {
  const char* format;
  fs::path path;
  int bits_per_pixel;
};

void ConvertByTool(const Picture& picture, const fs::path& out) {
  const auto decoded = qlx::platform::DecodeImageFile(picture.path.wstring());
  Require(decoded && decoded->bits_per_pixel == picture.bits_per_pixel, "the tool cannot read the picture");
  WriteFile(out, qlx::platform::EncodeBmp(*qlx::PrinterImage(*decoded, kStation)));
}

void ConvertByPixbuf(const Picture& picture, const fs::path& out) {
  const qlx::platform::DecodedImage decoded{DecodedByPixbuf(picture.path), picture.bits_per_pixel};
  WriteFile(out, qlx::platform::EncodeBmp(*qlx::PrinterImage(decoded, kStation)));
}

void ConvertByGraphicsMagick(const Picture& picture, const fs::path& tones, const fs::path& out) {
  std::vector<std::string> arguments = {"gm", "convert", picture.path, "-filter", "Box"};
  arguments.insert(arguments.end(), {"-resize", "576x432!"});
  if (picture.bits_per_pixel > 8) arguments.insert(arguments.end(), {"-dither", "-map", tones});
  arguments.insert(arguments.end(), {"-type", "TrueColor", "BMP3:" + out.native()});
  RunProgram(arguments);
}

/// The same rule as a hand-written loop has it: one pixel in registers, the edges apart from the inner loop.
void DitherTightly(RgbImage& image) {
  const auto cut = [](int value) { return value < 0 ? 0 : value > 255 ? 255 : value; };
  const int width = image.width;
  for (int y = 0; y < image.height; ++y) {
    std::uint8_t* p = image.pixels.get() + static_cast<std::size_t>(y) * image.stride;
    std::uint8_t* below = y + 1 < image.height ? p + image.stride : nullptr;
    int pixel[3] = {p[0], p[1], p[2]};
    for (int x = 0; x < width; ++x, p += 3) {
      const int tone = pixel[0] + pixel[1] + pixel[2] >= 300 ? 200 : 0;
      const bool right = x + 1 < width;
      for (int c = 0; c < 3; ++c) {
        const int error = pixel[c] - tone;
        if (below != nullptr) {
          if (x > 1) below[c - 3] = static_cast<std::uint8_t>(cut(below[c - 3] + (error * 3 >> 4)));
          below[c] = static_cast<std::uint8_t>(cut(below[c] + (error * 5 >> 4)));
          if (right) below[c + 3] = static_cast<std::uint8_t>(cut(below[c + 3] + (error >> 4)));
        }
        if (right) pixel[c] = cut(p[c + 3] + (error * 7 >> 4));
        p[c] = static_cast<std::uint8_t>(tone);
      }
      if (below != nullptr) below += 3;
    }
  }
}

bool SamePixels(const RgbImage& one, const RgbImage& other) {
  for (int y = 0; y < one.height; ++y) {
    if (!std::ranges::equal(one.Row(y), other.Row(y))) return false;
  }
  return true;
}

bool Dithers() {
  const RgbImage source = Photograph(qlx::RowOf(kStation).limit);
  const auto copy = [&] { return qlx::Cropped(source, {source.width, source.height}); };
  RgbImage ours = copy();
  RgbImage theirs = copy();
  qlx::Dither(ours);
  DitherTightly(theirs);
  Require(SamePixels(ours, theirs), "the two loops disagree");

  const auto pixels = static_cast<double>(source.width) * source.height * kDithers / 1e6;
  const auto speed = [&](void (*dither)(RgbImage&)) {
    std::vector<RgbImage> images;
    images.reserve(kDithers);
    for (int i = 0; i < kDithers; ++i) images.push_back(copy());
    return pixels / Seconds([&] { std::ranges::for_each(images, dither); });
  };
  Rounds rounds("Reduce 576 x 896 pixels to two tones", "million pixels/s");
  rounds.Add("tight loop", [&] { return speed(DitherTightly); }).Add("Dither", [&] {
    return speed(qlx::Dither);
  });
  rounds.Run(9);
  return rounds.AtLeast(0.55, "Dither", "tight loop");
}

bool Memory(const Picture& picture, const fs::path& out) {
  Rounds rounds(std::string("Peak memory, 12 megapixels, ") + picture.format, "MiB");
  rounds.Add("gdk-pixbuf decodes", [&] { return PeakMemory([&] { DecodedByPixbuf(picture.path); }); })
      .Add("tool converts", [&] { return PeakMemory([&] { ConvertByTool(picture, out); }); });
  rounds.Run(5);
  return rounds.AtMost(1.15, "tool converts", "gdk-pixbuf decodes");
}

bool Conversion(const Picture& picture, const fs::path& tones, const fs::path& out) {
  const auto milliseconds = [](auto&& convert) { return Seconds(convert) * 1000; };
  Rounds rounds(std::string("Convert 12 megapixels, ") + picture.format, "ms");
  rounds
      .Add("gdk-pixbuf and the same loops",
           [&] { return milliseconds([&] { ConvertByPixbuf(picture, out); }); })
      .Add("tool", [&] { return milliseconds([&] { ConvertByTool(picture, out); }); })
      .Add("gm convert", [&] { return milliseconds([&] { ConvertByGraphicsMagick(picture, tones, out); }); });
  rounds.Run(7);
  const bool close = rounds.AtMost(1.15, "tool", "gdk-pixbuf and the same loops");
  return rounds.AtMost(1, "tool", "gm convert") && close;
}

void WritePictures(const Picture& jpeg, const Picture& bmp, const Picture& gif, const fs::path& tones) {
  WriteFile(bmp.path, qlx::platform::EncodeBmp(Photograph(kPhotograph)));
  GdkPixbuf* pixbuf = gdk_pixbuf_new_from_file(bmp.path.c_str(), nullptr);
  Require(pixbuf != nullptr, "the bitmap cannot be read again");
  Require(gdk_pixbuf_save(pixbuf, jpeg.path.c_str(), "jpeg", nullptr, "quality", "90", nullptr) != FALSE,
          "the JPEG cannot be written");
  RunProgram({"gm", "convert", bmp.path, gif.path});
  std::ofstream(tones) << "P3 2 1 255 200 200 200 0 0 0\n";
}

}  // namespace

int main() {
  std::string name = (fs::temp_directory_path() / "qlx-logo-XXXXXX").native();
  const fs::path directory = mkdtemp(name.data());
  const Picture jpeg = {"JPEG", directory / "photograph.jpg", 24};
  const Picture bmp = {"BMP", directory / "photograph.bmp", 24};
  const Picture gif = {"GIF", directory / "photograph.gif", 8};
  const fs::path tones = directory / "tones.ppm";
  const fs::path out = directory / "out.bmp";
  // In another process too: this one has to stay small until memory has been measured.
  PeakMemory([&] { WritePictures(jpeg, bmp, gif, tones); });
  bool well = true;
  for (const Picture* picture : {&jpeg, &bmp, &gif}) well = Memory(*picture, out) && well;
  for (const Picture* picture : {&jpeg, &bmp, &gif}) well = Conversion(*picture, tones, out) && well;
  well = Dithers() && well;
  fs::remove_all(directory);
  return well ? 0 : 1;
}
