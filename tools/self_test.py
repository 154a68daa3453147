"""How the checks of this folder prove that they find mistakes: each case changes a small good tree and names a mistake."""

import tempfile
from pathlib import Path


def self_test_cases(name, check, good, cases):
    """Exit status. check(root) returns (mistakes, anything); good: {file: text}; cases: (title, {file: text, or None for
    a file that is missing}, a part of the mistake expected, or None for no mistake)."""
    failures = 0
    for title, changes, expected in cases:
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            for file, text in {**good, **changes}.items():
                if text is not None:
                    (root / file).parent.mkdir(parents=True, exist_ok=True)
                    (root / file).write_text(text, encoding="utf-8")
            mistakes, _ = check(root)
        right = not mistakes if expected is None else any(expected in m for m in mistakes)
        if not right:
            failures += 1
            print(f"self-test: {title}: expected {expected or 'no mistake'}, got {mistakes}")
    print(f"{name} self-test: {len(cases) - failures} of {len(cases)} cases right")
    return 1 if failures else 0
