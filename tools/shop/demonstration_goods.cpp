#include "shop_database.h"

namespace shop {

namespace {

struct Good {
    int type;
    int id;
    int category;
    const char *title;
    const char *maker;
    int price;
    const char *added;
    const char *description;
};

constexpr const char *kTypesAndCategories = R"(
INSERT INTO type (id, name) VALUES (1, 'Programs'), (2, 'Music'), (3, 'Books');
INSERT INTO category (type, id, name) VALUES
    (1, 1, 'Games'), (1, 2, 'Office'), (1, 3, 'Tools'),
    (2, 1, 'Classical'), (2, 2, 'Folk & Dance'),
    (3, 1, 'Novels'), (3, 2, 'Travel');
)";

// The texts hold what a client must survive: markup characters, quotes, letters
// of several alphabets, and a description longer than one reception.
constexpr const char *kLongDescription =
    "A walk in eleven days from the harbour to the source of the river, written down in the evening of each day. "
    "The first chapter names what to carry and what to leave at home; the second tells which inns were open and "
    "which had closed for good. Every chapter ends with a map of the day, the hours of walking, the height climbed "
    "and the bridges crossed. From the seventh day on the path leads through forest, and the book turns to trees: "
    "beech, hornbeam, larch, then stone pine. The author walked alone, but met a surveyor with a broken theodolite, "
    "two beekeepers who disagreed about everything, a bus driver waiting for a bus, and a dog that stayed for three "
    "days. What they said stands here word for word. The appendix lists the birds heard (sixty-one), the birds seen "
    "(nineteen), the price of bread in each village, and the mistakes of the official map, with coordinates. "
    "Readers who tried the way later have sent corrections; this edition has them all: the ferry on the fourth day "
    "no longer runs, the bridge above the mill is rebuilt, the spring near the chapel is dry in August, and the inn "
    "on the pass has a new roof, a new owner and the same soup.";

constexpr Good kGoods[] = {
    {1, 1, 1, "Reversi 64", "Brettspiel & Söhne", 299, "2026-01-12", "The board game, against you or a friend."},
    {1, 2, 1, "Mine <Field>", "Lowtide", 0, "2026-02-01", "Left, right, \"boom\"."},
    {1, 3, 1, "Solitaire à la carte", "Lowtide", 149, "2026-02-20", "Twelve patiences with café music."},
    {1, 4, 1, "Lunar Ferry", "Orbit's Edge", 499, "2026-03-03", "Land it. Take off. Land it again."},
    {1, 5, 2, "Ledger Pocket", "Kontor", 1299, "2026-01-30", "Double entry, single hand; totals in €, £ and ¥."},
    {1, 6, 2, "Table 7x7", "Kontor", 899, "2026-03-15", "Forty-nine cells are enough for most things."},
    {1, 7, 2, "Notes", "Kontor", 199, "2026-01-08", "Plain notes, searched while you type."},
    {1, 8, 3, "File Lantern", "Grün & Partner", 349, "2026-02-11", "Shows what fills the storage card."},
    {1, 9, 3, "Clock Setter", "Grün & Partner", 99, "2026-04-02", "Sets the clock, so that purchases are accepted."},
    {1, 10, 3, "Terminal ]]> Plus", "Serial Kiosk", 599, "2026-04-09", "A terminal for the docking station."},
    {2, 1, 1, "Suites for Viola", "Ensemble Ostwind", 799, "2026-01-05", "Six suites, recorded in a barn."},
    {2, 2, 1, "Nocturnes", "I. Nováková", 899, "2026-01-19", "Played from the second edition."},
    {2, 3, 1, "Organ Works II", "P. Åkesson", 699, "2026-03-22", "The organ of 1741, tuned for the day."},
    {2, 4, 2, "Polkas & Waltzes", "Die Feldmusik", 499, "2026-02-14", "For feet, not for armchairs."},
    {2, 5, 2, "Τραγούδια της θάλασσας", "Νησιώτες", 549, "2026-02-28", "Songs of the sea."},
    {2, 6, 2, "Песни у костра", "Хор «Заря»", 449, "2026-04-11", "Songs by the camp fire."},
    {3, 1, 1, "The Lamplighter's Day", "E. Marsh", 650, "2026-01-02", "A novel in twenty-four hours."},
    {3, 2, 1, "Who < Whom", "J. O'Hare", 720, "2026-02-09", "Office life as an inequality."},
    {3, 3, 1, "Das Haus am Kanal", "L. Brückner", 580, "2026-03-01", "Roman. Eine Straße, vier Generationen."},
    {3, 4, 1, "Tea for Nobody", "S. Amari", 0, "2026-03-30", "A short novel, free of charge."},
    {3, 5, 2, "Up the River", "M. Talbot", 990, "2026-02-17", kLongDescription},
    {3, 6, 2, "Islands by Bus", "M. Talbot", 890, "2026-04-05", "Timetables, mostly correct."},
    {3, 7, 2, "The Gold Atlas", "Kartenhaus", 250000, "2026-04-20", "Bound in leather; dearer than most balances."},
};

} // namespace

void AddDemonstrationGoods(Database &database)
{
    database.exec(kTypesAndCategories);
    for (const Good &good : kGoods) {
        Run(database,
            "INSERT INTO good (type, id, category, title, maker, price, added, description) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
            good.type, good.id, good.category, good.title, good.maker, good.price, good.added, good.description);
    }
}

} // namespace shop
