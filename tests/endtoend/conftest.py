"""What every end-to-end test is given."""

import pytest

from gateway import Gateway


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
