#!/usr/bin/env python3
"""Writes a list of the names in the compiler's headers that may be messages: {header, name, value} for C++.

The compiler that builds the test gives them their values.
"""
import re
import subprocess
import sys
from pathlib import Path

PREFIXES = "WM EM LB CB BM SBM STM MN DM LVM TVM HDM TCM PGM BCM CCM TB SB TBM TTM PBM UDM RB HKM DTM MCM IPM".split()
NAME = re.compile(r"^[ \t]*#[ \t]*define[ \t]+((?:%s)_\w+)[ \t]+\S" % "|".join(PREFIXES), re.MULTILINE)

compiler, out = sys.argv[1:]
rule = subprocess.run([compiler, "-M", "-x", "c++", "-"], input="#include <windows.h>\n#include <commctrl.h>\n"
                      "#include <richedit.h>\n", capture_output=True, text=True, check=True).stdout
rows = []
for header in ("winuser.h", "commctrl.h", "richedit.h"):
    path = next(name for name in rule.split() if Path(name).name == header)
    # The headers say what two of them are by a name that none defines.
    for name in dict.fromkeys(NAME.findall(Path(path).read_text(encoding="latin-1"))):
        if not name.endswith("_TRANSLATEACCELERATOR"):
            rows.append(f'#ifdef {name}\n{{"{header}", "{name}", static_cast<unsigned>({name})}},\n#endif\n')
Path(out).write_text("".join(rows), encoding="ascii")
