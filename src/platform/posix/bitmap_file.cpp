#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <kvarta16/platform/posix/bitmap_file.h>

namespace kvarta16::posix {
namespace {

// How the pixels are stored.
enum Compression : std::int64_t { plain = 0, runs_of_8 = 1, runs_of_4 = 2, masked = 3 };

// The bytes from the beginning of the file up to the fields that are read here.
constexpr std::int64_t file_header_size = 14;
constexpr std::int64_t core_header_size = 12;
constexpr std::int64_t info_header_size = 40;
constexpr std::size_t most_read = 54;
constexpr std::int64_t mask_bytes = 12;  // three, behind the header of 40 bytes

// The fields of either header, in the file's order of bytes, the low one first.
class Bytes {
  public:
    explicit Bytes(std::istream& file) { file.read(bytes_.data(), most_read); }

    [[nodiscard]] std::int64_t word(std::size_t at) const { return byte(at) | byte(at + 1) << 8; }
    [[nodiscard]] std::int64_t unsigned_long(std::size_t at) const {
        return word(at) | word(at + 2) << 16;
    }
    [[nodiscard]] std::int64_t signed_long(std::size_t at) const {
        return wrap32(unsigned_long(at));
    }

  private:
    [[nodiscard]] std::int64_t byte(std::size_t at) const {
        return static_cast<unsigned char>(bytes_[at]);
    }
    std::array<char, most_read> bytes_{};  // zeros behind the end of a short file
};

struct Header {
    std::int64_t pixels_at = 0;
    std::int64_t size = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t planes = 0;
    std::int64_t bits = 0;
    std::int64_t compression = plain;
    std::int64_t pixel_bytes = 0;  // 0: as many as the size of the picture makes
    std::int64_t colours = 0;      // 0: as many as the bits make
};

Header read_header(const Bytes& bytes) {
    Header header;
    header.pixels_at = bytes.unsigned_long(10);
    header.size = bytes.unsigned_long(14);
    if (header.size == core_header_size) {
        header.width = bytes.word(18);
        header.height = bytes.word(20);
        header.planes = bytes.word(22);
        header.bits = bytes.word(24);
        return header;
    }
    header.width = bytes.signed_long(18);
    header.height = bytes.signed_long(22);
    header.planes = bytes.word(26);
    header.bits = bytes.word(28);
    header.compression = bytes.unsigned_long(30);
    header.pixel_bytes = bytes.unsigned_long(34);
    header.colours = bytes.unsigned_long(46);
    return header;
}

bool is_one_of(std::int64_t value, std::initializer_list<std::int64_t> values) {
    return std::ranges::find(values, value) != values.end();
}

bool is_known_kind(const Header& header) {
    const bool is_core = header.size == core_header_size;
    if (!is_one_of(header.size, {core_header_size, info_header_size, 52, 56, 108, 124}) ||
        header.planes != 1) {
        return false;
    }
    switch (header.compression) {
        case plain:
            return is_one_of(header.bits, {1, 4, 8, 24}) ||
                   (!is_core && is_one_of(header.bits, {16, 32}));
        case runs_of_8:
            return header.bits == 8 && header.height > 0;
        case runs_of_4:
            return header.bits == 4 && header.height > 0;
        case masked:
            return is_one_of(header.bits, {16, 32});
        default:
            return false;
    }
}

// The end of the header with its masks and colours.
std::int64_t end_of_colours(const Header& header) {
    const std::int64_t end =
        file_header_size + header.size +
        (header.compression == masked && header.size == info_header_size ? mask_bytes : 0);
    if (header.bits > 8) {
        return end;
    }
    const std::int64_t all = std::int64_t{1} << header.bits;
    const std::int64_t count = header.colours == 0 ? all : std::min(header.colours, all);
    return end + count * (header.size == core_header_size ? 3 : 4);
}

// Rows fill up to whole units of 32 bits. At least a byte for what is stored by runs.
std::int64_t bytes_of_pixels(const Header& header) {
    if (header.compression == runs_of_8 || header.compression == runs_of_4) {
        return std::max<std::int64_t>(header.pixel_bytes, 1);
    }
    const std::int64_t row = (header.width * header.bits + 31) / 32 * 4;
    return row * std::abs(header.height);
}

bool fits(const Header& header, std::int64_t file_size) {
    // The widest and highest stay far within 64 bits: 2^31 pixels of 32 bits in 2^31 rows do not.
    constexpr std::int64_t most = std::int64_t{1} << 30;
    return header.width > 0 && header.width <= most && header.height != 0 &&
           std::abs(header.height) <= most && end_of_colours(header) <= file_size &&
           header.pixels_at >= file_header_size + header.size && header.pixels_at <= file_size &&
           bytes_of_pixels(header) <= file_size - header.pixels_at;
}

}  // namespace

std::optional<BitmapHeader> bitmap_header(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code problem;
    if (!fs::is_regular_file(path, problem)) {
        return std::nullopt;
    }
    const auto file_size = static_cast<std::int64_t>(fs::file_size(path, problem));
    std::ifstream file(path, std::ios::binary);
    if (problem || !file || file_size < file_header_size + core_header_size) {
        return std::nullopt;
    }
    const Bytes bytes(file);
    constexpr std::int64_t signature = 'B' | 'M' << 8;
    const Header header = read_header(bytes);
    if (bytes.word(0) != signature || !is_known_kind(header) || !fits(header, file_size)) {
        return std::nullopt;
    }
    return BitmapHeader{static_cast<Long>(header.width), static_cast<Long>(std::abs(header.height)),
                        static_cast<Integer>(header.bits)};
}

}  // namespace kvarta16::posix
