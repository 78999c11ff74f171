"""Includes run one way: a folder sees those above it in README's table of the code, and a room of
host/ those that its row names before it."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
rows = re.findall(r"^\| `(\w+)/` \| (.*) \|$", (root / "README.md").read_text(), re.M)
rooms = [f"host/{room}" for room in re.findall(r"`(\w+)/`", dict(rows)["host"])]
order = [place for folder, _ in rows for place in (rooms if folder == "host" else [folder])]


def height(path):
    return order.index(re.match(r"host/\w+|\w+", path)[0])


def runs_upward(source, header):
    if source.startswith("ostrelix/"):
        return not re.match(r"platform/|native/(native_records|ostrelix)\.h", header)
    if header.startswith("CLI/"):
        return not source.startswith("host/command/")
    return (root / header).exists() and height(header) > height(source)


includes = [(path.relative_to(root).as_posix(), header)
            for folder, _ in rows for path in (root / folder).rglob("*.*") if path.suffix in (".cpp", ".c", ".h")
            for header in re.findall(r'^#include ["<](.+/.+)[">]', path.read_text(), re.M)]
upward = [f"{source} includes {header}" for source, header in includes if runs_upward(source, header)]
print(len(includes), "includes;", *upward, sep="\n")
sys.exit(bool(upward) or len(includes) < 300)
