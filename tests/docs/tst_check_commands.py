#!/usr/bin/env python3
"""The check of the command reference finds what is missing, wrong or made up."""

import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

PATH = str(Path(__file__).resolve().with_name("check-commands"))
LOADER = importlib.machinery.SourceFileLoader("check_commands", PATH)
check = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_commands", LOADER))
LOADER.exec_module(check)

SOURCE = r"""
bool Controller::setOwner(const QString &owner) const
{
    return succeeds(
        [&] { return m_host->sendCommand("config owner \"%s\" ", owner.toLatin1().constData()); });
}
bool Controller::slot(int slot, ReplyBuffer *reply) const
{
    return succeeds([&] { return m_host->queryString(reply->data(),
                                                     "config config t%02d", slot); });
}
"""
DOCUMENT = """
| command | operation | time-out | answer |
|---|---|---|---|
| `config owner "%s" ` | `sendCommand` | New: 20000, 1. Edit: — | none |
| `config config t%02d` | `queryString` | — | the identifier |

```conversation
> config config t01
< standard
> config owner "x"
<
> config config t99
! no such …
```
"""
TRANSCRIPT = """
== A step
setTimeout 0 20000 1
sendCommand config owner "x"  -> failed: no
postMessage standard VELTRA4 1 failed
queryString config config t01 -> standard
sendCommand config owner "y" {blank}
""".format(blank="")


class Client:
    ANSWERS = {"config config t01": ("ok", "standard"), 'config owner "x"': ("ok", ""),
               "config config t99": ("error", "no such slot")}

    def ask(self, command):
        return self.ANSWERS[command]


class TestCheckCommands(unittest.TestCase):
    def differences(self, document):
        return list(check.differences(check.commands_of(SOURCE), check.commands_in(document)))

    def wrong_timeouts(self, transcript):
        return list(check.wrong_timeouts(check.timeouts_in(DOCUMENT), transcript))

    def wrong_examples(self, document):
        return list(check.wrong_examples(check.exchanges_in(document), Client()))

    def test_what_is_right(self):
        self.assertEqual(self.differences(DOCUMENT), [])
        self.assertEqual(len(check.exchanges_in(DOCUMENT)), 3)
        self.assertEqual(self.wrong_examples(DOCUMENT), [])

    def test_other_commands(self):
        for right, wrong, missing, nobodys in [
                ("t%02d", "t%d", 'queryString "config config t%02d"',
                 'queryString "config config t%d"'),
                ('"%s" `', '"%s"`', 'sendCommand "config owner "%s" "',
                 'sendCommand "config owner "%s""'),
                ("queryString", "queryInt", 'queryString "config config t%02d"',
                 'queryInt "config config t%02d"')]:
            with self.subTest(wrong):
                self.assertEqual(self.differences(DOCUMENT.replace(right, wrong)),
                                 [f"there is no row for {missing}", f"nobody sends {nobodys}"])

    def test_timeouts(self):
        owner = 'sendCommand "config owner "%s" "'
        slot = 'queryString "config config t%02d"'
        for transcript, problems in [
                (TRANSCRIPT, []),
                (TRANSCRIPT.replace("20000", "2000"),
                 [f"{owner} is never sent after 20000, 1", f"{owner} is sent after 2000, 1"]),
                (TRANSCRIPT.replace("queryString", "setTimeout 0 5000 0\nqueryString"),
                 [f"{slot} is never sent after —", f"{slot} is sent after 5000, 0"]),
                (TRANSCRIPT + "sendCommand config reset",
                 ['there is no row for sendCommand "config reset"'])]:
            with self.subTest(problems=problems):
                self.assertEqual(self.wrong_timeouts(transcript), problems)

    def test_another_answer(self):
        self.assertEqual(self.wrong_examples(DOCUMENT.replace("< standard", "< std")),
                         ['"config config t01" is answered with ok "standard"'])

    def test_a_refusal(self):
        self.assertEqual(self.wrong_examples(DOCUMENT.replace("! no such", "< no such")),
                         ['"config config t99" is answered with error "no such slot"'])


if __name__ == "__main__":
    unittest.main()
