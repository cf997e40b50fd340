# SPDX-License-Identifier: MIT
"""The report of every simulated device against docs/report.schema.json."""
import json
import os
import subprocess
import unittest

try:
    from jsonschema import Draft202012Validator
except ImportError:
    Draft202012Validator = None

SIMULATOR, VEXACTL = os.environ["VEXA_SIM"], os.environ["VEXACTL"]


@unittest.skipUnless(Draft202012Validator, "there is no python3-jsonschema")
class Schema(unittest.TestCase):
    def test_holds_for_every_device(self):
        with open(os.environ["SCHEMA"], encoding="utf-8") as file:
            schema = json.load(file)
        Draft202012Validator.check_schema(schema)
        full = set()
        for line in subprocess.run([SIMULATOR, "list"], capture_output=True, check=True, text=True).stdout.splitlines():
            device = line.split()[0]
            refusal = ["--fail", "STA_INFO2=ENOENT"] if device == "access-point" else []
            for more in ["--bus"], ["--keep-proc", *refusal]:
                run = subprocess.run([SIMULATOR, "run", "--device", device, *more, VEXACTL, "report", "--json"],
                                     capture_output=True, text=True)
                if run.returncode == 77:
                    self.skipTest(run.stderr)
                report = json.loads(run.stdout)
                full.update(key for key, value in report.items() if value)
                wrong = [f"{error.json_path}: {error.message[-200:]}"
                         for error in Draft202012Validator(schema).iter_errors(report)]
                self.assertEqual([], wrong[:5], f"{device} {more}")
        self.assertEqual({"hosts", "isolation_logs"}, set(schema["required"]) - full)


if __name__ == "__main__":
    unittest.main()
