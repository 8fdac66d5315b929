#include "shop/admin/csv.h"

#include <csv.h>

#include <stdexcept>

namespace shop {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Reader {
    std::vector<CsvRow> rows;
    CsvRow row;
};

void EndField(void *field, size_t size, void *reader)
{
    static_cast<Reader *>(reader)->row.emplace_back(static_cast<const char *>(field), size);
}

void EndRow(int, void *reader)
{
    auto *self = static_cast<Reader *>(reader);
    self->rows.push_back(std::move(self->row));
    self->row.clear();
}

} // namespace

std::vector<CsvRow> ReadCsv(const std::string &text)
{
    const std::string_view bytes = std::string_view(text).substr(text.starts_with(kByteOrderMark) ? 3 : 0);
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_APPEND_NULL) != 0) {
        throw std::bad_alloc();
    }
    Reader reader;
    const bool whole = csv_parse(&parser, bytes.data(), bytes.size(), EndField, EndRow, &reader) == bytes.size() &&
                       csv_fini(&parser, EndField, EndRow, &reader) == 0;
    csv_free(&parser);
    if (!whole) {
        throw std::runtime_error("row " + std::to_string(reader.rows.size() + 1) + ": misplaced quotation mark");
    }
    return std::move(reader.rows);
}

void WriteCsv(std::ostream &out, const CsvRow &row)
{
    for (const std::string &field : row) {
        std::string quoted(2 * field.size() + 2, '\0');
        quoted.resize(csv_write(quoted.data(), quoted.size(), field.data(), field.size()));
        out << (&field == &row.front() ? "" : ",") << quoted;
    }
    out << "\r\n";
}

} // namespace shop
