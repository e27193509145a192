// The header of a bitmap's file.
//
// Taken are the files of Windows: "BM", then a header of 12, 40, 52, 56, 108 or 124 bytes, of one
// plane, of 1, 4, 8, 16, 24 or 32 bits per pixel (the header of 12 bytes knows no 16 and 32), not
// compressed, or by runs (8 and 4 bits), or with colour masks (16 and 32 bits). A height below 0,
// rows from the top, is for what is not compressed by runs. The colours and the pixels that the
// header announces must be in the file; what the file says of its own length does not matter.
#pragma once

#include <optional>
#include <string>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

struct BitmapHeader {
    Long width = 0;
    Long height = 0;  // without its sign
    Integer bits_per_pixel = 0;
};

// `path` is the system's. Nothing for a file that is missing, no plain file, or no bitmap.
[[nodiscard]] std::optional<BitmapHeader> bitmap_header(const std::string& path);

}  // namespace kvarta16::posix
