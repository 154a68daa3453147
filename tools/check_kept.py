#!/usr/bin/env python3
"""Checks that the intended oddities of comps, their tests and docs/KEPT.md agree.

Where the library does something that a reader would want to repair, a comment says so:

    // KEPT: <sentence>. Test: <TestName>.

The test must exist somewhere in tests/ (its own name, or Suite.Name), and docs/KEPT.md lists the same tags.

  check_kept.py              check
  check_kept.py --write      write docs/KEPT.md from the comments, after checking that the tests exist
  check_kept.py --self-test  prove that each kind of mistake is found
"""

import re
import sys
from pathlib import Path

from self_test import self_test_cases

TAG = re.compile(r"KEPT:\s*(?P<sentence>.*?)\.\s+Test:\s*(?P<test>[A-Za-z_][\w.]*?)\.(?=\s|$)")
WORD = re.compile(r"\bKEPT\b(?!\.md)")
COMMENT = re.compile(r"^[ \t]*(?://[/!]?<?|/?\*+)[ \t]?(.*?)(?:\*/)?[ \t]*$")
TEST = re.compile(r"\b(?:TYPED_TEST_P|TYPED_TEST|TEST_F|TEST_P|TEST)\s*\(\s*(\w+)\s*,\s*(\w+)\s*\)")
SOURCES = {".h", ".hpp", ".inl", ".cpp"}

HEADER = """# Kept oddities

What the library does on purpose although it looks like a mistake. Each line stands as a `KEPT:` comment in the file
named, and the test of the last column proves it. Written by `tools/check_kept.py --write`; do not edit by hand.

| File | What is kept | Test |
|---|---|---|
"""


def sources(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in SOURCES)


def comment_runs(text):
    """Comments as (line number, text), where lines of a block that is nothing but comment are joined."""
    run, start = [], 0
    for number, line in enumerate(text.splitlines() + [""], 1):
        whole = COMMENT.match(line)
        if whole and not (run and whole.group(1).startswith("KEPT:")):
            if not run:
                start = number
            run.append(whole.group(1).strip())
            continue
        if run:
            yield start, " ".join(run)
            run = []
        if whole:
            run, start = [whole.group(1).strip()], number
        elif "//" in line:
            yield number, line.split("//", 1)[1].strip()


def find_tags(root):
    """Tags as (file, sentence, test), and malformed ones as lines of text."""
    tags, mistakes = [], []
    for path in sources(root / "comps"):
        name = path.relative_to(root).as_posix()
        text = path.read_text(encoding="utf-8")
        found, named = 0, len(WORD.findall(text))
        for _, comment in comment_runs(text):
            for match in TAG.finditer(comment):
                tags.append((name, re.sub(r"\s+", " ", match["sentence"]) + ".", match["test"]))
                found += 1
        if found != named:
            mistakes.append(f"{name}: {named} times KEPT, but {found} of the form "
                            '"KEPT: <sentence>. Test: <TestName>."')
    return tags, mistakes


def find_tests(root):
    names = set()
    for path in sources(root / "tests"):
        for suite, test in TEST.findall(path.read_text(encoding="utf-8")):
            names.update((test, f"{suite}.{test}"))
    return names


def as_document(tags):
    # A vertical bar would end the column.
    rows = [f"| `{name}` | {sentence.replace('|', chr(92) + '|')} | `{test}` |\n" for name, sentence, test in tags]
    return HEADER + "".join(rows)


def check(root, write=False):
    tags, mistakes = find_tags(root)
    tests = find_tests(root)
    for name, sentence, test in tags:
        if test not in tests:
            mistakes.append(f"{name}: no test is named {test} ({sentence})")
    document = root / "docs" / "KEPT.md"
    if write and not mistakes:
        document.write_text(as_document(tags), encoding="utf-8")
    elif not document.exists() or document.read_text(encoding="utf-8") != as_document(tags):
        mistakes.append("docs/KEPT.md does not list what comps says: run tools/check_kept.py --write")
    return mistakes, len(tags)


def self_test():
    """Draws up small trees, each with one mistake, and expects it to be named."""
    source, test, document = "comps/Kanvo/code/Kanvo_A.cpp", "tests/Kanvo/test_Kanvo_A.cpp", "docs/KEPT.md"
    row = "| `comps/Kanvo/code/Kanvo_A.cpp` | a row of 0.5 pixels gets one, always. | `ARowGetsOne` |\n"
    good = {
        source: "int f();\n// KEPT: a row of 0.5 pixels gets one,\n//       always. Test: ARowGetsOne.\nint f() { return 1; }\n",
        test: "TEST(Kanvo_A, ARowGetsOne)\n{\n}\n",
        document: HEADER + row,
    }
    second = "int g(); // KEPT: two. Test: Two.\n"
    cases = [
        ("three places agree", {}, None),
        ("the test may be named with its suite",
         {source: good[source].replace("ARowGetsOne", "Kanvo_A.ARowGetsOne"),
          document: good[document].replace("ARowGetsOne", "Kanvo_A.ARowGetsOne")}, None),
        ("a tag behind code, and two in a row",
         {source: good[source] + second + "// KEPT: three. Test: Two.\n// KEPT: four. Test: Two.\n",
          test: good[test] + "TEST_F(Kanvo_A, Two)\n",
          document: good[document] + "".join(
              f"| `{source}` | {w}. | `Two` |\n" for w in ("two", "three", "four"))}, None),
        ("the test is missing", {test: "TEST(Kanvo_A, AnotherName)\n{\n}\n"}, "no test is named"),
        ("the test lacks in the suite named",
         {source: good[source].replace("ARowGetsOne", "Kanvo_B.ARowGetsOne")}, "no test is named"),
        ("the document lacks a tag", {document: HEADER}, "does not list"),
        ("the document has one too many", {document: HEADER + row + row}, "does not list"),
        ("the sentence differs", {document: HEADER + row.replace("always", "never")}, "does not list"),
        ("no document at all", {document: None}, "does not list"),
        ("a tag without test", {source: good[source] + "// KEPT: because.\n"}, "of the form"),
        ("a mention of the list is no tag", {source: good[source] + "// See docs/KEPT.md.\n"}, None),
    ]
    return self_test_cases("check_kept", check, good, cases)


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if sys.argv[1:] not in ([], ["--write"]):
        print(__doc__)
        return 2
    mistakes, _ = check(Path(__file__).resolve().parent.parent, write=bool(sys.argv[1:]))
    for mistake in mistakes:
        print(mistake)
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
