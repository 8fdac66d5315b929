#include "shop/admin/goods_table.h"

#include "diagnostics/printable.h"
#include "shop/admin/csv.h"
#include "shop/texts.h"
#include "token/time_text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>

namespace shop {

namespace {

const CsvRow kColumns = {"type",  "type_name", "category", "category_name", "id",
                         "title", "maker",     "price",    "added",         "description"};
const CsvRow kNeeded = {"type", "category", "id", "title", "price"};

constexpr std::size_t kLongestTitle = 1000; // PostgreSQL's indexes have room for two

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
        if (text.size() > kLongestTitle) {
            Fail(name, "is longer than " + std::to_string(kLongestTitle) + " bytes");
        }
        return text;
    }

    Int64 Number(const std::string &name, Int64 low) const
    {
        const std::string text = Text(name);
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value < low) {
            Fail(name, "must be a whole number from " + std::to_string(low) + " to " +
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
            Fail(name, "must be a date like 2026-02-20: " + diagnostics::Printable(text));
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
            throw std::runtime_error("unknown column " + diagnostics::Printable(name) +
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

class Importer {
public:
    explicit Importer(Database &database) : database_(database) {}

    void Import(const Row &row)
    {
        const auto type = static_cast<int>(row.Number("type", 1));
        const auto category = static_cast<int>(row.Number("category", 1));
        const auto id = static_cast<int>(row.Number("id", 1));
        if (!imported_.emplace(type, id).second) {
            row.Fail("id", "is that of an earlier row: " + std::to_string(id));
        }
        ImportType(row, type);
        ImportCategory(row, type, category);
        ++(findGood_(type, id).empty() ? count_.added : count_.changed);
        (void)putGood_(type, id, category, row.NeededText("title"), row.Text("maker"), row.Number("price", 0),
                       row.Date("added"), row.Text("description"));
    }

    ImportCount count() const { return count_; }

private:
    void ImportType(const Row &row, int type)
    {
        const std::string name = row.Text("type_name");
        if (!name.empty()) {
            (void)putType_(type, name);
        } else if (findType_(type).empty()) {
            row.Fail("type", "is not known yet and needs a type_name: " + std::to_string(type));
        }
    }

    void ImportCategory(const Row &row, int type, int category)
    {
        const std::string name = row.Text("category_name");
        if (!name.empty()) {
            (void)putCategory_(type, category, name);
        } else if (findCategory_(type, category).empty()) {
            row.Fail("category", "is not known yet and needs a category_name: " + std::to_string(category));
        }
    }

    using One = std::tuple<int>;
    using None = std::tuple<>;

    Database &database_;
    ImportCount count_;
    std::set<std::pair<int, int>> imported_;
    Statement<One, int> findType_{database_, "SELECT 1 FROM type WHERE id = :id"};
    Statement<One, int, int> findCategory_{database_, "SELECT 1 FROM category WHERE type = :type AND id = :id"};
    Statement<One, int, int> findGood_{database_, "SELECT 1 FROM good WHERE type = :type AND id = :id"};
    Statement<None, int, std::string> putType_{
        database_,
        "INSERT INTO type (id, name) VALUES (:id, :name) ON CONFLICT (id) DO UPDATE SET name = excluded.name"};
    Statement<None, int, int, std::string> putCategory_{
        database_, "INSERT INTO category (type, id, name) VALUES (:type, :id, :name) "
                   "ON CONFLICT (type, id) DO UPDATE SET name = excluded.name"};
    Statement<None, int, int, int, std::string, std::string, Int64, std::string, std::string> putGood_{
        database_, "INSERT INTO good (type, id, category, title, maker, price, added, description) "
                   "VALUES (:type, :id, :category, :title, :maker, :price, :added, :description) "
                   "ON CONFLICT (type, id) DO UPDATE SET category = excluded.category, title = excluded.title, "
                   "maker = excluded.maker, price = excluded.price, added = excluded.added, "
                   "description = excluded.description"};
};

} // namespace

ImportCount ImportGoods(Database &database, const std::string &csv)
{
    const std::vector<CsvRow> rows = ReadCsv(csv);
    if (rows.empty()) {
        throw std::runtime_error("the first row, which names the columns, is missing");
    }
    CheckColumns(rows[0]);
    Importer importer(database);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        importer.Import(Row(rows[0], rows[i], i + 1));
    }
    return importer.count();
}

void ExportGoods(Database &database, std::ostream &out)
{
    WriteCsv(out, kColumns);
    ForEachRow(database,
               "SELECT type.id, type.name, category, category.name, good.id, title, maker, price, added, description "
               "FROM good JOIN type ON type.id = good.type "
               "JOIN category ON category.type = good.type AND category.id = good.category ORDER BY type.id, good.id",
               kColumns.size(), [&](const Texts &good) { WriteCsv(out, good); });
}

} // namespace shop
