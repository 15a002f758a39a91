"""The plug-in file as a loader sees it: what it needs, what it exports, and from which C library on it loads."""
import re
import subprocess
import sys

plugin, version = sys.argv[1:3]
NEEDED = {"libFMWrapper.so", "libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libc.so.6"}
LOADER = re.compile(r"ld-linux.*\.so\.\d+")
NEWEST_GLIBC = (2, 35)


def readelf(*options):
    return subprocess.run(["readelf", "--wide", *options, plugin], check=True, capture_output=True, text=True,
                          env={"LC_ALL": "C", "PATH": "/usr/bin:/bin"}).stdout


def main():
    faults = []
    dynamic = readelf("--dynamic")
    needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
    for library in sorted(needed - NEEDED):
        if not LOADER.fullmatch(library):
            faults.append(f"needs {library}")
    if "libFMWrapper.so" not in needed:
        faults.append("does not need the host's library by its plain name")
    if re.findall(r"\(SONAME\).*\[(.*)\]", dynamic) != [version]:
        faults.append(f"its soname is not {version}")
    for path in re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", dynamic):
        faults.append(f"looks for libraries in {path}")

    exported = []
    for line in readelf("--dyn-syms").splitlines():
        fields = line.split()
        if len(fields) < 8 or not fields[0].rstrip(":").isdigit():
            continue
        binding, section, name = fields[4], fields[6], fields[7]
        if name == "FM_ExprEnv_SessionID" and binding != "WEAK":
            faults.append("does not load into a host that knows no sessions")
        if section != "UND":
            exported.append(name)
        required = re.search(r"@GLIBC_([\d.]+)", name)
        if required and tuple(map(int, required[1].split("."))) > NEWEST_GLIBC:
            faults.append(f"{name} is newer than glibc {'.'.join(map(str, NEWEST_GLIBC))}")
    if exported != ["FMExternCallProc"]:
        faults.append(f"exports {exported}")

    for fault in faults:
        print(f"{plugin}: {fault}")
    return 1 if faults else 0


sys.exit(main())
