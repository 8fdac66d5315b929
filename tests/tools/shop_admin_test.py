"""The administrator's commands: goods as CSV, devices, lists; and which files the shop accepts as its database."""

import csv
import io
import os
import sqlite3
import subprocess
import unittest

from shop_fixture import PROGRAMS, Key, ShopTest, run

KEY = Key(512)
HEADER = "type,type_name,category,category_name,id,title,maker,price,added,description\n"


class AdminTest(ShopTest):
    def keep(self, *arguments, database=None):
        """Returns exit code, output and error output."""
        done = subprocess.run([f"{PROGRAMS}/pavonix-shop", "--db", database or self.database_file, *arguments],
                              capture_output=True, timeout=20)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return path

    def goods(self):
        return self.query("SELECT * FROM good ORDER BY type, id")

    def test_export_and_import_are_each_others_reverse(self):
        exported = self.keep("goods", "export")[1]
        rows = list(csv.reader(io.StringIO(exported, newline="")))
        self.assertEqual((",".join(rows[0]) + "\n", len(rows)), (HEADER, 1 + len(self.goods())))
        path = os.path.join(self.folder, "goods.csv")
        self.keep("goods", "export", path)
        other = os.path.join(self.folder, "other.db")
        self.keep("goods", "list", database=other)
        with sqlite3.connect(other) as database:
            database.execute("DELETE FROM good")
        database.close()
        self.assertEqual(self.keep("goods", "import", path, database=other)[1], "23 goods added, 0 changed\n")
        self.assertEqual(self.keep("goods", "export", database=other)[1], exported)

    def test_import_as_a_spreadsheet_writes_it(self):
        text = "\ufeff" + 'id,title,price,category,type,description,category_name\r\n' + \
            '7,"Notes, ""new""\r\nand more",250,2,1,,\r\n\r\n8,ß <b>,0,9,1,"a\nb",Neu\r\n'
        self.assertEqual(self.keep("goods", "import", self.write("goods.csv", text)),
                         (0, "0 goods added, 2 changed\n", ""))
        self.assertEqual([good[:4] + good[5:6] for good in self.goods() if good[1] in (7, 8) and good[0] == 1],
                         [(1, 7, 2, 'Notes, "new"\r\nand more', 250), (1, 8, 9, "ß <b>", 0)])
        self.assertIn("ß &lt;b&gt;", self.ask("GET", "/shop/list?type=1&category=9&sort=0&start=0&max=9")[2].decode())

    def test_imports_that_are_refused_change_nothing(self):
        before = self.goods()
        good = "1,,1,,50,New,Me,100,2026-01-02,Text\n"
        table = [
            ("", "first row"), ("type;id\n1;2\n", "unknown column type;id"), ("type,id,title,price\n", "column category"),
            ("type,type,id,title,price,category\n", "column type is there twice"),
            (HEADER + good + good, "row 3: id is that of an earlier row"),
            (HEADER + good + "1,,1\n", "row 3 has 3 fields instead of 10"),
            (HEADER + good + good.replace("100", "1.50").replace("50,N", "51,N"), "row 3: price must be a whole number from 0"),
            (HEADER + good.replace("100", "-1"), "row 2: price"), (HEADER + good.replace("50", "2147483648"), "id must"),
            (HEADER + good.replace("New", ""), "title is empty"), (HEADER + good.replace("-02,", "-32,"), "must be a date"),
            (HEADER + good.replace("2026-01-02", "2026-1-2"), "must be a date"),
            (HEADER + good.replace("1,,1,", "1,,77,"), "needs a category_name"),
            (HEADER + good.replace("1,,1,", "5,,1,x"), "needs a type_name"),
            (HEADER + good.replace("New", "a\x1b[2J"), "title holds control characters or is not UTF-8: a\\x1b[2J"),
            ((HEADER + good).encode().replace(b"New", b"\xff"), "is not UTF-8: \\xff"),
            (HEADER + good.replace("New", "a\0"), "control"), (HEADER + good + '1,"a', "row 3: misplaced quot"),
            (HEADER + good.replace("New", '"a"b'), "row 2: misplaced quot"), ("\x1b[31m\n", "unknown column \\x1b[31m"),
        ]
        for content, words in table:
            with self.subTest(words):
                code, output, complaint = self.keep("goods", "import", self.write("goods.csv", content))
                self.assertEqual((code, output, words in complaint, "\x1b" in complaint), (1, "", True, False), complaint)
        self.assertEqual(self.goods(), before)

    def test_devices(self):
        device = ("--serial", "PX-1", "--user-id", "42")
        public_key = self.write("device.pub", KEY.public_xml())
        self.keep("device", "add", *device, "--public-key", public_key, "--balance", "100")
        self.assertEqual(self.keep("device", "top-up", *device, "--amount", "250")[1],
                         "device PX-1, user 42: balance 350\n")
        self.query("INSERT INTO purchase (serial, user_id, type, id, price, bought_at) VALUES ('PX-1', 42, 1, 5, 9, 'x')")
        self.query("UPDATE good SET title = char(27) || '[2J€, \"' WHERE type = 1 AND id = 5")
        self.assertEqual(self.keep("device", "list")[1], "serial\tuser\tbalance\tpurchases\nPX-1\t42\t350\t1\n")
        self.assertTrue(self.keep("purchases")[1].endswith('\t5\t9\tx\t\\x1b[2J\\xe2\\x82\\xac, "\n'))
        bought = list(csv.DictReader(io.StringIO(self.keep("purchases", "--csv")[1], newline="")))
        self.assertEqual([(row["serial"], row["price"], row["title"]) for row in bought], [("PX-1", "9", '\x1b[2J€, "')])

        self.assertIn("would exceed", self.keep("device", "top-up", *device, "--amount", "999999999999")[2])
        self.assertIn("has purchases, 1 in all", self.keep("device", "remove", *device)[2])
        self.assertEqual(self.keep("device", "remove", *device, "--with-purchases")[0], 0)
        for command in (("top-up", *device, "--amount", "1"), ("remove", *device)):
            self.assertIn("no device PX-1 with user 42", self.keep("device", *command)[2])
        self.assertEqual(self.query("SELECT count(*) FROM device, purchase"), [(0,)])

    def test_files_that_are_no_database_of_the_shop(self):
        def changed(sql):
            with open(self.database_file, "rb") as file:
                path = self.write("changed.db", file.read())
            database = sqlite3.connect(path)
            database.executescript(sql)
            database.close()
            with open(path, "rb") as file:
                return file.read()

        whole = changed("")
        table = [
            ("text", b"no database, but long enough to be read as one", "not a database"),
            ("cut", whole[:len(whole) // 2], "malformed"),
            ("a page lost", whole[:4096 * 5] + bytes(4096) + whole[4096 * 6:], "malformed"),
            ("another program's", changed("PRAGMA application_id = 7"), "another program"),
            ("a newer version's", changed("UPDATE shop SET version = 9"), "a newer version of this program"),
            ("an older version's", changed("UPDATE shop SET version = 1"), "run pavonix-shop db upgrade"),
            ("a table missing", changed("DROP TABLE token"), "its table token is missing"),
            ("a table changed", changed("ALTER TABLE good RENAME COLUMN maker TO x"), "its table good"),
            ("a category lost", changed("DELETE FROM category WHERE id = 3"), "damaged"),
        ]
        for name, content, words in table:
            with self.subTest(name):
                path = self.write("x.db", content)
                code, output, complaint = self.keep("--port", "0", database=path)
                self.assertEqual((code, output, words in complaint), (1, "", True), complaint)
                with open(path, "rb") as file:
                    self.assertEqual(file.read(), content)

    def test_a_database_that_cannot_be_written(self):
        holder = sqlite3.connect(self.database_file, isolation_level=None)
        self.addCleanup(holder.close)
        holder.execute("BEGIN EXCLUSIVE")
        self.assertIn("database is locked", self.keep("--port", "0")[2])
        holder.execute("ROLLBACK")
        os.chmod(self.database_file, 0o444)
        # Root writes read-only files, too, unless it is deprived of this.
        prefix = ["setpriv", "--bounding-set=-dac_override"] if os.getuid() == 0 else []
        done = run(*prefix, f"{PROGRAMS}/pavonix-shop", "--db", self.database_file, "--port", "0")
        self.assertEqual((done.returncode, "readonly database" in done.stderr), (1, True), done.stderr)

    def test_words_that_are_wrong(self):
        table = [(["devcie"], 2, "did you mean device?"), (["device", "lsit"], 2, "did you mean list?"), (["--prot", "1"], 2, "option --prot"),
                 (["device"], 2, "subcommand"), (["--host", "nowhere.invalid"], 1, "--host nowhere.invalid: "),
                 (["--host", "a\x1b"], 1, "--host a\\x1b"), (["--port", str(self.port)], 1, f"--port {self.port}: "),
                 (["goods", "import", "/none"], 2, "/none"), (["goods", "export", "/none/x"], 1, "/none/x")]
        for arguments, expected, words in table:
            with self.subTest(arguments):
                code, _, complaint = self.keep(*arguments)
                self.assertEqual((code, words in complaint), (expected, True), complaint)
        with open("/dev/full", "w") as full:
            self.assertEqual(subprocess.run([f"{PROGRAMS}/pavonix-shop", "faults"], stdout=full,
                                            stderr=subprocess.DEVNULL).returncode, 1)
        self.stop_shop()
        self.start_shop("--host", "localhost")
        self.assertEqual(self.ask("GET", "/shop/good?type=1&id=1")[0], 200)


if __name__ == "__main__":
    unittest.main()
