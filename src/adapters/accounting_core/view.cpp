#include <map>
#include <stdexcept>

#include "adapters/accounting_core/store.h"
#include "adapters/store_schema/view_keys.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora::accounting {

namespace {

class SqlView final : public View {
public:
    SqlView(std::shared_ptr<Store> store, const Relation& relation) : store_(std::move(store)), relation_(relation) {}

    void Init() override;
    void Order(int key) override;
    void Browse(std::string_view filter, bool ascending) override;
    bool Fetch() override;
    bool Read() override;
    void Compose(std::span<View* const> partners) override;
    void Cancel() override;
    void Close() noexcept override;
    [[nodiscard]] Value field(std::string_view name) const override;
    void PutWithoutVerification(std::string_view name, const Value& value) override;

private:
    void require_open() const;
    [[nodiscard]] size_t field_position(std::string_view name) const;
    void start(const std::vector<Condition>& conditions, bool ascending, const std::string& where);
    bool step();
    void forget();

    std::shared_ptr<Store> store_;
    const Relation& relation_;
    std::unique_ptr<RelationRows> rows_;
    std::map<size_t, Value> put_;
    bool has_row_ = false;
    bool is_browsing_ = false;
    bool is_open_ = true;
};

void SqlView::Init()
{
    require_open();
    forget();
}

void SqlView::Order(int key)
{
    require_open();
    if (key != 0)
        store_->fail("The view " + relation_.id() + " has no key " + std::to_string(key) + ".", relation_.id());
}

void SqlView::Browse(std::string_view filter, bool ascending)
{
    require_open();
    const std::string where = relation_.id() + ": " + std::string(filter);
    try {
        start(read_filter(filter), ascending, where);
    } catch (const std::invalid_argument& error) {
        store_->fail("View " + relation_.id() + ": " + error.what(), where);
    }
    is_browsing_ = true;
}

/// A view that has no filter yet is browsed as a whole. The end of a browse stays its end.
bool SqlView::Fetch()
{
    require_open();
    if (!is_browsing_) Browse("", true);
    return step();
}

bool SqlView::Read()
{
    require_open();
    std::vector<Condition> key;
    for (const auto name : key_columns(relation_.id())) {
        const auto value = put_.find(field_position(name));
        const bool is_blank = value == put_.end() || value->second.is_null();
        key.push_back({std::string(name), Condition::Operator::Equal, is_blank ? "" : trimmed_text(value->second)});
    }
    start(key, true, relation_.id());
    is_browsing_ = true;
    return step();
}

/// The rows of a composed view do not depend on its partners here.
void SqlView::Compose(std::span<View* const>)
{
    require_open();
}

void SqlView::Cancel()
{
    require_open();
    forget();
}

void SqlView::Close() noexcept
{
    forget();
    is_open_ = false;
}

Value SqlView::field(std::string_view name) const
{
    require_open();
    const size_t position = field_position(name);
    Value value;
    if (has_row_) {
        value = rows_->value(position);
    } else if (const auto put = put_.find(position); put != put_.end()) {
        value = put->second;
    }
    return value.is_null() ? Value("") : value;
}

void SqlView::PutWithoutVerification(std::string_view name, const Value& value)
{
    require_open();
    put_[field_position(name)] = value;
}

void SqlView::require_open() const
{
    if (!is_open_) store_->fail("The view " + relation_.id() + " is closed.", relation_.id());
}

size_t SqlView::field_position(std::string_view name) const
{
    try {
        return relation_.field(name);
    } catch (const Fault&) {
        store_->fail("The view " + relation_.id() + " has no field " + std::string(name) + ".", std::string(name));
    }
}

void SqlView::start(const std::vector<Condition>& conditions, bool ascending, const std::string& where)
{
    rows_.reset();
    has_row_ = false;
    try {
        rows_ = store_->source().select(relation_.browse(conditions, ascending));
    } catch (const StoreError& error) {
        store_->fail("View " + relation_.id() + ": " + error.what() + ".", where);
    } catch (const Fault& fault) {
        store_->fail("The view " + relation_.id() + " has no field " + fault.where() + ".", where);
    }
}

bool SqlView::step()
{
    has_row_ = false;
    if (!rows_) return false;
    try {
        has_row_ = rows_->step();
    } catch (const StoreError& error) {
        store_->fail("View " + relation_.id() + ": " + error.what() + ".", relation_.id());
    }
    if (!has_row_) rows_.reset();
    return has_row_;
}

void SqlView::forget()
{
    rows_.reset();
    put_.clear();
    has_row_ = false;
    is_browsing_ = false;
}

}  // namespace

std::unique_ptr<View> open_view(const std::shared_ptr<Store>& store, const std::string& view_id)
{
    return std::make_unique<SqlView>(store, store->relation(view_id));
}

}  // namespace velora::accounting
