// The finder on a folder of 100 000 files, beside the standard library's walk and sort.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <kvarta16/files/CFileFind.h>
#include <kvarta16/frame/utf8.h>

namespace {

using namespace kvarta16;
namespace fs = std::filesystem;

constexpr int file_count = 100'000;

// Made at the first use, gone when the program ends.
class FullFolder {
  public:
    FullFolder() {
        std::string name = (fs::temp_directory_path() / "kvarta16-find-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder " + name);
        }
        path = name;
        for (int i = 0; i < file_count; ++i) {
            // Spread over the names, so that the order of making is none of sorting.
            const unsigned spread = static_cast<unsigned>(i) * 2654435761U;
            char file_name[32];
            std::snprintf(file_name, sizeof file_name, "faktura_%010u.txt", spread);
            std::ofstream(path / file_name) << i;
        }
    }
    ~FullFolder() {
        std::error_code ignored;  // a benchmark has nobody to tell
        fs::remove_all(path, ignored);
    }
    FullFolder(const FullFolder&) = delete;
    FullFolder& operator=(const FullFolder&) = delete;
    FullFolder(FullFolder&&) = delete;
    FullFolder& operator=(FullFolder&&) = delete;

    fs::path path;
};

const FullFolder& full_folder() {
    static const FullFolder folder;
    return folder;
}

void FindFile_100000(benchmark::State& state) {
    String pattern = u"Z:" + from_utf8(full_folder().path.string()) + u"\\*.*";
    std::ranges::replace(pattern, u'/', u'\\');
    for (auto _ : state) {
        CFileFind find;
        if (!find.FindFile(pattern)) {
            state.SkipWithError("nothing is found");
            break;
        }
        benchmark::DoNotOptimize(find.GetLength());
    }
}
BENCHMARK(FindFile_100000)->Unit(benchmark::kMillisecond);

// The names alone.
void directory_iterator_and_sort_100000(benchmark::State& state) {
    const fs::path& path = full_folder().path;
    for (auto _ : state) {
        std::vector<fs::path> entries;
        for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
            entries.push_back(entry.path());
        }
        std::sort(entries.begin(), entries.end());
        benchmark::DoNotOptimize(entries.data());
    }
}
BENCHMARK(directory_iterator_and_sort_100000)->Unit(benchmark::kMillisecond);

// With the size and the time of each, which the finder has too.
void directory_iterator_with_status_and_sort_100000(benchmark::State& state) {
    struct Entry {
        fs::path path;
        std::uintmax_t size;
        fs::file_time_type time;
    };
    const fs::path& path = full_folder().path;
    for (auto _ : state) {
        std::vector<Entry> entries;
        for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
            entries.push_back({entry.path(), entry.file_size(), entry.last_write_time()});
        }
        std::ranges::sort(entries, {}, &Entry::path);
        benchmark::DoNotOptimize(entries.data());
    }
}
BENCHMARK(directory_iterator_with_status_and_sort_100000)->Unit(benchmark::kMillisecond);

}  // namespace
