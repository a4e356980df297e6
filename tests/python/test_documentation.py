"""The examples of the page about Python print what the page says."""

import re
import subprocess
import sys

import pytest

from conftest import SOURCE

PAGE = (SOURCE / "docs" / "python.md").read_text(encoding="utf-8")
EXAMPLES = re.findall(r"^```python\n(.*?)^```\n\n^```text\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL)


def test_every_example_says_what_it_prints():
    assert len(EXAMPLES) == PAGE.count("```python\n") == 10


@pytest.mark.parametrize("code, printed", EXAMPLES, ids=range(1, 11))
def test_examples_print_what_the_page_says(code, printed):
    done = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True)
    assert done.stderr == ""
    assert done.stdout == printed
