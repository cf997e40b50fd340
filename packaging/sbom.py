#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes what a built library consists of and needs, as CycloneDX: sbom.py BUILD > sbom.cdx.json

The libraries are those that the built one names; their versions are those that it was compiled with."""
import hashlib
import json
import re
import subprocess
import sys
import uuid

# what a needed library is called elsewhere: the package that pkg-config knows, and its licence
PACKAGES = {"libjansson": ("jansson", "MIT"), "libcurl": ("libcurl", "curl"),
            "libevent_core-2.1": ("libevent_core", "BSD-3-Clause"), "libz": ("zlib", "Zlib"),
            "libubox": ("libubox", "ISC"), "libubus": ("libubus", "LGPL-2.1-only"),
            "libblobmsg_json": ("libblobmsg-json", "ISC")}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def component(name, version, licence, **more):
    purl = f"pkg:generic/{name}@{version}"
    return {"type": "library", "bom-ref": purl, "name": name, "version": version,
            "licenses": [{"license": {"id": licence}}], "purl": purl, **more}


def uthash(build):
    compiler = re.search(r"^CMAKE_C_COMPILER:\w+=(.*)$", open(f"{build}/CMakeCache.txt").read(), re.M).group(1)
    text = subprocess.run([compiler, "-E", "-dM", "-include", "uthash.h", "-"], input="", check=True,
                          capture_output=True, text=True).stdout
    version = re.search(r"define UTHASH_VERSION (\S+)", text).group(1)
    return component("uthash", version, "BSD-1-Clause", description="header-only, compiled in")


def main(build):
    version = re.search(r"^CMAKE_PROJECT_VERSION:\w+=(.*)$", open(f"{build}/CMakeCache.txt").read(), re.M).group(1)
    library = f"{build}/libvexa.so.{version}"
    digest = hashlib.sha256(open(library, "rb").read()).hexdigest()
    needed = re.findall(r"\(NEEDED\).*\[(.*?)\.so", run("readelf", "-dW", library))
    parts = [component(name, run("pkg-config", "--modversion", name).strip(), licence)
             for name, licence in (PACKAGES[soname] for soname in sorted(needed) if soname in PACKAGES)]
    parts.append(uthash(build))
    unknown = [soname for soname in needed if soname not in PACKAGES and soname not in ("libc", "libm")]
    if unknown:
        sys.exit(f"sbom.py: of {', '.join(unknown)} neither package nor licence is known here")
    itself = component("libvexa", version, "MIT", cpe=f"cpe:2.3:a:vexa:libvexa:{version}:*:*:*:*:*:*:*",
                       hashes=[{"alg": "SHA-256", "content": digest}])
    document = {"$schema": "http://cyclonedx.org/schema/bom-1.5.schema.json", "bomFormat": "CycloneDX",
                "specVersion": "1.5", "serialNumber": f"urn:uuid:{uuid.uuid5(uuid.NAMESPACE_URL, digest)}", "version": 1,
                "metadata": {"component": itself}, "components": parts,
                "dependencies": [{"ref": itself["bom-ref"], "dependsOn": [part["bom-ref"] for part in parts]}]}
    json.dump(document, sys.stdout, indent=2)
    print()


main(*sys.argv[1:])
