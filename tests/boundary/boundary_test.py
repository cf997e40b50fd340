# SPDX-License-Identifier: MIT
"""The library and its header as programs outside see them. What is tested stands in the environment."""
import os
import re
import shutil
import subprocess
import tempfile
import unittest

LIBRARY, INCLUDE, BUILD = os.environ["VEXA_LIBRARY"], os.environ["VEXA_INCLUDE"], os.environ["VEXA_BUILD"]
SOURCE = os.path.dirname(INCLUDE)
CC, CXX = os.environ["CC"], os.environ["CXX"]
DOCUMENTED = {"libc.so.6", "libm.so.6", "libjansson.so.4", "libz.so.1", "libcurl.so.4", "libevent_core-2.1.so.7",
              "libubox.so", "libubus.so", "libblobmsg_json.so", "ld-linux-aarch64.so.1"}


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
    """What `cmake --install` gives, in a folder that is not the one it was configured for."""
    FILES = ("bin/vexactl", "bin/vexa-bus", "bin/vexa-webrtc", "include/libvexa.h", "include/vexa_sim_gtest.h",
             "share/man/man1/vexactl.1", "share/man/man1/vexa-sim.1", "share/man/man3/libvexa.3", "share/fish/vendor_completions.d/vexactl.fish",
             "share/bash-completion/completions/vexactl", "share/zsh/vendor-completions/_vexactl")

    @classmethod
    def setUpClass(cls):
        cls.stage = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.stage)
        run("cmake", "--install", BUILD, "--prefix", "/usr", env={**os.environ, "DESTDIR": cls.stage})
        cls.usr = f"{cls.stage}/usr"
        cls.folder = os.path.dirname(run("find", cls.usr, "-name", "libvexa.so.1").strip())
        cls.environment = {**os.environ, "LD_LIBRARY_PATH": cls.folder, "PKG_CONFIG_PATH": f"{cls.folder}/pkgconfig"}

    def test_is_complete(self):
        self.assertEqual("libvexa.so.1", os.readlink(f"{self.folder}/libvexa.so"))
        self.assertEqual("libvexa.so.1.0.0", os.readlink(f"{self.folder}/libvexa.so.1"))
        self.assertEqual([], [name for name in self.FILES if not os.path.exists(f"{self.usr}/{name}")])
        self.assertIn("access-point ", run(f"{self.usr}/bin/vexa-sim", "list", env=self.environment))
        programs = [f"{self.usr}/bin/vexa-sim", f"{self.usr}/bin/vexactl"]
        self.assertNotIn(BUILD, run("strings", f"{self.folder}/libvexa.so.1", *programs))

    def test_links_statically(self):
        flags = run("pkg-config", "--cflags", "--libs", "libvexa", env=self.environment).split()
        libraries = ["-l:libvexa.a" if flag == "-lvexa" else flag for flag in flags]
        libraries += [f"-l:{name}" for name in needed(LIBRARY)]  # shared, as on the devices
        run(CC, f"{self.usr}/share/doc/vexa/examples/device_facts.c", "-o", f"{self.stage}/static", *libraries)
        self.assertNotIn("libvexa.so.1", needed(f"{self.stage}/static"))

    def test_is_what_the_firmware_recipe_packs(self):
        """The recipe's own text, evaluated with the few definitions of the build system that it needs."""
        place, root = f"{self.stage}/recipe", f"{self.stage}/recipe/root"
        os.makedirs(f"{place}/usr")
        for name, target in ("bin", f"{self.usr}/bin"), ("lib", self.folder), ("share", f"{self.usr}/share"):
            os.symlink(target, f"{place}/usr/{name}")
        with open(f"{place}/rules.mk", "w", encoding="utf-8") as rules:
            rules.write("INSTALL_DIR := mkdir -p\nINSTALL_BIN := install -m 755\nCP := cp -R\n"
                        "qstrip = $(strip $(subst \",,$(1)))\nINCLUDE_DIR := $(TOPDIR)\ndefine BuildPackage\n"
                        "all: $(1)\n$(1):\n$(call Package/$(1)/install,$(ROOT))\nendef\n"
                        "options:\n\t@printf '%s\\n' $(CMAKE_OPTIONS)\n")
        for name in "package.mk", "cmake.mk":
            open(f"{place}/{name}", "w").close()
        make = ["make", "-f", f"{SOURCE}/packaging/openwrt/Makefile", f"TOPDIR={place}", f"PKG_INSTALL_DIR={place}",
                f"ROOT={root}", 'CONFIG_VEXA_TRACE_URL_STAGING="https://trace.example/a"']
        run(*make, "all")
        packed = run("find", root, "-not", "-type", "d", "-printf", "%P\n").split()
        self.assertLessEqual({"usr/lib/libvexa.so.1", "usr/bin/vexactl", "usr/bin/vexa-sim", "usr/bin/vexa-bus",
                              "usr/lib/vexa/libvexa-driver.so"}, set(packed))
        options = run(*make, "options").split()
        self.assertIn("-DVEXA_TRACE_URL_STAGING=https://trace.example/a", options)
        self.assertEqual(3, len(options), "an address that was left empty is no option")

    def build_with_make(self, source):
        run("make", "-C", source, f"CC={CC}", f"CXX={CXX}", env=self.environment)
        return source

    def build_with_cmake(self, source):
        run("cmake", "-S", source, "-B", f"{source}/build", f"-Dvexa_ROOT={self.usr}", f"-DCMAKE_C_COMPILER={CC}",
            f"-DCMAKE_CXX_COMPILER={CXX}")
        run("cmake", "--build", f"{source}/build")
        tests = run("ctest", "--test-dir", f"{source}/build", env=self.environment)
        self.assertIn("100% tests passed, 0 tests failed out of 3", tests)
        return f"{source}/build"

    def test_builds_and_runs_the_examples(self):
        said = {("device_facts",): (1, "mac='02:56:58:00:10:01'\n"), ("networks",): (2, "Harbour Street\n"),
                ("periodic_reporter", "1", "2", "traces"): (2, '"mac":"02:56:58:00:10:01"')}
        for build in self.build_with_make, self.build_with_cmake:
            source = f"{self.stage}/{build.__name__}"
            shutil.copytree(f"{self.usr}/share/doc/vexa/examples", source)
            place = build(source)
            for (name, *arguments), (times, words) in said.items():
                with self.subTest(name, build=build.__name__):
                    cloud = ["--cloud"] if arguments else []
                    done = subprocess.run([f"{self.usr}/bin/vexa-sim", "run", *cloud, f"{place}/{name}", *arguments],
                                          capture_output=True, text=True, env=self.environment, timeout=30)
                    if done.returncode == 77:
                        self.skipTest(done.stderr)
                    self.assertEqual((0, times if cloud else 0), (done.returncode, done.stderr.count("/traces")))
                    self.assertEqual(times, done.stdout.count(words))
            self.assertTrue(os.access(f"{place}/discovery_daemon", os.X_OK))


if __name__ == "__main__":
    unittest.main()
