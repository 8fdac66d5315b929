"""The catalogue's two pages, made from the database."""

import xml.etree.ElementTree as ElementTree

from request import LARGEST, Refusal, fields

# By the number in "sort". The id settles equals, so that pages never overlap.
ORDERS = ["good.id", "lower(title), good.id", "price, good.id", "price DESC, good.id", "added DESC, good.id"]
GOODS = ("SELECT good.type, good.id, title, maker, category, category.name, price, added, description FROM good "
         "JOIN category ON category.type = good.type AND category.id = good.category WHERE good.type = ? AND ")


def good_list(query, text):
    page = fields(text, type=(1, LARGEST), category=(0, LARGEST), sort=(0, len(ORDERS) - 1), start=(0, LARGEST),
                  max=(1, 100))
    place = page["type"], page["category"], page["category"]
    if not query("SELECT 1 FROM category WHERE type = ? AND (id = ? OR 0 = ?)", *place).fetchone():
        raise Refusal(902)
    total = query("SELECT count(*) FROM good WHERE type = ? AND (category = ? OR 0 = ?)", *place).fetchone()[0]
    root = ElementTree.Element("goods", {name: str(value) for name, value in {**page, "total": total}.items()})
    order = f"(category = ? OR 0 = ?) ORDER BY {ORDERS[page['sort']]} LIMIT ? OFFSET ?"
    for row in query(GOODS + order, *place, page["max"], page["start"]):
        root.append(good_element(row))
    return root


def one_good(query, text):
    good = fields(text, type=(1, LARGEST), id=(1, LARGEST))
    row = query(GOODS + "good.id = ?", good["type"], good["id"]).fetchone()
    if not row:
        raise Refusal(903)
    element = good_element(row)
    ElementTree.SubElement(element, "description").text = row[8]
    return element


def good_element(row):
    element = ElementTree.Element("good", type=str(row[0]), id=str(row[1]))
    for name, column in (("title", 2), ("maker", 3), ("category", 5), ("price", 6), ("added", 7)):
        ElementTree.SubElement(element, name).text = str(row[column])
    element.find("category").set("id", str(row[4]))
    return element
