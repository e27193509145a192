// Runs a fuzz target over the inputs that are kept for it: `NAME_replay FOLDER`. Each file is named
// before its turn, so that the last line before the end of a run that failed says which one it was.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int run(const std::filesystem::path& file) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> read{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) {
        std::fprintf(stderr, "%s cannot be read\n", file.c_str());
        return 1;
    }
    // A copy of just its size, so that a sanitizer sees a read beyond its end.
    const std::vector<std::uint8_t> input(read.begin(), read.end());
    return LLVMFuzzerTestOneInput(input.data(), input.size()) == 0 ? 0 : 1;
}

}  // namespace

int main(int argument_count, char** arguments) {
    if (argument_count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1], error)) {
        files.push_back(entry.path());
    }
    if (error || files.empty()) {
        std::fprintf(stderr, "no inputs are kept in %s\n", arguments[1]);
        return 1;
    }
    std::ranges::sort(files);
    const bool all_ran =
        std::ranges::all_of(files, [](const auto& file) { return run(file) == 0; });
    return all_ran ? 0 : 1;
}
