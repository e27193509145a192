// Five million bytes both ways through the internet seam, whole and in blocks of 100 bytes, beside
// libcurl, on one server of Python's pyftpdlib on this machine. Each side keeps its connection.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <support/ftp_servers.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/ftp/posix_internet.h>

namespace {

using namespace kvarta16;
using testing_support::FtpServer;
using testing_support::FtpServerKind;

constexpr std::size_t file_size = 5'000'000;
constexpr std::size_t block_size = 100;

void check(bool good, const char* what) {
    if (!good) {
        throw std::runtime_error(what);
    }
}

// The server, the connection to it, and a file on either side.
class Bench {
  public:
    Bench() : server_(testing_support::ftp_server(FtpServerKind::Pyftpdlib)) {
        check(server_.is_there(), server_.what_is_missing().c_str());
        std::ofstream(local(), std::ios::binary) << std::string(file_size, 'x');
        std::ofstream(server_.root() + "/five.bin", std::ios::binary)
            << std::string(file_size, 'y');
        const Long session = net.InternetOpenA(u"FTP Client", 0, u"", u"", 0);
        ftp = net.InternetConnectA(session, u"127.0.0.1", static_cast<Integer>(server_.port()),
                                   from_utf8(FtpServer::user), from_utf8(FtpServer::password),
                                   internet::service_ftp, internet::flag_passive, 0);
        check(ftp != 0, "connect");
    }
    ~Bench() { std::filesystem::remove(local()); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;
    Bench(Bench&&) = delete;
    Bench& operator=(Bench&&) = delete;

    static std::string local() {
        return (std::filesystem::temp_directory_path() / "kvarta16_bench_ftp.bin").string();
    }
    static String windows_local() { return u"Z:" + from_utf8(local()); }
    [[nodiscard]] std::string url(const std::string& name) const {
        return "ftp://127.0.0.1:" + std::to_string(server_.port()) + "/" + name;
    }

    posix::PosixInternet net;
    Long ftp = 0;

  private:
    FtpServer& server_;
};

Bench& bench() {
    static Bench one;
    return one;
}

void note_bytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file_size));
}

// ---- Ours -----------------------------------------------------------------------------------

void ftp_get_whole(benchmark::State& state) {
    Bench& b = bench();
    Long context = 0;
    for (auto _ : state) {
        check(b.net.FtpGetFileA(b.ftp, u"five.bin", Bench::windows_local(), false, 0, 0, context) !=
                  0,
              "get");
    }
    check(std::filesystem::file_size(Bench::local()) == file_size, "size");
    note_bytes(state);
}
BENCHMARK(ftp_get_whole)->Unit(benchmark::kMillisecond)->UseRealTime();

void ftp_get_blocks(benchmark::State& state) {
    Bench& b = bench();
    std::array<Byte, block_size> block{};
    Long count = 0;
    for (auto _ : state) {
        const Long file = b.net.FtpOpenFileA(b.ftp, u"five.bin", internet::generic_read, 2, 0);
        for (std::size_t done = 0; done < file_size; done += block_size) {
            check(b.net.InternetReadFile(file, block, count) != 0 && count == block_size, "read");
        }
        check(b.net.InternetCloseHandle(file) != 0, "close");
    }
    note_bytes(state);
}
BENCHMARK(ftp_get_blocks)->Unit(benchmark::kMillisecond)->UseRealTime();

void ftp_put_whole(benchmark::State& state) {
    Bench& b = bench();
    for (auto _ : state) {
        check(b.net.FtpPutFileA(b.ftp, Bench::windows_local(), u"put.bin", 2, 0) != 0, "put");
    }
    note_bytes(state);
}
BENCHMARK(ftp_put_whole)->Unit(benchmark::kMillisecond)->UseRealTime();

void ftp_put_blocks(benchmark::State& state) {
    Bench& b = bench();
    const std::array<Byte, block_size> block{};
    Long count = 0;
    for (auto _ : state) {
        const Long file = b.net.FtpOpenFileA(b.ftp, u"put.bin", internet::generic_write, 2, 0);
        for (std::size_t done = 0; done < file_size; done += block_size) {
            check(b.net.InternetWriteFile(file, block, count) != 0, "write");
        }
        check(b.net.InternetCloseHandle(file) != 0, "close");
    }
    note_bytes(state);
}
BENCHMARK(ftp_put_blocks)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- libcurl --------------------------------------------------------------------------------

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
    void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
};
using File = std::unique_ptr<std::FILE, Close>;
using Curl = std::unique_ptr<CURL, Close>;

Curl curl_for(const std::string& name) {
    Curl curl(curl_easy_init());
    curl_easy_setopt(curl.get(), CURLOPT_URL, bench().url(name).c_str());
    curl_easy_setopt(curl.get(), CURLOPT_USERNAME, FtpServer::user);
    curl_easy_setopt(curl.get(), CURLOPT_PASSWORD, FtpServer::password);
    return curl;
}

void curl_get_whole(benchmark::State& state) {
    const Curl curl = curl_for("five.bin");
    for (auto _ : state) {
        const File file(std::fopen(Bench::local().c_str(), "wb"));
        curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, file.get());
        check(curl_easy_perform(curl.get()) == CURLE_OK, "get");
    }
    note_bytes(state);
}
BENCHMARK(curl_get_whole)->Unit(benchmark::kMillisecond)->UseRealTime();

void curl_put_whole(benchmark::State& state) {
    const Curl curl = curl_for("put.bin");
    curl_easy_setopt(curl.get(), CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(file_size));
    for (auto _ : state) {
        const File file(std::fopen(Bench::local().c_str(), "rb"));
        curl_easy_setopt(curl.get(), CURLOPT_READDATA, file.get());
        check(curl_easy_perform(curl.get()) == CURLE_OK, "put");
    }
    note_bytes(state);
}
BENCHMARK(curl_put_whole)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
