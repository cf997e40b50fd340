# SPDX-License-Identifier: MIT
"""The library and its header as programs outside see them. What is tested stands in the environment."""
import os
import re
import subprocess
import tempfile
import unittest

LIBRARY, INCLUDE, BUILD = os.environ["VEXA_LIBRARY"], os.environ["VEXA_INCLUDE"], os.environ["VEXA_BUILD"]
CC, CXX = os.environ["CC"], os.environ["CXX"]
DOCUMENTED = {"libc.so.6", "libm.so.6", "libjansson.so.4", "libz.so.1", "libcurl.so.4", "libevent_core-2.1.so.7",
              "libubox.so", "libubus.so", "libblobmsg_json.so"}


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def needed(library):
    return re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "-dW", library))


class Library(unittest.TestCase):
    def test_exports_the_names_of_the_header_and_no_other(self):
        lines = run("nm", "-D", "--defined-only", "--format=posix", LIBRARY).splitlines()
        exported = [line.split("@@")[0] for line in lines if "@@" in line]
        header = run(CC, "-E", "-P", f"{INCLUDE}/libvexa.h")
        declared = re.findall(r'__attribute__\(\(visibility\("default"\)\)\)([^;]*);', header)
        names = [re.match(r"[^(\[]*?(\w+)\s*(?:[(\[].*)?$", d, re.S).group(1) for d in declared]
        self.assertEqual(sorted(names), sorted(exported))
        self.assertEqual(len(names), len(set(names)), "a name is declared twice")

    def test_needs_only_what_is_documented(self):
        dynamic = run("readelf", "-dW", LIBRARY)
        self.assertLessEqual(set(needed(LIBRARY)), DOCUMENTED)
        self.assertRegex(dynamic, r"\(SONAME\).*\[libvexa\.so\.1\]")
        self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)")

    def test_is_hardened(self):
        dynamic, segments = run("readelf", "-dW", LIBRARY), run("readelf", "-lW", LIBRARY)
        self.assertIn("BIND_NOW", dynamic)
        self.assertNotIn("TEXTREL", dynamic)
        self.assertIn("GNU_RELRO", segments)
        self.assertRegex(segments, r"GNU_STACK.* RW +0x")
        self.assertIn("__stack_chk_fail", run("nm", "-D", "--undefined-only", LIBRARY))


class Header(unittest.TestCase):
    def test_compiles_alone_and_with_jansson(self):
        for compiler, language, standard in (CC, "c", "c11"), (CXX, "c++", "c++17"):
            for text in ("#include <libvexa.h>", "#include <libvexa.h>\n#include <jansson.h>",
                         "#include <jansson.h>\n#include <libvexa.h>"):
                with self.subTest(text, standard=standard):
                    done = subprocess.run([compiler, "-x", language, f"-std={standard}", "-Wall",
                                           "-Wextra", "-pedantic", "-Werror", "-fsyntax-only", f"-I{INCLUDE}", "-"],
                                          input=text + "\n", text=True, capture_output=True)
                    self.assertEqual("", done.stderr)


class Installation(unittest.TestCase):
    PROGRAM = '#include <libvexa.h>\nint main(void) { return base64_encode_len(3) == 5 ? 0 : 1; }\n'

    def test_is_complete(self):
        with tempfile.TemporaryDirectory() as stage:
            run("cmake", "--install", BUILD, "--prefix", "/usr", env={**os.environ, "DESTDIR": stage})
            usr = f"{stage}/usr"
            folder = os.path.dirname(run("find", usr, "-name", "libvexa.so.1").strip())
            self.assertEqual("libvexa.so.1", os.readlink(f"{folder}/libvexa.so"))
            self.assertEqual("libvexa.so.1.0.0", os.readlink(f"{folder}/libvexa.so.1"))
            others = [f"-l:{name}" for name in needed(LIBRARY)]
            for name, libraries in ("shared", ["-lvexa"]), ("static", ["-l:libvexa.a", *others]):
                with self.subTest(name):
                    run(CC, "-x", "c", "-", f"-I{usr}/include", f"-L{folder}", "-o", f"{stage}/{name}", *libraries,
                        input=self.PROGRAM)
                    run(f"{stage}/{name}", env={"LD_LIBRARY_PATH": folder})
            self.assertIn("access-point ", run(f"{usr}/bin/vexa-sim", "list"))
            self.assertNotIn(BUILD, run("strings", f"{folder}/libvexa.so.1", f"{usr}/bin/vexa-sim"))


if __name__ == "__main__":
    unittest.main()
