import os
import subprocess

import numpy as np
import pytest

import vek


@pytest.fixture
def options():
    """The store, with the option files as they were put back afterwards."""
    store = vek.Options()
    directory = vek.Options.directory
    names = ("KOROptions.txt", "KOROptionDefaults.txt", "KOROptionInfo.txt")
    before = {}
    for name in names:
        path = os.path.join(directory, name)
        before[name] = open(path, "rb").read() if os.path.exists(path) else None
    yield store
    for name, content in before.items():
        with open(os.path.join(directory, name), "wb") as file:
            file.write(content or b"")


def refused(options, key, value):
    with pytest.raises(vek.Error) as failure:
        options[key] = value
    return failure.value.code == 34


def test_a_value_set_keeps_the_option_type(options, tool):
    options.set("PyGain", 0.5, type="Float")
    options["PyGain"] = 0.75
    assert (options["PyGain"], options.type("PyGain")) == (0.75, "Float")
    run = subprocess.run([tool, "option", "get", "PyGain"], capture_output=True, text=True, check=True)
    assert run.stdout == "0.75\n"
    options["PyGain"] = 3
    assert options["PyGain"] == 3.0 and type(options["PyGain"]) is float
    options["PyGain"] = 0.1
    assert options["PyGain"] == 0.1  # the float 0.1 names, not its exact binary value
    for bad in ("abc", True, [1.0], float("inf"), 1e39):
        assert refused(options, "PyGain", bad), bad
    assert options["PyGain"] == 0.1

    options.set("PyCount", 3, type="Int")
    options["PyCount"] = np.int64(7)
    assert options["PyCount"] == 7 and type(options["PyCount"]) is int
    for bad in (7.5, 7.0, 2 ** 31, True, "7"):
        assert refused(options, "PyCount", bad), bad

    options.set("PyScale", 0.123456789, type="Double")
    assert options["PyScale"] == 0.123457  # the store keeps six significant digits
    options.set("PyFlag", True, type="Bool")
    options["PyFlag"] = np.bool_(False)
    assert options["PyFlag"] is False
    assert refused(options, "PyFlag", 0)
    options.set("PyName", "hello world", type="String")
    assert options["PyName"] == "hello world"
    assert refused(options, "PyName", "two\nlines")


def test_arrays_are_lists_of_their_element_type(options, tool):
    subprocess.run([tool, "option", "set", "PyWeights", "FloatArray", "1 2.5 3"], check=True)
    assert options["PyWeights"] == [1.0, 2.5, 3.0]
    options["PyWeights"] = np.array([0.1, 2])
    assert options["PyWeights"] == [0.1, 2.0]
    for bad in ([], "1 2", [1, "x"], [[1, 2]]):
        assert refused(options, "PyWeights", bad), bad
    options.set("PyIds", [1, 2, 3], type="IntArray")
    options.set("PyMask", (True, False), type="BoolArray")
    options.set("PyNames", ["left", "right"], type="StringArray")
    assert (options["PyIds"], options["PyMask"], options["PyNames"]) == ([1, 2, 3], [True, False], ["left", "right"])
    options["PyNames"] = []
    assert options["PyNames"] == []
    for bad in (["a b"], [""], "ab"):
        assert refused(options, "PyNames", bad), bad


def test_a_new_option_takes_its_type_from_the_value(options):
    cases = {"PyNewInt": (5, "Int"), "PyNewDouble": (0.25, "Double"), "PyNewBool": (True, "Bool"),
             "PyNewString": ("x", "String"), "PyNewInts": ([1, 2], "IntArray"),
             "PyNewFloats": ([1, 2.5], "FloatArray"), "PyNewNames": (["a"], "StringArray")}
    for key, (value, type_name) in cases.items():
        options[key] = value
        assert (options[key], options.type(key)) == (value, type_name), key
    for bad in ([], None, {"a": 1}, [1, "a"]):
        assert refused(options, "PyNewOther", bad), bad
    assert "PyNewOther" not in options
    with pytest.raises(vek.Error):
        options.set("PyNewOther", 1, type="Integer")


def test_the_store_behaves_like_a_mapping(options):
    options["PyMapped"] = 1
    with open(os.path.join(vek.Options.directory, "KOROptionDefaults.txt"), "a") as defaults:
        defaults.write("PyFactory = 5\n")
    with open(os.path.join(vek.Options.directory, "KOROptionInfo.txt"), "a") as info:
        info.write("PyFactory\tInt\t2\nPyDescribed\tDouble\t2\t1.5\n")
    assert [options.source(key) for key in ("PyMapped", "PyFactory", "PyDescribed")] == ["options", "defaults", "info"]
    assert (options["PyFactory"], options["PyDescribed"]) == (5, 1.5)
    keys = options.keys()
    assert {"PyMapped", "PyFactory", "PyDescribed"} <= set(keys) and len(options) == len(keys) == len(list(options))
    assert dict(options.items())["PyFactory"] == 5 and options.values() == [value for _, value in options.items()]
    assert "PyMapped" in options and "PyMissing" not in options and 5 not in options
    assert options.get("PyMissing") is None and options.get("PyMissing", 7) == 7 and options.get("PyMapped") == 1
    with pytest.raises(KeyError):
        options["PyMissing"]
    with pytest.raises(KeyError):
        options.type("PyMissing")
    del options["PyMapped"]
    assert "PyMapped" not in options
    with pytest.raises(KeyError):
        del options["PyMapped"]
