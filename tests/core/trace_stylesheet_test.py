"""The page that xsltproc makes of a trace with the stylesheet of the tree."""

import os
import re
import subprocess
import sys
import tempfile
import unittest
import xml.dom.minidom
from html.parser import HTMLParser
from pathlib import Path
from xml.sax.saxutils import unescape

STYLESHEET = Path(__file__).resolve().parents[2] / "data/trace.xslt"
WITHOUT_END = ("meta", "br", "wbr", "hr", "img", "input", "link")


class Element:
    def __init__(self, tag: str, attributes: dict[str, str], parent: "Element | None") -> None:
        self.tag, self.attributes, self.parent = tag, attributes, parent
        self.content: list["Element | str"] = []

    @property
    def classes(self) -> list[str]:
        return self.attributes.get("class", "").split()

    @property
    def text(self) -> str:
        return "".join(part if isinstance(part, str) else part.text for part in self.content)

    def all(self, tag: str = "", of_class: str = "") -> list["Element"]:
        """The elements within this one, in the order of the page."""
        found = []
        for part in self.content:
            if isinstance(part, Element):
                if tag in ("", part.tag) and (not of_class or of_class in part.classes):
                    found.append(part)
                found += part.all(tag, of_class)
        return found

    def one(self, tag: str = "", of_class: str = "") -> "Element":
        found = self.all(tag, of_class)
        if len(found) != 1:
            raise AssertionError(f"{len(found)} of <{tag} class='{of_class}'> in {self.text!r}")
        return found[0]

    def identified(self, name: str) -> "Element":
        found = [part for part in self.all() if part.attributes.get("id") == name]
        if len(found) != 1:
            raise AssertionError(f"{len(found)} elements with the id {name}")
        return found[0]


class Page(HTMLParser):
    """A page as a tree; every element has to be closed where it ought to be."""

    def __init__(self, text: str) -> None:
        super().__init__(convert_charrefs=True)
        self.root = Element("", {}, None)
        self.at = self.root
        self.feed(text)
        self.close()
        if self.at is not self.root:
            raise AssertionError(f"<{self.at.tag}> is left open")

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        element = Element(tag, {name: value or "" for name, value in attrs}, self.at)
        self.at.content.append(element)
        if tag not in WITHOUT_END:
            self.at = element

    def handle_endtag(self, tag: str) -> None:
        if tag != self.at.tag:
            raise AssertionError(f"</{tag}> ends <{self.at.tag}>")
        self.at = self.at.parent or self.root

    def handle_data(self, data: str) -> None:
        self.at.content.append(data)


def status(value: str = "0x00000000", message: str = "") -> str:
    return f'<HRESULT Value="{value}"' + (f' Message="{message}"' if message else "") + "/>"


def method(*, name: str = "get_Mode", within: str = "", time: str | None = "1.000000e-03",
           result: str | None = None, start: str = "14:5:7:89") -> str:
    execution = "" if time is None else f'<Execution ExecutionTime="{time}"/>'
    return (f'<Method Name="{name}" Interface="IKestrionAcquisition" StartTime="{start}" '
            f'Thread="4711" Timestamp="5000">{within}'
            f"{status() if result is None else result}{execution}</Method>\r\n")


def parameter(attributes: str, within: str = "", name: str = "val", direction: str = "In") -> str:
    return f'<Parameter Name="{name}" Direction="{direction}" {attributes}>{within}</Parameter>'


class StylesheetTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def page_of(self, trace: Path) -> Element:
        # A system without xsltproc fails here: the page is a part of what is delivered.
        made = subprocess.run(["xsltproc", "--nonet", str(STYLESHEET), str(trace)],
                              capture_output=True, timeout=50, check=False)
        self.assertEqual((made.returncode, made.stderr.decode()), (0, ""))
        return Page(made.stdout.decode("utf-8")).root

    def page(self, *records: str) -> Element:
        """The page of a trace that holds these records."""
        trace = self.folder / "trace.xml"
        trace.write_bytes(('<?xml version="1.0"?>\r\n<TraceRecords>\r\n' + "".join(records)
                           + "</TraceRecords>\r\n").encode("utf-8"))
        return self.page_of(trace)

    def rows(self, *records: str) -> list[Element]:
        return self.page(*records).identified("records").all("tr")

    def argument(self, attributes: str, within: str = "", direction: str = "In") -> Element:
        """What the page shows of a call's only argument."""
        record = method(within=parameter(attributes, within, direction=direction))
        return self.rows(record)[0].one("div", "parameter")


class PageTest(StylesheetTest):
    def test_an_empty_trace_says_so(self) -> None:
        page = self.page()
        self.assertEqual(page.one("title").text, "Method trace: 0 calls, 0 failed")
        self.assertEqual(page.identified("calls").text, "0")
        self.assertIn("No call was recorded.", page.one("main").text)
        self.assertEqual(page.all("table"), [])

    def test_a_root_without_an_end_tag_of_its_own_is_an_empty_trace(self) -> None:
        trace = self.folder / "trace.xml"
        trace.write_text("<TraceRecords/>", encoding="utf-8")
        self.assertEqual(self.page_of(trace).identified("calls").text, "0")

    def test_a_call_is_a_row_with_all_that_is_known_of_it(self) -> None:
        row, = self.rows(method(
            within=parameter('Value="3" DataType="Int32"', direction="Out"), time="2.500000e-01"))
        self.assertEqual(row.attributes["id"], "call-1")
        self.assertEqual(row.one("td", "number").text, "1")
        self.assertEqual(row.one("td", "start").text, "14:05:07.089")
        self.assertEqual(row.one("td", "thread").text, "4711")
        self.assertEqual(row.one("td", "call").text, "IKestrionAcquisition.get_Mode")
        self.assertEqual(row.one("span", "argument").text, "val = 3 Int32")
        self.assertEqual(row.one("span", "direction").text, "out")
        self.assertEqual(row.one("td", "status").text.split(), ["0x00000000"])
        self.assertEqual(row.one("td", "duration").text, "250\u00A0ms")

    def test_the_heading_counts_calls_failures_and_time(self) -> None:
        page = self.page(
            method(time="1.500000e-03", start="9:59:59:900"),
            method(time="2.500000e-03", within=method(time="2.000000e-03"),
                   result=status("0x80047017")),
            method(name="Close", time="1.000000e-03", start="10:0:1:0"))
        self.assertEqual(page.one("title").text, "Method trace: 4 calls, 1 failed")
        self.assertEqual(page.identified("calls").text, "4")
        self.assertIn("1 within others", page.one("dl").text)
        self.assertEqual(page.identified("failed").text, "1")
        self.assertEqual(page.identified("total").text, "5.00\u00A0ms")
        self.assertEqual(page.identified("span").text, "1.10\u00A0s")
        self.assertIn("09:59:59.900 to 10:00:01.000", page.one("dl").text)

    def test_one_call_is_named_in_the_singular(self) -> None:
        self.assertEqual(self.page(method()).one("title").text, "Method trace: 1 call, 0 failed")

    def test_a_span_may_cross_midnight(self) -> None:
        page = self.page(method(start="23:59:59:500"), method(start="0:0:1:500", time="5.0e-01"))
        self.assertEqual(page.identified("span").text, "2.50\u00A0s")

    def test_the_page_stands_on_its_own(self) -> None:
        page = self.page(method(), method(result=status("0x80047017", "Message")))
        self.assertEqual(page.all("script") + page.all("link") + page.all("img"), [])
        for element in page.all():
            self.assertNotIn("src", element.attributes)
            self.assertTrue(element.attributes.get("href", "#").startswith("#"))
        style = page.one("style").text
        self.assertNotRegex(style, r"url\(|@import|https?:")
        self.assertIn("prefers-color-scheme: dark", style)
        self.assertIn("@media print", style)

    def test_a_long_trace_goes_through(self) -> None:
        page = self.page(*[method(time="1.000000e-03")] * 4000)
        self.assertEqual(page.identified("calls").text, "4000")
        self.assertEqual(page.identified("total").text, "4.00\u00A0s")
        self.assertEqual(len(page.identified("records").all("tr")), 4000)
        self.assertEqual(len(page.identified("slowest").all("li")), 5)


class DurationTest(StylesheetTest):
    def test_times_with_exponents_are_shown_in_the_unit_that_fits(self) -> None:
        expected = {
            "0.000000e+00": "0\u00A0ns", "1.000000e-09": "1.00\u00A0ns",
            "2.500000e-07": "250\u00A0ns", "9.994000e-07": "999\u00A0ns",
            "9.999000e-07": "1.00\u00A0\u00B5s", "4.216900e-05": "42.2\u00A0\u00B5s",
            "5.815440e-04": "582\u00A0\u00B5s", "9.999999e-04": "1.00\u00A0ms",
            "1.250000e-03": "1.25\u00A0ms", "1.502031e-01": "150\u00A0ms",
            "1.000000e+00": "1.00\u00A0s", "9.996000e+00": "10.0\u00A0s",
            "1.500000e+03": "1500\u00A0s"}
        rows = self.rows(*[method(time=time) for time in expected])
        self.assertEqual([row.one("span", "figure").text for row in rows], list(expected.values()))

    def test_what_is_no_number_is_a_dash_without_a_bar(self) -> None:
        for row in self.rows(method(time="inf"), method(time="nan"), method(time="")):
            self.assertEqual(row.one("td", "duration").text, "\u2013")
            self.assertEqual(row.all("span", "bar"), [])

    def test_the_bar_is_as_long_as_the_time_to_the_slowest(self) -> None:
        rows = self.rows(method(time="5.000000e-04"), method(time="2.000000e-03"),
                         method(time="2.500000e-06"), method(time="0.000000e+00"))
        widths = [bar.attributes["style"] for row in rows for bar in row.all("span", "bar")]
        self.assertEqual(widths, ["width: 25%", "width: 100%", "width: 0.13%"])

    def test_the_slowest_calls_come_first_and_lead_to_their_rows(self) -> None:
        times = ["2.000000e-05", "9.000000e-06", "1.000000e+01", "0.000000e+00", "1.000000e-01",
                 "3.000000e-05", "9.900000e-02"]
        page = self.page(*[method(name=f"M{i}", time=time)
                           for i, time in enumerate(times, start=1)])
        entries = page.identified("slowest").all("li")
        self.assertEqual([entry.one("span", "number").text for entry in entries],
                         ["3", "5", "7", "6", "1"])
        self.assertEqual([entry.one("span", "figure").text for entry in entries],
                         ["10.0\u00A0s", "100\u00A0ms", "99.0\u00A0ms", "30.0\u00A0\u00B5s",
                          "20.0\u00A0\u00B5s"])
        for entry in entries:
            target = page.identified(entry.one("a").attributes["href"].removeprefix("#"))
            self.assertEqual(target.one("span", "member").text,
                             entry.one("span", "member").text)

    def test_a_failed_call_among_the_slowest_is_marked_by_the_word(self) -> None:
        page = self.page(method(time="1.000000e-03"),
                         method(time="2.000000e-03", result=status("0x80044215")))
        failed, passed = page.identified("slowest").all("li")
        self.assertEqual(failed.one("strong", "mark").text, "FAILED")
        self.assertEqual(passed.all("strong", "mark"), [])

    def test_a_call_within_another_can_be_the_slowest(self) -> None:
        page = self.page(method(name="A", time="1.000000e-03"),
                         method(name="B", time="3.000000e-03",
                                within=method(name="C", time="2.000000e-03")))
        entries = page.identified("slowest").all("li")
        self.assertEqual([entry.one("a").attributes["href"] for entry in entries],
                         ["#call-2", "#call-3", "#call-1"])


class StatusTest(StylesheetTest):
    def test_a_failure_is_marked_by_a_word_and_has_its_message(self) -> None:
        passed, failed = self.rows(
            method(), method(result=status("0x80047017", "Not there.&#13;&#10;Look &lt;again&gt;")))
        self.assertEqual(passed.all("", "mark"), [])
        self.assertNotIn("failed", passed.classes)
        self.assertIn("failed", failed.classes)
        cell = failed.one("td", "status")
        self.assertEqual(cell.one("strong", "mark").text, "FAILED")
        self.assertEqual(cell.one("code").text, "0x80047017")
        self.assertEqual(cell.one("span", "message").text, "Not there.\r\nLook <again>")

    def test_every_status_with_the_highest_bit_is_a_failure(self) -> None:
        values = ["0x80000000", "0x9FFFFFFF", "0xA0000000", "0xBFFA0001", "0xFFFFFFFF",
                  "0x7FFFFFFF", "0x00000001", "0x00000000"]
        rows = self.rows(*[method(result=status(value)) for value in values])
        marks = ["".join(mark.text for mark in row.all("strong", "mark")) for row in rows]
        self.assertEqual(marks, ["FAILED"] * 5 + ["WARNING", "WARNING", ""])

    def test_a_warning_is_no_failure(self) -> None:
        page = self.page(method(result=status("0x00040102")))
        self.assertEqual(page.identified("failed").text, "0")
        self.assertEqual(page.identified("records").one("strong", "mark").text, "WARNING")

    def test_the_failed_calls_are_listed_with_their_rows(self) -> None:
        records = [method(name=f"M{i}", result=status("0x80047017", f"No {i}."))
                   if i % 2 else method(name=f"M{i}") for i in range(1, 15)]
        page = self.page(*records)
        entries = page.identified("failures").all("li")
        self.assertEqual([entry.one("a").attributes["href"] for entry in entries],
                         ["#call-1", "#call-3", "#call-5", "#call-7", "#call-9"])
        self.assertEqual(entries[1].one("span", "message").text, "No 3.")
        self.assertIn("and 2 more, marked below", page.one("main").text)

    def test_a_failure_without_a_message_is_listed_with_its_status(self) -> None:
        page = self.page(method(result=status("0x8000FFFF")))
        self.assertEqual(page.identified("failures").one("span", "message").text, "0x8000FFFF")
        self.assertEqual(page.identified("records").all("span", "message"), [])


class NestingTest(StylesheetTest):
    def test_calls_stand_under_the_call_that_made_them(self) -> None:
        rows = self.rows(
            method(name="A", within=method(name="B", within=method(name="C")) + method(name="D")),
            method(name="E"))
        self.assertEqual([row.one("td", "call").text.split(".")[1] for row in rows],
                         ["A", "B", "C", "D", "E"])
        self.assertEqual([row.attributes["data-depth"] for row in rows], ["0", "1", "2", "1", "0"])
        self.assertEqual([row.attributes.get("style") for row in rows],
                         [None, "--depth: 1", "--depth: 2", "--depth: 1", None])
        self.assertEqual(["nested" in row.classes for row in rows],
                         [False, True, True, True, False])
        self.assertEqual([row.attributes["id"] for row in rows],
                         ["call-1", "call-2", "call-3", "call-4", "call-5"])

    def test_a_call_shows_its_own_arguments_and_status_only(self) -> None:
        outer, inner = self.rows(method(
            name="A", result=status("0x80047059"), time="2.000000e-03",
            within=parameter('Value="1" DataType="Int32"')
            + method(name="B", within=parameter('Value="2" DataType="Int32"'))))
        self.assertEqual(outer.one("span", "argument").text, "val = 1 Int32")
        self.assertEqual(inner.one("span", "argument").text, "val = 2 Int32")
        self.assertEqual(outer.one("code").text, "0x80047059")
        self.assertEqual(inner.one("code").text, "0x00000000")
        self.assertEqual(outer.one("span", "figure").text, "2.00\u00A0ms")

    def test_the_indentation_ends_somewhere(self) -> None:
        record = method()
        for _ in range(20):
            record = method(within=record)
        rows = self.rows(record)
        self.assertEqual(rows[-1].attributes["data-depth"], "20")
        self.assertEqual(rows[-1].attributes["style"], "--depth: 8")
        self.assertEqual(rows[7].attributes["style"], "--depth: 7")


class ArgumentTest(StylesheetTest):
    def test_arguments_keep_their_order_and_directions(self) -> None:
        row, = self.rows(method(
            within=parameter('Value="1" DataType="Int32"', name="a")
            + parameter('Value="2" DataType="Int32"', name="b", direction="InOut")
            + method()
            + parameter('Value="4" DataType="Int32"', name="b", direction="InOut")
            + parameter('Value="3" DataType="Int32"', name="c", direction="Out")))[:1]
        shown = [(each.one("span", "direction").text, each.one("span", "argument").text)
                 for each in row.all("div", "parameter")]
        self.assertEqual(shown, [("in", "a = 1 Int32"), ("in", "b = 2 Int32"),
                                 ("out", "b = 4 Int32"), ("out", "c = 3 Int32")])

    def test_text_stands_in_quotes_and_no_text_is_seen_as_such(self) -> None:
        def shown(value: str) -> str:
            return self.argument(f'Value="{value}" DataType="String"').one("span", "value").text
        self.assertEqual(shown("CH1"), '"CH1"')
        self.assertEqual(shown(""), '""')
        self.assertEqual(shown("  "), '"  "')
        self.assertEqual(shown("(null)"), "(null)")

    def test_an_array_shows_its_type_its_size_and_its_elements(self) -> None:
        elements = '<Element Value="0"/><Element Value="0.5"/><Element Value="-1e-09"/>'
        argument = self.argument('NumDims="1" DimSizes="3" DataType="Double[]"', elements)
        self.assertEqual(argument.one("span", "argument").text, "val = 0, 0.5, -1e-09 Double[3]")

    def test_an_array_that_is_cut_off_says_how_much_is_shown(self) -> None:
        argument = self.argument('NumDims="1" DimSizes="1000" DataType="Double[]"',
                                 '<Element Value="0"/><Element Value="1"/>')
        self.assertEqual(argument.one("span", "argument").text,
                         "val = 0, 1, \u2026 Double[1000], first 2 of 1000")

    def test_an_array_whose_elements_are_not_traced(self) -> None:
        argument = self.argument('NumDims="1" DimSizes="1000" DataType="Double[]"')
        self.assertEqual(argument.one("span", "argument").text,
                         "val Double[1000], elements not recorded")

    def test_an_array_of_two_dimensions(self) -> None:
        elements = "".join(f'<Element Value="{i}"/>' for i in range(6))
        argument = self.argument('NumDims="2" DimSizes="3,2" DataType="Int32[]"', elements)
        self.assertEqual(argument.one("span", "argument").text,
                         "val = 0, 1, 2, 3, 4, 5 Int32[3,2], 2 dimensions")

    def test_an_array_of_texts_has_each_in_quotes(self) -> None:
        argument = self.argument('NumDims="1" DimSizes="2" DataType="String[]"',
                                 '<Element Value="a, b"/><Element Value="(null)"/>')
        self.assertEqual(argument.one("span", "elements").text, '"a, b", (null)')

    def test_an_empty_array_and_a_null_one(self) -> None:
        empty = self.argument('NumDims="1" DimSizes="0" DataType="Int32[]"')
        self.assertEqual(empty.one("span", "argument").text, "val Int32[0], empty")
        null = self.argument('Value="(null)" DataType="Double[]"', direction="Out")
        self.assertEqual(null.one("span", "argument").text, "val = (null) Double[]")

    def test_an_array_of_an_unknown_type(self) -> None:
        argument = self.argument('NumDims="1" DimSizes="2" DataType="(unknown)"')
        self.assertEqual(argument.one("span", "argument").text,
                         "val (unknown) [2], elements not recorded")

    def test_a_long_value_scrolls_in_a_box_of_its_own(self) -> None:
        short = self.argument(f'Value="{"x" * 200}" DataType="String"')
        self.assertEqual(short.all("span", "long"), [])
        long = self.argument(f'Value="{"x" * 201}" DataType="String"')
        self.assertEqual(long.one("span", "long").text, '"' + "x" * 201 + '"')
        elements = '<Element Value="1"/>' * 25
        many = self.argument('NumDims="1" DimSizes="25" DataType="Int32[]"', elements)
        self.assertEqual(many.one("span", "long").text, ", ".join(["1"] * 25))


class CutOffTest(StylesheetTest):
    def test_a_trace_that_ends_with_close_has_no_notes(self) -> None:
        page = self.page(method(), method(name="Close"))
        self.assertEqual(page.all("p", "note"), [])

    def test_a_trace_without_close_says_so(self) -> None:
        page = self.page(method())
        self.assertIn("without a record of Close", page.identified("no-close").text)

    def test_calls_that_did_not_end_are_told(self) -> None:
        page = self.page(method(), method(within=method(time=None, result=""), time=None,
                                          result=""))
        rows = page.identified("records").all("tr")
        self.assertEqual([row.all("strong", "mark")[0].text for row in rows[1:]],
                         ["NOT ENDED", "NOT ENDED"])
        self.assertEqual(rows[1].one("td", "duration").text, "\u2013")
        self.assertEqual(page.identified("open-calls").text,
                         "2 calls had not ended when the trace did.")
        self.assertEqual(page.identified("failed").text, "0")
        self.assertEqual(len(page.identified("slowest").all("li")), 1)
        self.assertEqual(page.identified("total").text, "1.00\u00A0ms")

    def test_a_trace_of_one_open_call_has_no_slowest(self) -> None:
        page = self.page(method(time=None, result=""))
        self.assertEqual(page.identified("slowest").all("li"), [])
        self.assertEqual(page.identified("total").text, "0\u00A0ns")
        self.assertEqual(page.identified("open-calls").text,
                         "1 call had not ended when the trace did.")


class OddTraceTest(StylesheetTest):
    """A trace of the driver's own writer, with texts that XML can't hold as they are."""

    TEXTS = [
        "\uFFFD\uFFFD\uFFFD\x7F",
        "\"double\" and 'single'",
        "a ]]> b <![CDATA[ c --> d <!-- e ?> f",
        "<script>alert(1)</script> &amp; &#65;",
        "a\uFFFDb\uFFFDc\U0001F600",
        "\u00C4\u03A9\u4E2D \u00B5V",
        "\uFFFD\uFFFD",
        "  two\tblanks\r\nand a line  ",
        "",
    ]
    MESSAGE = "Unexpected value '<\u03A9>' for \"Mode\".\r\nSecond line ]]>"

    def write(self, name: str = "odd.xml", stylesheet: str = "") -> Path:
        trace = self.folder / name
        made = subprocess.run([os.environ["KESTRION_ODD_TRACE"], str(trace),
                               stylesheet or str(STYLESHEET)],
                              capture_output=True, text=True, timeout=50, check=False)
        self.assertEqual((made.returncode, made.stderr), (0, ""))
        return trace

    def test_the_document_is_well_formed_and_holds_each_text(self) -> None:
        document = xml.dom.minidom.parse(str(self.write()))
        values = [each.getAttribute("Value") for each in document.getElementsByTagName("Parameter")
                  if each.getAttribute("DataType") == "String"]
        self.assertEqual(values, self.TEXTS)
        messages = [each.getAttribute("Message")
                    for each in document.getElementsByTagName("HRESULT")]
        self.assertIn(self.MESSAGE, messages)

    def test_the_page_shows_each_text_as_it_is(self) -> None:
        page = self.page_of(self.write())
        rows = page.identified("records").all("tr")
        self.assertEqual([row.one("span", "value").text for row in rows[:len(self.TEXTS)]],
                         [f'"{text}"' for text in self.TEXTS])
        self.assertEqual(page.all("script"), [])

    def test_the_page_shows_the_rest_of_the_trace(self) -> None:
        page = self.page_of(self.write())
        rows = page.identified("records").all("tr")
        self.assertEqual(len(rows), len(self.TEXTS) + 3)
        outer, inner, close = rows[-3:]
        self.assertEqual(outer.one("td", "call").text, "IIviScopeAcquisition.get_Type")
        self.assertEqual(inner.one("td", "call").text, "IKestrionAcquisition.get_Mode")
        self.assertEqual([row.attributes["data-depth"] for row in rows[-3:]], ["0", "1", "0"])
        self.assertEqual(outer.one("span", "message").text, self.MESSAGE)
        self.assertEqual(inner.one("span", "message").text, self.MESSAGE)
        self.assertEqual([each.one("span", "argument").text
                          for each in outer.all("div", "parameter")],
                         ["samples = 0, 0.5, -2.5e-09, \u2026 Double[4], first 3 of 4",
                          "val = 0 Double"])
        self.assertEqual(close.one("td", "call").text, "IIviDriver.Close")
        self.assertEqual(page.identified("failed").text, "2")
        self.assertEqual(page.all("p", "note"), [])
        for row in rows:
            self.assertRegex(row.one("td", "start").text, r"^\d\d:\d\d:\d\d\.\d\d\d$")
            self.assertRegex(row.one("span", "figure").text, "^[0-9.]+\u00A0(ns|\u00B5s|ms|s)$")

    def test_a_path_with_odd_characters_leaves_the_document_well_formed(self) -> None:
        folder = self.folder / "R&D \"lab\" <1> \u00E4\u03A9 ]]> '?> %20#"
        folder.mkdir()
        stylesheet = folder / "trace.xslt"
        stylesheet.write_bytes(STYLESHEET.read_bytes())
        trace = self.write(f"{folder.name}/odd.xml", str(stylesheet))
        instruction = xml.dom.minidom.parse(str(trace)).firstChild
        self.assertEqual(instruction.target, "xml-stylesheet")
        match = re.fullmatch(r'type="text/xsl" href="([^"]*)"', instruction.data)
        self.assertIsNotNone(match, instruction.data)
        self.assertEqual(unescape(match.group(1), {"&quot;": '"'}), "file:\\\\" + str(stylesheet))
        self.assertEqual(len(self.page_of(trace).identified("records").all("tr")), 12)

    def test_a_trace_that_broke_off_can_be_shown_once_its_root_is_closed(self) -> None:
        whole = self.write().read_bytes()
        cut = self.folder / "cut.xml"
        cut.write_bytes(whole.removesuffix(b"</TraceRecords>\r\n"))
        broken = subprocess.run(["xsltproc", str(STYLESHEET), str(cut)], capture_output=True,
                                timeout=50, check=False)
        self.assertNotEqual(broken.returncode, 0)
        cut.write_bytes(cut.read_bytes() + b"</TraceRecords>\n")
        self.assertEqual(len(self.page_of(cut).identified("records").all("tr")), 12)


if __name__ == "__main__":
    program = unittest.main(exit=False, verbosity=2)
    ran = program.result.testsRun > 0
    sys.exit(0 if ran and program.result.wasSuccessful() else 1)
