// The store between processes: two that write at once lose nothing, and one that is killed at any
// moment leaves a file that is whole and holds all that had been answered.
#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

#include "child_process.h"
#include "frame/frame_support.h"
#include "registry_support.h"

namespace kvarta16::registry_tests {
namespace {

using frame_tests::Random;
using namespace posix::registry;

posix::PosixRegistry registry_of(const Store& store) {
    return posix::PosixRegistry([user = store.user, machine = store.machine] {
        return posix::RegistryPlaces{user, machine};
    });
}

String numbered(const char* prefix, int number) {
    return from_utf8(prefix + std::to_string(number));
}

String long_text(int number) {
    return String(400, static_cast<char16_t>(u'0' + number % 10));
}

bool set(posix::PosixRegistry& registry, Long key, StringView name, StringView text) {
    return registry.RegSetValueExA(key, name, 0, REG_SZ, text, static_cast<Long>(text.size())) == 0;
}

TEST(Processes, ThatWriteAtOnceLoseNothing) {
    constexpr int processes = 4;
    constexpr int values = 12;
    Store store;
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        children.push_back(start_child([&] {
            posix::PosixRegistry registry([&] {
                return posix::RegistryPlaces{store.user, store.machine};
            });
            for (int i = 0; i < values; ++i) {
                Long key = 0;
                const String text = numbered("", 1000 * process + i);
                const bool stored =
                    registry.RegCreateKeyA(HKEY_CURRENT_USER, numbered("wspólny\\k", i % 7), key) ==
                        0 &&
                    set(registry, key, numbered("p", 1000 * process + i), text) &&
                    set(registry, HKEY_CURRENT_USER, u"ostatni", text) &&
                    registry.RegCloseKey(key) == 0;
                if (!stored) {
                    return false;
                }
            }
            return true;
        }));
    }
    for (const pid_t child : children) {
        EXPECT_EQ(wait_for(child), 0);
    }
    for (int process = 0; process < processes; ++process) {
        for (int i = 0; i < values; ++i) {
            const Long key = store.open(HKEY_CURRENT_USER, numbered("wspólny\\k", i % 7));
            ASSERT_EQ(store.get(key, numbered("p", 1000 * process + i)),
                      std::to_string(1000 * process + i));
        }
    }
    EXPECT_FALSE(std::filesystem::exists(store.user + ".new"));
}

TEST(Processes, ThreadsOfOneShareTheStore) {
    constexpr int threads = 4;
    constexpr int values = 10;
    Store store;
    std::atomic<int> failed = 0;
    {
        std::vector<std::jthread> running;
        running.reserve(threads);
        for (int thread = 0; thread < threads; ++thread) {
            running.emplace_back([&, thread] {
                for (int i = 0; i < values; ++i) {
                    Long key = 0;
                    const String name = numbered("t", 100 * thread + i);
                    Long type = 0;
                    Long size = 0;
                    const bool good =
                        store.registry.RegCreateKeyA(HKEY_CURRENT_USER, u"wspólny", key) == 0 &&
                        set(store.registry, key, name, name) &&
                        store.registry.RegQueryValueExA(key, name, type, nullptr, size) == 0 &&
                        store.registry.RegCloseKey(key) == 0;
                    failed += good ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(failed, 0);
    const Long key = store.open(HKEY_CURRENT_USER, u"wspólny");
    for (int thread = 0; thread < threads; ++thread) {
        for (int i = 0; i < values; ++i) {
            const String name = numbered("t", 100 * thread + i);
            ASSERT_EQ(store.get(key, name), to_utf8(name));
        }
    }
    EXPECT_EQ(store.registry.open_keys(), 1U);
}

TEST(Processes, ThatAreKilledLeaveAWholeFile) {
    constexpr int rounds = 40;
    Random random(20240517);
    Store store;
    int answered = 0;
    for (int round = 0; round < rounds; ++round) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = start_child([&] {
            posix::PosixRegistry registry = registry_of(store);
            Long key = 0;
            if (registry.RegCreateKeyA(HKEY_CURRENT_USER, u"a\\b", key) != 0) {
                return false;
            }
            for (int i = answered;; ++i) {
                if (!set(registry, key, numbered("n", i), long_text(i)) ||
                    ::write(ends[1], "x", 1) != 1) {
                    return false;
                }
            }
        });
        ::close(ends[1]);
        // Some time into the next write, or in every fourth round into the first one.
        char byte = 0;
        if (round % 4 != 0 && ::read(ends[0], &byte, 1) == 1) {
            ++answered;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random.between(0, 30000)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        EXPECT_TRUE(WIFSIGNALED(wait_for(child)));
        while (::read(ends[0], &byte, 1) == 1) {
            ++answered;
        }
        ::close(ends[0]);
        if (answered == 0) {
            continue;
        }
        const Key tree = read_tree(read_file(store.user));
        const Key* key = find_key(tree, Path{u"HKEY_CURRENT_USER", u"a", u"b"});
        ASSERT_NE(key, nullptr);
        // The one after the last that was answered may be there or not.
        ASSERT_GE(static_cast<int>(key->values.size()), answered);
        ASSERT_LE(static_cast<int>(key->values.size()), answered + 1);
        for (int i = 0; i < answered; ++i) {
            const Value* value = find_value(*key, numbered("n", i));
            ASSERT_NE(value, nullptr) << i << " of " << answered;
            ASSERT_EQ(value->data, data_of(long_text(i)));
        }
    }
    EXPECT_GT(answered, rounds / 2);
    // What is left beside the file is in nobody's way.
    EXPECT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"1"), 0);
    EXPECT_FALSE(std::filesystem::exists(store.user + ".new"));
}

// A reader sees the content before a write or after it, and never less.
TEST(Processes, AReaderSeesWholeContents) {
    Store store;
    ASSERT_EQ(store.set(HKEY_CURRENT_USER, u"n", u"0"), 0);
    const pid_t writer = start_child([&] {
        posix::PosixRegistry registry = registry_of(store);
        for (int i = 1;; ++i) {
            if (!set(registry, HKEY_CURRENT_USER, u"n", numbered("", i)) ||
                !set(registry, HKEY_CURRENT_USER, u"długa", String(2000, u'x'))) {
                return false;
            }
        }
    });
    int last = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(700);
    while (std::chrono::steady_clock::now() < end) {
        const std::string text = store.get(HKEY_CURRENT_USER, u"n");
        // The two questions of one get() can fall on two contents of different lengths.
        if (text == "status 234" || text.ends_with(' ')) {
            continue;
        }
        const int now = std::stoi(text);
        ASSERT_GE(now, last);
        last = now;
    }
    ASSERT_EQ(::kill(writer, SIGKILL), 0);
    EXPECT_TRUE(WIFSIGNALED(wait_for(writer)));
    EXPECT_GT(last, 3);
}

}  // namespace
}  // namespace kvarta16::registry_tests
