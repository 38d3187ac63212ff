#include "adapters/accounting_sql/sqlite_source.h"

#include "adapters/sqlite_core/read_transaction.h"
#include "adapters/sqlite_core/statement.h"
#include "values/text.h"

namespace velora::accounting {

namespace {

/// Does the work; what the driver refuses is an error of the store.
template <class Work>
auto worded(Work work)
{
    try {
        return work();
    } catch (const sqlite::DriverError& error) {
        throw StoreError(error.what());
    }
}

std::string quoted(const std::string& name)
{
    return "\"" + replaced(name, "\"", "\"\"") + "\"";
}

FieldKind kind_of(const std::string& declared_type)
{
    if (declared_type.empty()) return FieldKind::Undeclared;
    for (const auto* mark : {"int", "real", "floa", "doub", "num", "dec", "money", "bit", "bool"}) {
        if (declared_type.find(mark) != std::string::npos) return FieldKind::Number;
    }
    return FieldKind::Text;
}

class SqliteWords final : public RelationWords {
public:
    [[nodiscard]] std::string relation(const std::string& id) const override { return quoted(id); }
    [[nodiscard]] std::string field(const std::string& name) const override { return quoted(name); }
    [[nodiscard]] std::string equals(const std::string& field) const override
    {
        return "trim(" + field + ") = ? COLLATE NOCASE";
    }
    [[nodiscard]] std::string comparable(const std::string& field) const override
    {
        return "ifnull(trim(" + field + "), '')";
    }
    [[nodiscard]] std::string comparable_mark() const override { return "? COLLATE NOCASE"; }
    [[nodiscard]] std::string by_stored_type(const std::string& field, const std::string& as_number,
                                             const std::string& as_text) const override
    {
        return "CASE WHEN typeof(" + field + ") IN ('integer', 'real') THEN " + as_number + " ELSE " + as_text + " END";
    }

    [[nodiscard]] std::string sort_term(const std::string& field, FieldKind kind) const override
    {
        if (kind == FieldKind::Number) return field;
        if (kind == FieldKind::Text) return "trim(" + field + ") COLLATE NOCASE";
        return "CASE WHEN typeof(" + field + ") = 'text' THEN trim(" + field + ") ELSE " + field +
               " END COLLATE NOCASE";
    }
};

class SqliteRows final : public RelationRows {
public:
    explicit SqliteRows(sqlite::StatementPool::Loan statement) : statement_(std::move(statement)) {}

    [[nodiscard]] const ColumnNames& names() const override { return *statement_->columns(); }
    bool step() override
    {
        return worded([&] { return statement_->step(); });
    }
    [[nodiscard]] Value value(size_t column) const override { return statement_->value(column); }

private:
    sqlite::StatementPool::Loan statement_;
};

class SqliteSource final : public RelationSource {
public:
    explicit SqliteSource(sqlite::Database database)
        : pool_(std::make_shared<sqlite::StatementPool>(std::move(database)))
    {
    }

    [[nodiscard]] const RelationWords& words() const override { return words_; }

    RelationShape shape(const std::string& id) override
    {
        const auto statement = worded([&] { return pool_->lend("SELECT * FROM " + words_.relation(id)); });
        RelationShape shape{statement->columns(), {}};
        for (size_t column = 0; column < shape.names->count(); ++column) {
            shape.kinds.push_back(kind_of(statement->declared_type(column)));
        }
        return shape;
    }

    std::unique_ptr<RelationRows> select(const RelationQuery& query) override
    {
        return worded([&] {
            auto statement = pool_->lend(query.sql);
            int mark = 0;
            for (const auto& value : query.values) statement->bind(++mark, value);
            return std::make_unique<SqliteRows>(std::move(statement));
        });
    }

    std::unique_ptr<Snapshot> begin_snapshot() override
    {
        return worded([&] { return sqlite::ReadTransaction::begin(pool_); });
    }

private:
    SqliteWords words_;
    std::shared_ptr<sqlite::StatementPool> pool_;
};

}  // namespace

std::unique_ptr<RelationSource> make_sqlite_source(sqlite::Database database)
{
    return std::make_unique<SqliteSource>(std::move(database));
}

}  // namespace velora::accounting
