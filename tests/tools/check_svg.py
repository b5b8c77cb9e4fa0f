"""Renders every example schema as SVG with `sqlantlr diagram` and checks the
picture: no Graphviz warnings, well-formed XML, one node per table and view
(named n0, n1, ... in model order) plus one per stub, each table's title
shown in its node.

Usage: check_svg.py SQLANTLR EXAMPLES_DIR
"""
import glob
import json
import os
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

SVG = "{http://www.w3.org/2000/svg}"


def run(tool, *arguments):
    result = subprocess.run([tool, *arguments], capture_output=True)
    return result.returncode, result.stdout, result.stderr.decode()


def check(tool, files):
    problems = []
    code, out, err = run(tool, "diagram", "--format", "svg", *files)
    if code != 0 or err:
        return [f"exit {code}, standard error: {err!r}"]
    root = ElementTree.fromstring(out)
    nodes = {}
    for group in root.iter(SVG + "g"):
        if group.get("class") == "node":
            title = group.find(SVG + "title").text
            nodes[title] = " ".join(t.text or "" for t in group.iter(SVG + "text"))
    model = json.loads(run(tool, "model", *files)[1])
    boxes = model["tables"] + model["views"]
    expected = {f"n{i}" for i in range(len(boxes))}
    if not expected <= set(nodes):
        problems.append(f"missing boxes {sorted(expected - set(nodes))}")
    stubs = [name for name in nodes if not name.startswith("n")]
    if len(nodes) != len(boxes) + len(stubs) or any(not re.fullmatch(r"s\d+", s) for s in stubs):
        problems.append(f"unexpected nodes {sorted(nodes)}")
    for i, table in enumerate(model["tables"]):
        if table["name"] not in nodes.get(f"n{i}", ""):
            problems.append(f"n{i} does not show {table['name']}")
    return problems


def main():
    tool, examples = sys.argv[1:3]
    inputs = [[path] for path in sorted(glob.glob(os.path.join(examples, "*.sql")))]
    inputs.append(sorted(glob.glob(os.path.join(examples, "split", "*.sql"))))
    failures = 0
    for files in inputs:
        for problem in check(tool, files):
            failures += 1
            print(f"{' '.join(files)}: {problem}")
    print(f"{len(inputs)} diagrams checked, {failures} problem(s)")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
