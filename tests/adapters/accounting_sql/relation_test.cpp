#include "adapters/accounting_core/relation.h"

#include "adapters/accounting_sql/schema.h"
#include "adapters/accounting_sql/sqlite_source.h"
#include "adapters/scratch.h"
#include "adapters/sqlite_core/statement.h"
#include "adapters/store_schema/view_keys.h"

using namespace velora;
using namespace velora::accounting;

namespace {

/// How the database goes about a query, one line for each step.
std::string plan_of(sqlite::StatementPool& pool, const std::string& sql)
{
    std::string steps;
    const auto plan = pool.lend("EXPLAIN QUERY PLAN " + sql);
    while (plan->step()) steps += to_text(plan->value(3)) + "\n";
    return steps;
}

}  // namespace

TEST(Relation, LookupsAndBrowsesGoThroughTheKeyIndexes)
{
    struct Case {
        const char* view;
        const char* filter;
    };
    const test::Scratch scratch;
    const auto path = scratch.path("accounting.db");
    create_accounting_schema(path);
    const auto pool = std::make_shared<sqlite::StatementPool>(sqlite::Database::open(path, {}));
    const auto source = make_sqlite_source(sqlite::Database::open(path, {}));
    for (const auto& c :
         {Case{"AR0024", "IDCUST = 1100"}, Case{"IC0310", "ITEMNO = \"A1\""},
          Case{"IC0290", "ITEMNO = \"A1\" AND LOCATION = 1"}, Case{"IC0290", "ITEMNO = \"A1\""},
          Case{"IC0480", "CURRENCY = USD AND ITEMNO = \"A1\" AND PRICELIST = WHS"},
          Case{"IC0274", "CUSTNO = \"1\" AND ITEMNO = \"A1\" AND PRICELIST = \"WHS\""},
          Case{"TX0004", "AUTHORITY = GST AND TTYPE = 1 AND BUYERCLASS = 1"}, Case{"MW0200", "CTYPE = 1"},
          Case{"MW0200", "CCODE = \"X\""}, Case{"OE0440", "CURRENCY = USD AND MISCCHARGE = FRT"}, Case{"AR0024", ""},
          Case{"IC0480", ""}, Case{"TX0004", ""}}) {
        const auto plan = plan_of(*pool, Relation(*source, c.view).browse(read_filter(c.filter), true).sql);
        EXPECT_THAT(plan, testing::HasSubstr(*c.filter != '\0' ? "SEARCH" : "USING INDEX"))
            << c.view << " " << c.filter;
        EXPECT_THAT(plan, testing::Not(testing::HasSubstr("ORDER BY"))) << c.view << " " << c.filter;
    }
}

TEST(Relation, EveryKeyColumnOfEveryViewIsThere)
{
    const test::Scratch scratch;
    create_accounting_schema(scratch.path("accounting.db"));
    const auto pool =
        std::make_shared<sqlite::StatementPool>(sqlite::Database::open(scratch.path("accounting.db"), {}));
    const auto source = make_sqlite_source(sqlite::Database::open(scratch.path("accounting.db"), {}));
    const auto names = pool->lend("SELECT name FROM sqlite_master WHERE type = 'table' AND name GLOB '[A-Z][A-Z]0*'");
    size_t views = 0;
    while (names->step()) {
        const Relation relation(*source, to_text(names->value(0)));
        for (const auto key : key_columns(relation.id()))
            EXPECT_NO_THROW((void)relation.field(key)) << relation.id() << key;
        ++views;
    }
    EXPECT_EQ(views, 21u);
}
