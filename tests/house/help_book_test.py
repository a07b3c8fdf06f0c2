from planted_tree import HOUSE, PlantedTree

ONE_DOT = b"P3 1 1 255 0 0 255\n"


class HelpBook(PlantedTree):
    def setUp(self):
        super().setUp()
        self.plant("guide/index.md", "# The tool\n\n[cards](msr.md) [keys](keys.md)\n")
        self.plant("guide/keys.md", "# Keys & more\n\n[back](index.md)\n")
        self.plant("guide/msr.md", "# Cards\n\n![a card](../pictures/card.png)\n\n| a | b |\n|---|---|\n| 1 | 2 |\n")
        self.plant_picture("card")

    def plant_picture(self, name):
        target = self.root / "pictures" / f"{name}.png"
        target.parent.mkdir(exist_ok=True)
        dot = self.root / "dot.ppm"
        dot.write_bytes(ONE_DOT)
        self.assertEqual(self.run_command("convert", dot, target).returncode, 0)

    def make(self):
        folders = [self.root / name for name in ("guide", "pictures", "book")]
        return self.run_command(HOUSE / "scripts" / "help-book", *folders)

    def assert_refused(self, *words):
        made = self.make()
        self.assertEqual(made.returncode, 1)
        for word in words:
            self.assertIn(word, made.stderr)
        self.assertFalse((self.root / "book").exists())

    def book(self, name):
        return (self.root / "book" / name).read_text(encoding="utf-8")

    def test_the_chapters_stand_in_the_order_of_the_index(self):
        self.assertEqual(self.make().returncode, 0)
        self.assertEqual(self.book("contents"), "index\tThe tool\nmsr\tCards\nkeys\tKeys & more\n")

    def test_links_lead_to_pages_and_pictures_are_gifs(self):
        self.assertEqual(self.make().returncode, 0)
        self.assertIn('<a href="msr.html">cards</a>', self.book("index.html"))
        self.assertIn('<img src="card.gif" alt="a card">', self.book("msr.html"))
        self.assertEqual((self.root / "book" / "card.gif").read_bytes()[:4], b"GIF8")
        self.assertIn("<td>2</td>", self.book("msr.html"))
        self.assertIn("<title>Keys &amp; more</title>", self.book("keys.html"))

    def test_a_book_is_made_anew(self):
        self.plant("book/old.html", "")
        self.assertEqual(self.make().returncode, 0)
        self.assertFalse((self.root / "book" / "old.html").exists())

    def test_a_broken_link_is_found(self):
        self.plant("guide/keys.md", "# Keys\n\n[gone](display.md)\n")
        self.assert_refused("guide/keys.md: there is no chapter display.md")

    def test_a_link_out_of_the_guide_is_found(self):
        self.plant("guide/keys.md", "# Keys\n\n[far](https://example.org/x.md) [near](../linux.md)\n")
        self.assert_refused("there is no chapter https://example.org/x.md", "there is no chapter ../linux.md")

    def test_a_missing_picture_is_found(self):
        self.plant("guide/keys.md", "# Keys\n\n![a key](../pictures/key.png)\n")
        self.assert_refused("guide/keys.md: there is no picture ../pictures/key.png")

    def test_a_chapter_and_a_picture_that_nothing_leads_to_are_found(self):
        self.plant("guide/lost.md", "# Lost\n")
        self.plant_picture("lost")
        self.assert_refused("guide/index.md: does not lead to lost.md", "guide/index.md: no chapter shows lost.png")

    def test_a_chapter_without_a_title_is_found(self):
        self.plant("guide/keys.md", "Keys\n")
        self.assert_refused("guide/keys.md: does not begin with its title")
