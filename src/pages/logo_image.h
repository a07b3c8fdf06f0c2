// What becomes of a picture before a receipt printer prints it. Integers only: the same picture gives the
// same bytes on every platform. All functions may be called from any thread.
#pragma once

#include <optional>

#include "pages/logo_station.h"
#include "platform/image_file.h"

namespace qlx {

/// A picture of `size`, both sides at least 1, whose pixels are not set.
platform::RgbImage NewImage(PixelSize size);

/// The size that a picture of `size` is printed in. Rounding up to whole printer columns and bands enlarges
/// small pictures slightly, and a tall one is squeezed into the document insert station: both are wanted.
/// A side can be 0 when the picture is very long and thin.
PixelSize FitSize(PixelSize size, Station station);

/// `source` in `size`, larger or smaller. A pixel of the result is the mean of the source pixels under it,
/// weighted by the area covered, rounded to nearest, halves up. Takes memory for a row of the result beside
/// the result itself.
platform::RgbImage Scaled(const platform::RgbImage& source, PixelSize size);

/// The top left part of `source` that `limit` holds.
platform::RgbImage Cropped(const platform::RgbImage& source, PixelSize limit);

/// Reduces `image` to the light grey (200, 200, 200) and black by error diffusion (R. W. Floyd and
/// L. Steinberg, 1976) from the top left in rows. Unlike theirs, each of a pixel's sums is cut to 0..255 at
/// once, errors round towards minus infinity, and column 1 never passes an error to column 0: the printers'
/// logos have always looked so.
void Dither(platform::RgbImage& image);

/// `picture` as `station` prints it: fitted, and in two tones unless its file is a palette image (8 bits a
/// pixel or less), which keeps its colours. Empty when the fitted size has a side of 0.
std::optional<platform::RgbImage> PrinterImage(const platform::DecodedImage& picture, Station station);

}  // namespace qlx
