#include <kvarta16/platform/unavailable.h>

namespace kvarta16 {
namespace {

class UnavailableFiles final : public Files {
  public:
    Long GetAttr(StringView) override { refuse(); }
    void Kill(StringView) override { refuse(); }
    std::string native_path(StringView) override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        throw Failure(error::file_not_found,
                      u"File not found: this program has no access to files");
    }
};

class UnavailableEngine final : public dao::DBEngine {
  public:
    std::shared_ptr<dao::Database> CreateDatabase(StringView, StringView) override { refuse(); }
    std::shared_ptr<dao::Database> OpenDatabase(StringView) override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        constexpr Long cannot_create_object = 429;
        throw Failure(cannot_create_object, u"This program has no engine for database files");
    }
};

}  // namespace

Files& unavailable_files() noexcept {
    static UnavailableFiles files;
    return files;
}

dao::DBEngine& unavailable_db_engine() noexcept {
    static UnavailableEngine engine;
    return engine;
}

}  // namespace kvarta16
