"""zunohost as a process: arguments, output, exit statuses. Usage: zunohost_test.py ZUNOHOST WHIMS_PLUGIN"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

zunohost, whims = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:3])


def host(*arguments, text=None, environment=None):
    return subprocess.run([zunohost, "--plugin", whims, *arguments], input=text, capture_output=True, text=True,
                          timeout=60, env={**os.environ, **(environment or {})})


class Zunohost(unittest.TestCase):
    def expect(self, result, status, output=None, complaint=""):
        self.assertEqual(result.returncode, status, result.stderr)
        if output is not None:
            self.assertEqual(result.stdout, output)
        self.assertIn(complaint, result.stderr)

    def test_eval_prints_one_value_each_and_goes_on_after_an_error(self):
        result = host("eval", '1 + 1', 'Nope', 'Let ( $$x = "a¶b" ; "" )', '$$x')
        self.expect(result, 1, "2\n\na\nb\n", "nothing has the name Nope")
        result = host("eval", "--json", "1", "Nope", "Test_Nothing", "Date ( 2 ; 4 ; 2026 )")
        self.expect(result, 1)
        self.assertEqual([json.loads(line)["type"] for line in result.stdout.splitlines()],
                         ["number", "error", "empty", "date"])

    def test_eval_reads_standard_input_and_answers_line_by_line(self):
        for arguments in (("eval",), ("eval", "-"), ("repl",)):
            self.expect(host(*arguments, text='Let ( $$x = 2 ; "" )\n\n$$x * 3\n"no line end"'), 0, "\n6\nno line end\n")
        with subprocess.Popen([zunohost, "--plugin", whims, "--json", "eval", "-"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, text=True) as process:
            for number in range(3):
                process.stdin.write(f"{number} + 1\n")
                process.stdin.flush()
                self.assertEqual(json.loads(process.stdout.readline())["value"], str(number + 1))
            process.stdin.close()
            self.assertEqual(process.wait(timeout=60), 0)

    def test_functions_follow_the_extension_version(self):
        for version, description, steps in ((55, "", 0), (56, "test|what it does", 0), (57, "test|what it does", 3)):
            result = host("--extension-version", str(version), "--json", "functions")
            self.expect(result, 0)
            rows = json.loads(result.stdout)
            self.assertEqual([row["id"] for row in rows], list(range(1, 13)))
            self.assertEqual(rows[1], {"id": 2, "name": "Test_Joined", "prototype": "Test_Joined( values )",
                                       "description": description, "min": 0, "max": -1, "step": version >= 57})
            self.assertEqual(sum(row["step"] for row in rows), steps)
        listing = host("functions").stdout
        self.assertIn("Test_Joined( values )", listing)
        self.assertIn("what it does\n", listing)
        self.assertNotIn("test|", listing)

    def test_a_refused_plugin_fails_every_command(self):
        for command in (["functions"], ["eval", "1"], ["repl"], ["run", "none.fmscript"]):
            self.expect(host("--extension-version", "49", *command), 1, "", "refuses to be initialised")
        missing = subprocess.run([zunohost, "--plugin", "/none.fmx", "eval", "1"], capture_output=True, text=True)
        self.expect(missing, 1, "", "cannot be loaded")

    def test_a_leak_is_reported_at_the_end(self):
        self.expect(host("eval", "Test_Leaking", "1"), 1, "leaked\n1\n", "1 Text")
        self.expect(host("eval", 'Test_Throwing ( "memory" )', "1"), 1, "1\n", "bad_alloc")

    def test_scripts_print_dialogs_and_name_what_is_wrong(self):
        with tempfile.TemporaryDirectory() as folder:
            script = pathlib.Path(folder, "greet.fmscript")
            script.write_text('Show Custom Dialog [ "Hello" ; Get ( ScriptParameter ) & "¶." ]\n'
                              'Test_Joined [ Results: $r ; First: "é" ]\r\nShow Custom Dialog [ "Got" ; $r ]\n',
                              encoding="utf-8", newline="")
            self.expect(host("run", str(script), "Ann Ünal"), 0, "Hello: Ann Ünal\n.\nGot: 4|é|7||1\n")
            script.write_text("Show Custom Dialog [ 1 ; 2 ]\nNo_Such_Step\n")
            self.expect(host("run", str(script)), 1, "", f"{script}:2: there is no script step No_Such_Step")
            self.expect(host("run", str(script) + "x"), 1, "", "cannot be read")
            self.expect(host("run", folder), 1, "", "cannot be read: Is a directory")

    def test_wrong_usage_has_a_status_of_its_own(self):
        for arguments in ([], ["frobnicate"], ["run"], ["--extension-version", "x", "functions"]):
            self.expect(host(*arguments), 2, "")
        self.expect(host("--help"), 0)


unittest.main(argv=[sys.argv[0]], verbosity=1)
