-- The shop's tables, for SQLite and PostgreSQL. Names in braces become the engine's words.
-- Prices and balances are cents. A good is known by type and id.
CREATE TABLE IF NOT EXISTS shop (
    version INTEGER NOT NULL
){strict};
CREATE TABLE IF NOT EXISTS type (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL
){strict};
CREATE TABLE IF NOT EXISTS category (
    type INTEGER NOT NULL REFERENCES type (id),
    id INTEGER NOT NULL CHECK (id > 0),
    name TEXT NOT NULL,
    PRIMARY KEY (type, id)
){strict};
CREATE TABLE IF NOT EXISTS good (
    type INTEGER NOT NULL,
    id INTEGER NOT NULL,
    category INTEGER NOT NULL,
    title TEXT NOT NULL,
    maker TEXT NOT NULL,
    price {int64} NOT NULL CHECK (price >= 0),
    added TEXT NOT NULL,
    description TEXT NOT NULL,
    PRIMARY KEY (type, id),
    FOREIGN KEY (type, category) REFERENCES category (type, id)
){strict};
CREATE TABLE IF NOT EXISTS device (
    serial TEXT NOT NULL,
    user_id INTEGER NOT NULL,
    public_key TEXT NOT NULL,
    balance {int64} NOT NULL CHECK (balance >= 0),
    PRIMARY KEY (serial, user_id)
){strict};
CREATE TABLE IF NOT EXISTS purchase (
    number {counter},
    serial TEXT NOT NULL,
    user_id INTEGER NOT NULL,
    type INTEGER NOT NULL,
    id INTEGER NOT NULL,
    price {int64} NOT NULL,
    bought_at TEXT NOT NULL,
    FOREIGN KEY (serial, user_id) REFERENCES device (serial, user_id),
    FOREIGN KEY (type, id) REFERENCES good (type, id)
){strict};
-- A row for each block of a used token, in hexadecimal digits. Remembering blocks rather than tokens
-- keeps the blocks of two used tokens from being combined into a third.
CREATE TABLE IF NOT EXISTS token (
    block TEXT PRIMARY KEY,
    seen_at {int64} NOT NULL
){strict};
CREATE INDEX IF NOT EXISTS token_by_time ON token (seen_at);
CREATE INDEX IF NOT EXISTS purchase_of_device ON purchase (serial, user_id, type, id);
-- Each order of the catalogue's pages, in a type and in a category. The title itself lets PostgreSQL skip goods without
-- reading the table.
CREATE INDEX IF NOT EXISTS good_by_title ON good (type, lower(title), id, title);
CREATE INDEX IF NOT EXISTS good_by_price ON good (type, price, id);
CREATE INDEX IF NOT EXISTS good_by_price_down ON good (type, price DESC, id);
CREATE INDEX IF NOT EXISTS good_by_date_down ON good (type, added DESC, id);
CREATE INDEX IF NOT EXISTS good_in_category ON good (type, category, id);
CREATE INDEX IF NOT EXISTS good_in_category_by_title ON good (type, category, lower(title), id, title);
CREATE INDEX IF NOT EXISTS good_in_category_by_price ON good (type, category, price, id);
CREATE INDEX IF NOT EXISTS good_in_category_by_price_down ON good (type, category, price DESC, id);
CREATE INDEX IF NOT EXISTS good_in_category_by_date_down ON good (type, category, added DESC, id);
