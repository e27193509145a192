#include <algorithm>
#include <cstdint>
#include <type_traits>

#include <support/memory_ado.h>

#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

class MemoryRecordset final : public ado::Recordset {
  public:
    explicit MemoryRecordset(std::shared_ptr<MemoryConnection> creator)
        : creator_(std::move(creator)) {
        ++creator_->recordsets_alive;
    }
    ~MemoryRecordset() override {
        --creator_->recordsets_alive;
        creator_->log.emplace_back("release");
    }
    MemoryRecordset(const MemoryRecordset&) = delete;
    MemoryRecordset& operator=(const MemoryRecordset&) = delete;
    MemoryRecordset(MemoryRecordset&&) = delete;
    MemoryRecordset& operator=(MemoryRecordset&&) = delete;

    void Open(StringView source, const std::shared_ptr<ado::Connection>& active_connection,
              ado::CursorType cursor_type, ado::LockType lock_type, Long options) override {
        const auto number = [](auto value) { return std::to_string(static_cast<Long>(value)); };
        creator_->log.push_back("Open(" + to_utf8(source) + "; " + number(cursor_type) + ", " +
                                number(lock_type) + ", " + number(options) + ")");
        if (active_connection != creator_ || !creator_->is_open) {
            throw Failure(ado::error_invalid_connection, u"no connection, or a closed one");
        }
        if (is_open_) {
            throw Failure(ado::error_object_open, u"the recordset is open already");
        }
        creator_->statements.emplace_back(source);
        key_ = creator_->key_of(source);
        const auto stored = creator_->rows.find(key_);
        found_ = stored != creator_->rows.end() ? stored->second : std::vector<Row>{};
        fields_.clear();
        for (String& name : selected_columns(source)) {
            fields_.push_back(std::make_unique<MemoryField>(*this, std::move(name)));
        }
        position_ = 0;
        is_open_ = true;
        read_current_row();
    }
    bool IsEOF() override {
        begin("EOF");
        return !is_new_ && position_ >= found_.size();
    }
    void AddNew() override {
        begin("AddNew");
        is_new_ = true;
        current_.assign(fields_.size(), Variant::null());
    }
    ado::Field& Fields(const Variant& item) override {
        begin("Fields(" + logged(item) + ")");
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (is_named(item, i)) {
                return *fields_[i];
            }
        }
        throw Failure(ado::error_item_not_found, u"no such column");
    }
    void UpdateBatch(ado::Affect affect_records) override {
        begin("UpdateBatch(" + std::to_string(static_cast<Long>(affect_records)) + ")");
        require_row();
        std::vector<Row>& rows = creator_->rows[key_];
        if (is_new_) {
            position_ = found_.size();
            found_.push_back(current_);
            rows.push_back(current_);
            is_new_ = false;
        } else {
            found_[position_] = current_;
            rows.at(position_) = current_;
        }
        creator_->stored.emplace_back(key_, current_);
    }
    void MoveNext() override {
        begin("MoveNext");
        ++position_;
        is_new_ = false;
        read_current_row();
    }
    void Close() override {
        begin("Close");
        is_open_ = false;
        is_new_ = false;
        current_.clear();
    }

  private:
    using Row = MemoryConnection::Row;

    class MemoryField final : public ado::Field {
      public:
        MemoryField(MemoryRecordset& owner, String name) : owner_(&owner), name_(std::move(name)) {}
        String Name() override {
            owner_->begin("Name");
            return name_;
        }
        Variant Value() override {
            owner_->begin("Value");
            return cell();
        }
        void PutValue(const Variant& value) override {
            owner_->begin("Value = " + logged(value));
            cell() = value.value();
        }
        [[nodiscard]] const String& name() const { return name_; }

      private:
        Variant& cell() {
            owner_->require_row();
            const auto self =
                std::ranges::find(owner_->fields_, this, &std::unique_ptr<MemoryField>::get);
            return owner_->current_[static_cast<std::size_t>(self - owner_->fields_.begin())];
        }

        MemoryRecordset* owner_;
        String name_;
    };

    void begin(std::string entry) {
        creator_->log.push_back(std::move(entry));
        if (!is_open_ || !creator_->is_open) {
            throw Failure(ado::error_object_closed, u"the recordset is closed");
        }
    }
    void require_row() const {
        if (current_.empty()) {
            throw Failure(ado::error_no_current_record, u"neither a row found nor one added");
        }
    }
    [[nodiscard]] bool is_named(const Variant& item, std::size_t index) const {
        const String* name = item.get_if<String>();
        return name != nullptr ? lower_case(*name) == lower_case(fields_[index]->name())
                               : ToLong(item) == static_cast<Long>(index);
    }
    void read_current_row() {
        current_.clear();
        if (position_ < found_.size()) {
            current_ = found_[position_];
        }
    }

    std::shared_ptr<MemoryConnection> creator_;
    String key_;
    std::vector<Row> found_;  // as they stood when the statement was opened
    std::vector<std::unique_ptr<MemoryField>> fields_;
    Row current_;  // empty: there is none
    std::size_t position_ = 0;
    bool is_new_ = false;
    bool is_open_ = false;
};

std::string logged(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> std::string {
        if constexpr (std::is_same_v<T, NullValue>) {
            return "Null";
        } else if constexpr (std::is_same_v<T, Integer>) {
            return "Integer " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Long>) {
            return "Long " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Double>) {
            return "Double " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Boolean>) {
            return "Boolean " + std::to_string(held.raw);
        } else if constexpr (std::is_same_v<T, String>) {
            return "String " + to_utf8(held);
        } else if constexpr (std::is_same_v<T, Date>) {
            const Civil day = civil_of(static_cast<Long>(held.days));
            const auto two = [](Long n) { return (n < 10 ? "0" : "") + std::to_string(n); };
            const bool midnight = held.days == static_cast<Double>(static_cast<Long>(held.days));
            return "Date " + std::to_string(day.year) + "-" + two(day.month) + "-" + two(day.day) +
                   (midnight ? "" : " and a time");
        } else if constexpr (std::is_same_v<T, Currency>) {
            const bool negative = held.count < 0;
            std::string digits = std::to_string(held.count).substr(negative ? 1 : 0);
            digits.insert(0, digits.size() < 5 ? 5 - digits.size() : 0, '0');
            digits.insert(digits.size() - 4, ".");
            return std::string("Currency ") + (negative ? "-" : "") + digits;
        } else {
            return "subtype " + std::to_string(static_cast<int>(subtype_of<T>));
        }
    });
}

std::vector<String> selected_columns(StringView source) {
    std::vector<String> columns;
    const StringView list = source.substr(0, source.find(u"] ") + 1);
    for (std::size_t open = list.find(u'['); open != StringView::npos;) {
        const std::size_t close = list.find(u']', open);
        columns.emplace_back(list.substr(open + 1, close - open - 1));
        open = list.find(u'[', close);
    }
    return columns;
}

MemoryConnection::MemoryConnection() = default;

MemoryConnection::~MemoryConnection() = default;

void MemoryConnection::BeginTrans() {
    begin("BeginTrans");
    require(!before_transaction_.has_value());
    before_transaction_ = rows;
}

void MemoryConnection::CommitTrans() {
    begin("CommitTrans");
    require(before_transaction_.has_value());
    before_transaction_.reset();
}

void MemoryConnection::RollbackTrans() {
    begin("RollbackTrans");
    require(before_transaction_.has_value());
    rows = *std::exchange(before_transaction_, std::nullopt);
}

void MemoryConnection::Close() {
    begin("Connection.Close");
    is_open = false;
}

std::size_t MemoryConnection::row_count() const {
    std::size_t count = 0;
    for (const auto& [key, found] : rows) {
        count += found.size();
    }
    return count;
}

std::size_t MemoryConnection::calls(std::string_view text) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        log, [text](const std::string& entry) { return entry.starts_with(text); }));
}

void MemoryConnection::begin(std::string entry) {
    log.push_back(std::move(entry));
    if (!is_open) {
        throw Failure(ado::error_object_closed, u"the connection is closed");
    }
}

void MemoryConnection::require(bool condition) {
    if (!condition) {
        throw Failure(error::invalid_call, u"the transaction's state does not allow it");
    }
}

std::shared_ptr<ado::Recordset> MemoryConnection::CreateRecordset() {
    begin("CreateRecordset");
    return std::make_shared<MemoryRecordset>(shared_from_this());
}

}  // namespace kvarta16::testing_support
