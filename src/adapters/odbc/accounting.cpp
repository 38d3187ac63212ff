#include "adapters/accounting_core/session.h"
#include "adapters/odbc/connection.h"
#include "adapters/odbc/link.h"
#include "values/text.h"

namespace velora {

namespace {

using accounting::FieldKind;
using accounting::RelationQuery;
using accounting::RelationRows;
using accounting::RelationShape;
using accounting::StoreError;
using odbc::DriverError;
using odbc::Server;

/// Words of a server. What compares without case and without blanks behind is its collation; PostgreSQL, which has no
/// such thing in a plain text, compares by an expression, and its indexes are made on it.
class ServerWords final : public accounting::RelationWords {
public:
    ServerWords(Server server, std::string quote) : server_(server), quote_(std::move(quote)) {}

    /// Bare, so that the server folds its case as it folded that of the table.
    [[nodiscard]] std::string relation(const std::string& id) const override
    {
        for (const char c : id) {
            const bool is_plain =
                c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
            if (!is_plain) throw StoreError("no view has such a name");
        }
        return id;
    }
    [[nodiscard]] std::string field(const std::string& name) const override
    {
        return quote_ + replaced(name, quote_, quote_ + quote_) + quote_;
    }
    /// The second half finds what stands behind blanks, by a range of the same index.
    [[nodiscard]] std::string equals(const std::string& field) const override
    {
        if (folds()) return "lower(trim(" + field + ")) = lower(?)";
        return "(" + field + " = ? OR (" + field + " LIKE ' %' AND " + trimmed_text(field) + " = ?))";
    }
    [[nodiscard]] size_t equal_marks() const override { return folds() ? 1 : 2; }
    [[nodiscard]] std::string comparable(const std::string& field) const override
    {
        return "coalesce(" + folded(field) + ", '')";
    }
    [[nodiscard]] std::string comparable_mark() const override { return folds() ? "lower(?)" : "?"; }
    [[nodiscard]] std::string sort_term(const std::string& field, FieldKind kind) const override
    {
        return kind == FieldKind::Number ? field : folded(field) + (folds() ? " COLLATE \"C\"" : "");
    }
    [[nodiscard]] std::string by_stored_type(const std::string&, const std::string&,
                                             const std::string& as_text) const override
    {
        return as_text;  // every column of a server has a type
    }

private:
    [[nodiscard]] bool folds() const { return server_ == Server::PostgreSql; }
    [[nodiscard]] std::string trimmed_text(const std::string& field) const
    {
        return server_ == Server::SqlServer ? "ltrim(rtrim(" + field + "))" : "trim(" + field + ")";
    }
    [[nodiscard]] std::string folded(const std::string& field) const
    {
        return folds() ? "lower(trim(" + field + "))" : trimmed_text(field);
    }

    Server server_;
    std::string quote_;
};

/// What a driver refuses is an error of the store; a loss is remembered.
template <class Work>
auto worded(odbc::Link& link, Work work)
{
    try {
        return work();
    } catch (const DriverError& error) {
        link.notice(error);
        throw StoreError(error.what());
    }
}

/// Rows in memory: lookups want one row, and a driver with one statement at a time stays free for the next.
class ServerRows final : public RelationRows {
public:
    ServerRows(std::shared_ptr<const ColumnNames> names, std::vector<std::vector<Value>> rows)
        : names_(std::move(names)), rows_(std::move(rows))
    {
    }

    [[nodiscard]] const ColumnNames& names() const override { return *names_; }
    bool step() override { return next_ < rows_.size() && ++next_ > 0; }
    [[nodiscard]] Value value(size_t column) const override { return rows_[next_ - 1].at(column); }

private:
    std::shared_ptr<const ColumnNames> names_;
    std::vector<std::vector<Value>> rows_;
    size_t next_ = 0;
};

class ServerSource final : public accounting::RelationSource {
public:
    explicit ServerSource(std::shared_ptr<odbc::Link> link)
        : link_(std::move(link)), words_(link_->session().server(), link_->session().quote())
    {
    }

    [[nodiscard]] const accounting::RelationWords& words() const override { return words_; }

    RelationShape shape(const std::string& id) override
    {
        return worded(*link_, [&] {
            const auto statement = odbc::once(link_->pool(), {});
            statement->execute_directly("SELECT * FROM " + words_.relation(id) + " WHERE 1 = 0");
            RelationShape shape{statement->columns(), {}};
            for (size_t column = 0; column < shape.names->count(); ++column) {
                shape.kinds.push_back(statement->is_number(column) ? FieldKind::Number : FieldKind::Text);
            }
            return shape;
        });
    }

    std::unique_ptr<RelationRows> select(const RelationQuery& query) override
    {
        return worded(*link_, [&] {
            auto statement = link_->pool().lend(query.sql);
            std::vector<Command::Parameter> inputs;
            for (const auto& value : query.values) inputs.push_back({{}, value});
            statement->execute(inputs);
            return rows_of(*statement);
        });
    }

    std::unique_ptr<Snapshot> begin_snapshot() override
    {
        return worded(*link_, [&] { return odbc::begin_snapshot(link_); });
    }

private:
    static std::unique_ptr<RelationRows> rows_of(odbc::Statement& statement)
    {
        std::vector<std::vector<Value>> rows;
        const auto names = statement.columns();
        while (statement.fetch()) {
            auto& row = rows.emplace_back();
            for (size_t column = 0; column < names->count(); ++column) row.push_back(statement.value(column));
        }
        return std::make_unique<ServerRows>(names, std::move(rows));
    }

    std::shared_ptr<odbc::Link> link_;
    ServerWords words_;
};

}  // namespace

std::unique_ptr<AccountingSession> open_odbc_accounting(const std::string& connection_string,
                                                        const OdbcOptions& options)
{
    auto link = odbc::open_link(connection_string, {options.timeout, false, options.one_statement});
    return accounting::open_session(std::make_unique<ServerSource>(std::move(link)));
}

}  // namespace velora
