"""What every end-to-end test is given."""

import pytest

from gateway import Gateway
from system import UNDER_WINE


def pytest_configure(config):
    config.addinivalue_line("markers", "posix_only(reason): means nothing to the Windows programs")


def pytest_collection_modifyitems(config, items):
    """Left out rather than skipped: what is started is to run."""
    left_out = [item for item in items if UNDER_WINE and item.get_closest_marker("posix_only")]
    if left_out:
        config.hook.pytest_deselected(items=left_out)
        items[:] = [item for item in items if item not in left_out]


@pytest.fixture
def gateway(tmp_path):
    """A gateway that is prepared and not started. Whatever a test did to it, it must not have
    stumbled over its own memory."""
    made = Gateway(tmp_path)
    yield made
    made.kill()
    report = "\n".join(made.errors)
    assert "Sanitizer" not in report and "runtime error:" not in report, report


@pytest.fixture
def running(gateway):
    """A gateway that listens; it must end orderly."""
    gateway.start()
    yield gateway
    assert gateway.stop() == 0, gateway.errors
