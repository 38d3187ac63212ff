#include "host/query_table.h"

namespace velora {
namespace {

class QueryTable final : public TableSource {
public:
    QueryTable(std::shared_ptr<Connection> connection, Command command)
        : connection_(std::move(connection)), command_(std::move(command))
    {
        rewind();
        for (size_t at = 0; at < rows_->column_count(); ++at) fields_.push_back({rows_->column_name(at)});
    }

    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override
    {
        if (started_ && !rows_->at_eof()) rows_->MoveNext();
        started_ = true;
        return !rows_->at_eof();
    }
    void rewind() override
    {
        if (rows_ && !started_) return;
        rows_ = connection_->Open(command_, Cursor::Forward);
        started_ = false;
    }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows_->value(field); }

private:
    std::shared_ptr<Connection> connection_;
    Command command_;
    std::unique_ptr<Recordset> rows_;
    std::vector<Field> fields_;
    bool started_ = false;
};

}  // namespace

std::shared_ptr<TableSource> query_table(std::shared_ptr<Connection> connection, Command command)
{
    return std::make_shared<QueryTable>(std::move(connection), std::move(command));
}

}  // namespace velora
