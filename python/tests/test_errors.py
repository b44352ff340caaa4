import pickle

import pytest

import vek


@pytest.fixture
def language():
    """Runs a test in English and puts the language in force back afterwards."""
    before = vek.language()
    vek.set_language("en")
    yield
    vek.set_language(before)


def test_a_failure_raises_vek_error_with_code_name_and_message(tmp_path, language):
    path = tmp_path / "camera.lens"
    with pytest.raises(vek.Error) as failure:
        vek.read_lens(path)
    error = failure.value
    assert isinstance(error, Exception)
    assert (error.code, error.name, error.message) == (79, "VEK_FILE_NOT_FOUND", f"File Not Found: {path}")
    assert str(error) == f"VEK_FILE_NOT_FOUND (79): File Not Found: {path}"
    copy = pickle.loads(pickle.dumps(error))
    assert (type(copy), copy.code, copy.name, copy.message, str(copy)) == (
        vek.Error, 79, "VEK_FILE_NOT_FOUND", error.message, str(error))


def test_messages_follow_the_language_in_force(tmp_path, language):
    vek.set_language("de")
    with pytest.raises(vek.Error) as failure:
        vek.read_warp_mesh(tmp_path / "x.warp")
    assert failure.value.message == f"Datei nicht gefunden: {tmp_path / 'x.warp'}"
    assert vek.error_message(79) == "Datei nicht gefunden"
    assert vek.error_message(34) == "Ungültiger Parameter."
    # Another language for one message leaves the one in force as it was.
    assert vek.error_message(79, "fr") == "Fichier introuvable"
    assert vek.error_message(79, language="ja") == "ファイルが見つかりません"
    assert vek.error_message(40, "en") == "Failed to Parse Input File Correctly."
    assert vek.language() == "de"
    with pytest.raises(vek.Error) as failure:
        vek.set_language("es")
    assert failure.value.code == 34 and vek.language() == "de"


def test_numbers_that_are_no_status_codes_are_refused(language):
    assert vek.error_name(79) == "VEK_FILE_NOT_FOUND" and vek.error_name(0) == "VEK_SUCCESS"
    assert vek.error_message(0) == "All is Good"
    # 2 and 9 have no message; 32847 is 79 with the custom-message flag, which a caller never holds.
    for number in (-1, 2, 9, 32847, 1 << 20):
        for call in (vek.error_message, vek.error_name):
            with pytest.raises(vek.Error) as failure:
                call(number)
            assert failure.value.code == 34, (call, number)
    with pytest.raises(vek.Error):
        vek.error_message(79, "xx")
