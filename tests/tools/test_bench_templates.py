"""The longest templates of a model, as the source of a benchmark."""

import unittest

from bench import templates
from bench.templates import Template, TemplateError
from generator.cli import read_model
from generator.problems import Problems
from support import SMALL_MODEL


class Longest(unittest.TestCase):
    def setUp(self) -> None:
        self.model = read_model(SMALL_MODEL, "1.2.3", Problems())

    def test_commands_have_a_conversion_and_come_longest_first(self) -> None:
        found = templates.longest_commands(self.model)
        self.assertGreater(len(found), 3)
        lengths = [len(one.text) for one in found]
        self.assertEqual(lengths, sorted(lengths, reverse=True))
        for one in found:
            self.assertIn("%", one.text)

    def test_each_text_comes_once(self) -> None:
        for found in (templates.longest_commands(self.model),
                      templates.longest_replies(self.model)):
            texts = [one.text for one in found]
            self.assertEqual(len(texts), len(set(texts)))

    def test_there_are_no_more_than_asked_for(self) -> None:
        many = [Template("A.B", "X" * length) for length in range(1, 30)]
        found = templates._longest(many)
        self.assertEqual([len(one.text) for one in found], list(range(29, 9, -1)))


class Source(unittest.TestCase):
    def test_a_command_is_printed_with_the_same_values(self) -> None:
        parts, row = templates._command(
            4, Template("A.Set", "A:B %{KindEnum}s;C %0.15lg;D %d;E 5%%"))
        self.assertIn('std::snprintf(text, size, "A:B %s;C %0.15lg;D %d;E 5%%", '
                      "arguments[0].text, arguments[1].real, arguments[2].integer)", parts)
        self.assertIn('{{ValueKind::kEnum, "KindEnum", true}, {ValueKind::kReal, "", true}, '
                      '{ValueKind::kInteger, "", true}}', parts)
        self.assertEqual(row, '    {"A.Set", "A:B %{KindEnum}s;C %0.15lg;D %d;E 5%%", kCommand4, '
                              "Print4},\n")

    def test_a_reply_has_a_value_for_each_field(self) -> None:
        parts, _ = templates._reply(0, Template("A.Read", "%{KindEnum}[^;];%*lg;%$B[^;];%d"))
        self.assertEqual(parts, 'constexpr TemplateValue kReply0[] = {'
                                '{ValueKind::kEnum, "KindEnum", true}, '
                                '{ValueKind::kReal, "", false}, {ValueKind::kText, "", true}, '
                                '{ValueKind::kInteger, "", true}};\n')

    def test_a_conversion_without_a_value_is_told_with_its_member(self) -> None:
        with self.assertRaisesRegex(TemplateError, "^A.Set: no value for %b in 'A %b'$"):
            templates._command(0, Template("A.Set", "A %b"))
        with self.assertRaisesRegex(TemplateError, "^A.Set: no text for "):
            templates._command(0, Template("A.Set", "A %$Cs"))


if __name__ == "__main__":
    unittest.main()
