// A client on a server in memory. All that it asks of the platform, and its events, are written
// into one log, in order.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <support/fake_platform.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/forwarding.h>

namespace kvarta16::ftp_tests {

using namespace testing_support;

using Calls = std::vector<std::string>;
using Events = std::vector<std::pair<Long, Long>>;

// Where the pump lets something run, and tells that it was called.
class LoggedMessages final : public ForwardingMessages {
  public:
    LoggedMessages(Messages& target, std::vector<std::string>& log) noexcept
        : ForwardingMessages(target), log_(&log) {}
    void DoEvents() override {
        log_->emplace_back("DoEvents()");
        if (run) {
            run();
        }
    }

    std::function<void()> run;

  private:
    std::vector<std::string>* log_;
};

inline std::string bytes_of(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>((i * 7 + i / 100) % 251);
    }
    return bytes;
}

class Ftp : public testing::Test {
  protected:
    Ftp() {
        fake.operations.messages = &messages;
        fake.disk.add_folder(u"C:\\dane");
        ftp.ServerName(u"serwer");
        ftp.LoginName(u"ola");
        ftp.Password(u"tajne");
        ftp.FileTransferProgress = [this](Long& current, Long& total) {
            events.emplace_back(current, total);
            fake.disk.log.push_back("event(" + std::to_string(current) + "; " +
                                    std::to_string(total) + ")");
            if (on_event) {
                on_event(current, total);
            }
        };
    }

    // Session 1, connection 2; handles of files and searches are 3 and so on. The log begins anew.
    void connect() {
        ASSERT_EQ(ftp.Connect(), Boolean(true));
        fake.disk.log.clear();
    }
    // Connected, with the listing that a download looks its size up in; search 3.
    void connect_and_list() {
        connect();
        ASSERT_EQ(ftp.GetMatchingFiles(), Boolean(true));
        fake.disk.log.clear();
    }

    // What has been asked since the log was cleared.
    [[nodiscard]] const Calls& calls() const { return fake.disk.log; }
    [[nodiscard]] Calls calls_but_attributes() const {
        Calls rest;
        for (const std::string& call : calls()) {
            if (!call.starts_with("GetAttr(")) {
                rest.push_back(call);
            }
        }
        return rest;
    }

    // Puts faults before the operations of internet, files, file table, searches and messages.
    FaultPlan& faults() {
        if (!plan_) {
            plan_ = std::make_shared<FaultPlan>();
            internet_ = faulting(*fake.operations.internet, plan_);
            files_ = faulting(*fake.operations.files, plan_);
            file_table_ = faulting(*fake.operations.file_table, plan_);
            find_files_ = faulting(*fake.operations.find_files, plan_);
            fake.operations.internet = internet_.get();
            fake.operations.files = files_.get();
            fake.operations.file_table = file_table_.get();
            fake.operations.find_files = find_files_.get();
        }
        return *plan_;
    }

    // What LastError and LastErrorNumber tell, "" and 0 at first.
    [[nodiscard]] std::pair<String, Long> recorded() const {
        return {ftp.LastError(), ftp.LastErrorNumber()};
    }
    static inline const std::pair<String, Long> nothing{u"", 0};

    FakePlatform fake;
    LoggedMessages messages{fake.messages, fake.disk.log};
    clsFTP ftp;
    Events events;
    std::function<void(Long& current, Long& total)> on_event;

  private:
    std::shared_ptr<FaultPlan> plan_;
    std::unique_ptr<Internet> internet_;
    std::unique_ptr<Files> files_;
    std::unique_ptr<FileTable> file_table_;
    std::unique_ptr<FindFiles> find_files_;
};

}  // namespace kvarta16::ftp_tests
