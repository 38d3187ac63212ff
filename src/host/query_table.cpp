#include "host/query_table.h"

#include "values/fault.h"

namespace velora {
namespace {

class QueryTable final : public TableSource {
public:
    QueryTable(std::shared_ptr<Connection> connection, Command command, size_t most_rows)
        : connection_(std::move(connection)), command_(std::move(command)), most_rows_(most_rows)
    {
        rewind();
        if (rows_->column_count() == 0) throw refused("is no query: it gives no columns");
        for (size_t at = 0; at < rows_->column_count(); ++at) fields_.push_back({rows_->column_name(at)});
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (started_ && !rows_->at_eof()) rows_->MoveNext();
        started_ = true;
        if (rows_->at_eof()) return false;
        if (++count_ > most_rows_ && most_rows_ > 0) {
            throw refused("gives more than " + std::to_string(most_rows_) +
                          " rows. The key MostRows of velora.ini raises the limit");
        }
        return true;
    }
    void rewind() override
    {
        if (rows_ && !started_) return;
        rows_ = connection_->Stream(command_);
        started_ = false;
        count_ = 0;
    }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows_->value(field); }

private:
    [[nodiscard]] Fault refused(const std::string& why) const
    {
        return {fault::kDatabase, "The statement of the definition " + why + ".", command_.text};
    }

    std::shared_ptr<Connection> connection_;
    Command command_;
    size_t most_rows_;
    size_t count_ = 0;
    std::unique_ptr<Rows> rows_;
    std::vector<Field> fields_;
    bool started_ = false;
};

}  // namespace

std::shared_ptr<TableSource> query_table(std::shared_ptr<Connection> connection, Command command, size_t most_rows)
{
    return std::make_shared<QueryTable>(std::move(connection), std::move(command), most_rows);
}

}  // namespace velora
