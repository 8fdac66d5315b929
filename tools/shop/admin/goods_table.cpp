#include "shop/admin/goods_table.h"

#include "diagnostics/printable.h"
#include "shop/admin/csv.h"
#include "shop/texts.h"
#include "token/time_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace shop {

namespace {

const CsvRow kColumns = {"type",  "type_name", "category", "category_name", "id",
                         "title", "maker",     "price",    "added",         "description"};
const CsvRow kNeeded = {"type", "category", "id", "title", "price"};

// One row under the first one, read by the names in that.
class Row {
public:
    Row(const CsvRow &names, const CsvRow &fields, std::size_t number)
        : names_(names), fields_(fields), number_(std::to_string(number))
    {
        if (fields.size() != names.size()) {
            throw std::runtime_error("row " + number_ + " has " + std::to_string(fields.size()) +
                                     " fields instead of " + std::to_string(names.size()));
        }
    }

    // Empty when there is no such column.
    std::string Text(const std::string &name) const
    {
        const auto column = std::find(names_.begin(), names_.end(), name);
        const std::string text =
            column == names_.end() ? "" : fields_[static_cast<std::size_t>(column - names_.begin())];
        if (!IsPlainText(text)) {
            Fail(name, "holds control characters or is not UTF-8: " + diagnostics::Printable(text));
        }
        return text;
    }

    std::string NeededText(const std::string &name) const
    {
        const std::string text = Text(name);
        if (text.empty()) {
            Fail(name, "is empty");
        }
        return text;
    }

    std::int64_t Number(const std::string &name, std::int64_t low) const
    {
        const std::string text = Text(name);
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value < low) {
            Fail(name, "is no number from " + std::to_string(low) + " to " +
                           std::to_string(std::numeric_limits<int>::max()) + ": " + diagnostics::Printable(text));
        }
        return value;
    }

    // A missing date is today.
    std::string Date(const std::string &name) const
    {
        const std::string text = Text(name);
        if (text.empty()) {
            return token::FormatSortable(token::WallTimeNow()).substr(0, 10);
        }
        if (!token::IsDate(text)) {
            Fail(name, "is no date like 2026-02-20: " + diagnostics::Printable(text));
        }
        return text;
    }

    [[noreturn]] void Fail(const std::string &column, const std::string &complaint) const
    {
        throw std::runtime_error("row " + number_ + ": " + column + " " + complaint);
    }

private:
    const CsvRow &names_;
    const CsvRow &fields_;
    std::string number_;
};

void CheckColumns(const CsvRow &names)
{
    for (const std::string &name : names) {
        if (std::count(kColumns.begin(), kColumns.end(), name) == 0) {
            throw std::runtime_error("there is no column " + diagnostics::Printable(name) +
                                     "; pavonix-shop goods export shows the columns");
        }
        if (std::count(names.begin(), names.end(), name) > 1) {
            throw std::runtime_error("the column " + name + " is there twice");
        }
    }
    for (const std::string &name : kNeeded) {
        if (std::count(names.begin(), names.end(), name) == 0) {
            throw std::runtime_error("the column " + name + " is missing");
        }
    }
}

// Makes the good's type and category known.
void ImportCategory(Database &database, const Row &row, std::int64_t type, std::int64_t category)
{
    const std::string typeName = row.Text("type_name");
    const std::string categoryName = row.Text("category_name");
    if (!typeName.empty()) {
        Run(database, "INSERT INTO type (id, name) VALUES (?1, ?2) ON CONFLICT DO UPDATE SET name = ?2", type,
            typeName);
    } else if (!Query(database, "SELECT 1 FROM type WHERE id = ?", type).executeStep()) {
        row.Fail("type", "is not known yet, so that it needs a type_name: " + std::to_string(type));
    }
    if (!categoryName.empty()) {
        Run(database, "INSERT INTO category (type, id, name) VALUES (?1, ?2, ?3) ON CONFLICT DO UPDATE SET name = ?3",
            type, category, categoryName);
    } else if (!Query(database, "SELECT 1 FROM category WHERE type = ? AND id = ?", type, category).executeStep()) {
        row.Fail("category", "is not known yet, so that it needs a category_name: " + std::to_string(category));
    }
}

void ImportRow(Database &database, const Row &row, ImportCount *count)
{
    const std::int64_t type = row.Number("type", 1);
    const std::int64_t category = row.Number("category", 1);
    const std::int64_t id = row.Number("id", 1);
    ImportCategory(database, row, type, category);
    const bool known = Query(database, "SELECT 1 FROM good WHERE type = ? AND id = ?", type, id).executeStep();
    Run(database,
        "INSERT INTO good (type, id, category, title, maker, price, added, description) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8) ON CONFLICT DO UPDATE SET "
        "category = ?3, title = ?4, maker = ?5, price = ?6, added = ?7, description = ?8",
        type, id, category, row.NeededText("title"), row.Text("maker"), row.Number("price", 0), row.Date("added"),
        row.Text("description"));
    ++(known ? count->changed : count->added);
}

} // namespace

ImportCount ImportGoods(Database &database, const std::string &csv)
{
    const std::vector<CsvRow> rows = ReadCsv(csv);
    if (rows.empty()) {
        throw std::runtime_error("the first row, which names the columns, is missing");
    }
    CheckColumns(rows[0]);
    ImportCount count;
    Transaction transaction(database);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        ImportRow(database, Row(rows[0], rows[i], i + 1), &count);
    }
    transaction.commit();
    return count;
}

void ExportGoods(Database &database, std::ostream &out)
{
    WriteCsv(out, kColumns);
    Statement good =
        Query(database, "SELECT type.id, type.name, category, category.name, good.id, title, maker, price, "
                        "added, description FROM good JOIN type ON type.id = good.type "
                        "JOIN category ON category.type = good.type AND category.id = good.category "
                        "ORDER BY type.id, good.id");
    while (good.executeStep()) {
        WriteCsv(out, TextsOf(good));
    }
}

} // namespace shop
