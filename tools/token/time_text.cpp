#include "token/time_text.h"

#include <cstdio>

namespace token {

namespace {

namespace chrono = std::chrono;

struct Fields {
    int year, month, day, hour, minute, second, fraction;
};

std::string Print(const Fields &fields, const char *form = "%d-%d-%d %d:%d:%d.%.3d")
{
    char text[96];
    std::snprintf(text, sizeof text, form, fields.year, fields.month, fields.day, fields.hour, fields.minute,
                  fields.second, fields.fraction);
    return text;
}

Fields FieldsOf(WallTime time)
{
    const auto days = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date{days};
    const chrono::hh_mm_ss clock{time - days};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()),
            static_cast<int>(clock.subseconds().count())};
}

} // namespace

std::string FormatTimeText(WallTime time)
{
    return Print(FieldsOf(time));
}

std::string FormatSortable(WallTime time)
{
    return Print(FieldsOf(time), "%04d-%02d-%02d %02d:%02d:%02d.%03d");
}

bool IsDate(const std::string &text)
{
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    const bool scanned = std::sscanf(text.c_str(), "%4d-%2u-%2u", &year, &month, &day) == 3;
    const chrono::year_month_day date{chrono::year(year), chrono::month(month), chrono::day(day)};
    return scanned && date.ok() && FormatSortable(chrono::local_days(date)).substr(0, 10) == text;
}

std::optional<WallTime> ParseTimeText(const std::string &text)
{
    Fields fields{};
    if (std::sscanf(text.c_str(), "%5d-%3d-%3d %3d:%3d:%3d.%4d", &fields.year, &fields.month, &fields.day, &fields.hour,
                    &fields.minute, &fields.second, &fields.fraction) != 7) {
        return std::nullopt;
    }
    // Scanning accepts spaces, leading zeros and a rest; printing does not.
    const chrono::year_month_day date{chrono::year(fields.year), chrono::month(static_cast<unsigned>(fields.month)),
                                      chrono::day(static_cast<unsigned>(fields.day))};
    const bool inRange = fields.year >= 1 && fields.year <= 9999 && fields.fraction > -1000 && fields.fraction < 1000;
    const bool clockExists = fields.hour >= 0 && fields.hour < 24 && fields.minute >= 0 && fields.minute < 60 &&
                             fields.second >= 0 && fields.second < 60;
    if (Print(fields) != text || !inRange || !date.ok() || !clockExists) {
        return std::nullopt;
    }
    return chrono::local_days(date) + chrono::hours(fields.hour) + chrono::minutes(fields.minute) +
           chrono::seconds(fields.second);
}

} // namespace token
