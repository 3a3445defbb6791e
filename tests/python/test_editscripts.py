"""The same edits by Python and by C++ give the same bytes."""

import os

import pytest
from editscripts import PACKAGES, differences

EXAMPLES = os.environ["KESTRIX_EXAMPLES"]
PROGRAM = os.environ["KESTRIX_EDITSCRIPTS"]


@pytest.mark.parametrize("name", PACKAGES)
def test_edits_give_the_bytes_that_they_give_in_cpp(name, tmp_path):
    runs, kinds, different = differences(PROGRAM, 100, 1, f"{EXAMPLES}/{name}", tmp_path)

    assert runs == 100
    assert kinds > 90  # the scripts do something
    assert different == []
