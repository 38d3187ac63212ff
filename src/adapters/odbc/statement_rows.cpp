#include "adapters/odbc/statement_rows.h"

namespace velora::odbc {

void Shared::make_room()
{
    if (reading_.empty() || !link_->session().one_statement()) return;
    for (StatementRows* rows : std::vector(reading_.begin(), reading_.end())) rows->hold();
}

Fault Shared::report(const DriverError& error, const std::string& statement)
{
    link_->notice(error);
    errors_.insert(errors_.end(), error.records().begin(), error.records().end());
    return {fault::kDatabase, error.what(), statement};
}

StatementRows::StatementRows(StatementPool::Loan statement, std::vector<Command::Parameter> parameters,
                             std::shared_ptr<Shared> shared)
    : statement_(std::move(statement)), parameters_(std::move(parameters)), shared_(std::move(shared))
{
    text_ = statement_->text();
    columns_ = (*statement_)->columns();
    cells_.resize(columns_->count());
    shared_->add(*this);
    try {
        step();
    } catch (...) {
        shared_->remove(*this);
        throw;
    }
    is_first_ = true;
    is_empty_ = !has_row_;
}

StatementRows::~StatementRows()
{
    shared_->remove(*this);
}

void StatementRows::hold()
{
    if (is_held_ || !is_open_) return;
    while (has_row_) {
        read_row(held_.emplace_back());
        has_row_ = (*statement_)->fetch();
        cells_.assign(cells_.size(), std::nullopt);
    }
    is_held_ = true;
    has_row_ = !held_.empty();
    (*statement_)->close();
    shared_->remove(*this);
}

/// Cells that were asked for before are not fetched again: a long text comes once.
void StatementRows::read_row(std::vector<Value>& row) const
{
    row.reserve(columns_->count());
    for (size_t column = 0; column < columns_->count(); ++column) {
        auto& known = cells_[column];
        row.push_back(known ? std::move(*known) : (*statement_)->value(column));
    }
}

bool StatementRows::at_bof() const
{
    require_open();
    return is_empty_;
}

bool StatementRows::at_eof() const
{
    require_open();
    return !has_row_;
}

void StatementRows::MoveFirst()
{
    require_open();
    if (is_empty_) throw fault::no_current_row();
    if (is_first_) return;
    shared_->reported(text_, [&] {
        is_held_ = false;
        held_.clear();
        held_at_ = 0;
        shared_->remove(*this);
        shared_->make_room();
        shared_->add(*this);
        execute();
        step();
    });
    is_first_ = true;
}

void StatementRows::execute()
{
    if (parameters_.empty()) {
        (*statement_)->close();
        (*statement_)->execute_directly(text_);
    } else {
        (*statement_)->execute(parameters_);
    }
}

void StatementRows::MoveNext()
{
    require_open();
    if (!has_row_) throw fault::no_current_row();
    shared_->reported(text_, [&] { step(); });
    is_first_ = false;
}

void StatementRows::step()
{
    if (is_held_) {
        has_row_ = ++held_at_ < held_.size();
        return;
    }
    has_row_ = false;
    cells_.assign(cells_.size(), std::nullopt);
    has_row_ = (*statement_)->fetch();
    if (!has_row_) {
        shared_->remove(*this);
    } else if ((*statement_)->reads_in_order()) {
        for (size_t column = 0; column < cells_.size(); ++column) cells_[column] = (*statement_)->value(column);
    }
}

const Value& StatementRows::value(size_t column) const
{
    require_open();
    if (!has_row_) throw fault::no_current_row();
    if (is_held_) return held_[held_at_].at(column);
    auto& cell = cells_.at(column);
    if (!cell) cell = shared_->reported(text_, [&] { return (*statement_)->value(column); });
    return *cell;
}

void StatementRows::Close()
{
    require_open();
    shared_->remove(*this);
    statement_.reset();
    held_.clear();
    is_open_ = false;
    has_row_ = false;
}

void StatementRows::require_open() const
{
    if (!is_open_) throw fault::closed_object();
}

std::unique_ptr<Recordset> all_rows(Statement& statement)
{
    std::vector<std::vector<Value>> rows;
    std::vector<std::string> names;
    const auto columns = statement.columns();
    for (size_t column = 0; column < columns->count(); ++column) names.push_back(columns->name(column));
    while (statement.fetch()) {
        auto& row = rows.emplace_back();
        row.reserve(columns->count());
        for (size_t column = 0; column < columns->count(); ++column) row.push_back(statement.value(column));
    }
    return std::make_unique<Recordset>(std::move(names), std::move(rows));
}

}  // namespace velora::odbc
