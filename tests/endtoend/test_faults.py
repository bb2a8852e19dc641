"""One call of one system operation fails; tools/faults tries every call."""

import concurrent.futures

import pytest

import faults
from system import UNDER_WINE

POSITIONS = 1 if UNDER_WINE else 3
AT_THE_SAME_TIME = 1 if UNDER_WINE else 4  # the Windows program runs once on a machine
# Under Wine, where each costs seconds: one of each facility.
CHOSEN = (
    ["CreateFileW", "WriteFile", "MoveFileExW", "DeleteFileW", "FindFirstFileW", "accept", "sendto",
     "recvfrom", "WSAAsyncSelect", "FindNextChangeNotification", "memory"]
    if UNDER_WINE else list(faults.OPERATIONS)
)


@pytest.fixture(scope="module")
def calls(tmp_path_factory):
    return faults.counts_of_calls(tmp_path_factory.mktemp("calls") / "gateway")


@pytest.mark.parametrize("operation", CHOSEN)
def test_nothing_is_lost_when_it_fails_once(operation, calls, tmp_path):
    assert calls[operation] > 0
    errors = faults.OPERATIONS[operation]
    places = faults.positions(calls[operation], POSITIONS)
    attempts = [(tmp_path / str(call), operation, call, errors[i % len(errors)])
                for i, call in enumerate(places)]

    with concurrent.futures.ThreadPoolExecutor(AT_THE_SAME_TIME) as pool:
        wrong = [fault for fault in pool.map(lambda one: faults.attempt(*one), attempts) if fault]

    assert not wrong, "\n\n".join(wrong)
