"""The format language as the generator understands it."""

import unittest

from generator.formats import FormatError, parse_read, parse_write
from generator.templates import make_template


def kinds(conversions) -> list[tuple[str, str]]:
    return [(conversion.text, conversion.kind) for conversion in conversions]


class Write(unittest.TestCase):
    def test_literal_text_has_no_conversion(self) -> None:
        self.assertEqual(parse_write("HEAD OFF;:VERBOSE 1"), [])
        self.assertEqual(parse_write(""), [])
        self.assertEqual(parse_write("50%%"), [])

    def test_conversions_of_one_line(self) -> None:
        self.assertEqual(kinds(parse_write("A %d;B %0.15lg;C %{Mode}s;D %$BQs;E %s;F %c")), [
            ("%d", "integer"), ("%0.15lg", "real"), ("%{Mode}s", "enumeration"),
            ("%$BQs", "text"), ("%s", "text"), ("%c", "character")])

    def test_arrays_and_blocks(self) -> None:
        self.assertEqual(kinds(parse_write("%,$Sd %(;)4lg %,$S$Bs %{M},$Ss %$Slb %8B %!olhy")), [
            ("%,$Sd", "integer array"), ("%(;)4lg", "real array"), ("%,$S$Bs", "text array"),
            ("%{M},$Ss", "enumeration array"), ("%$Slb", "block"), ("%8B", "block"),
            ("%!olhy", "block")])

    def test_name_between_the_braces(self) -> None:
        self.assertEqual(parse_write("%{ VARIANT_BOOL }s")[0].enum, "VARIANT_BOOL")

    def test_length_and_kind_of_text(self) -> None:
        self.assertEqual([c.length for c in parse_write("%d %ld %hd %bd %Id %g %lg")],
                         ["", "l", "h", "b", "I", "", "l"])
        self.assertEqual([c.text_kind for c in parse_write("%s %$Bs %$CQs")], ["", "B", "C"])

    def test_counts_from_the_argument_list(self) -> None:
        self.assertEqual([c.counts for c in parse_write("%d %*d %*.*lg %0*d %,*d")],
                         [0, 1, 2, 1, 1])

    def test_no_conversion(self) -> None:
        for text in ("50%", "%", "%z", "%(;:)d", "%[^;]", "%t", "%{Mode", "%{Mo de}s"):
            with self.subTest(text), self.assertRaises(FormatError):
                parse_write(text)


class Read(unittest.TestCase):
    def test_conversions_of_one_reply(self) -> None:
        self.assertEqual(
            kinds(parse_read("%d,%$Ct;%lg;%$B[^;];%{Mode}[^;];%{Mode}s;%$Bs;%T;%c")), [
                ("%d", "integer"), ("%$Ct", "text"), ("%lg", "real"), ("%$B[^;]", "text"),
                ("%{Mode}[^;]", "enumeration"), ("%{Mode}s", "enumeration"), ("%$Bs", "text"),
                ("%T", "text"), ("%c", "character")])

    def test_several_separators(self) -> None:
        self.assertEqual(kinds(parse_read("%(;:)$Sd")), [("%(;:)$Sd", "integer array")])

    def test_suppressed_conversion_stores_nothing(self) -> None:
        self.assertEqual(kinds(parse_read("%*d,%d,%{M}*s,%*[^*]")), [("%d", "integer")])

    def test_star_in_a_set_suppresses_nothing(self) -> None:
        self.assertEqual(kinds(parse_read("%$B[^*]")), [("%$B[^*]", "text")])

    def test_count_from_the_argument_list(self) -> None:
        self.assertEqual([c.counts for c in parse_read("%s %#s %#[^#]")], [0, 1, 1])

    def test_length_of_a_real_number(self) -> None:
        self.assertEqual([c.length for c in parse_read("%g %lg %Lf")], ["", "l", "L"])

    def test_no_conversion(self) -> None:
        for text in ("%", "%w", "%$B[^;", "%0.15lg", "%B"):
            with self.subTest(text), self.assertRaises(FormatError):
                parse_read(text)


class Templates(unittest.TestCase):
    def test_selectors_become_conversions(self) -> None:
        template = make_template("CH<number>:A %d;:D<index>:B;:E:<name> %0.15lg")
        self.assertEqual(template.text, "CH%d:A %d;:D%d:B;:E:%s %0.15lg")
        self.assertEqual(template.selectors, ("number", "", "index", "name", ""))

    def test_template_without_selectors(self) -> None:
        self.assertEqual(make_template("A %*d").selectors, ("", ""))
        self.assertEqual(make_template("A").selector, "")

    def test_code_points_up_to_255(self) -> None:
        self.assertEqual(make_template("BYT_NR\u00a01\u00ff").text, "BYT_NR\u00a01\u00ff")
        with self.assertRaisesRegex(FormatError, r"^U\+0100 is no byte"):
            make_template("\u0100")
