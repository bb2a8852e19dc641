"""What every end-to-end test is given."""

import pytest

from gateway import Gateway
from system import UNDER_WINE
from window import Driver, StandIn, WindowProgram


def pytest_configure(config):
    config.addinivalue_line("markers", "posix_only(reason): means nothing to the Windows programs")
    config.addinivalue_line("markers", "window: of the program with a window, which is Windows' own")


def pytest_collection_modifyitems(config, items):
    """Left out rather than skipped: what is started is to run."""
    other = "posix_only" if UNDER_WINE else "window"
    left_out = [item for item in items if item.get_closest_marker(other)]
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


@pytest.fixture(scope="session")
def driver():
    """What looks at the window program's windows and works them."""
    with Driver() as made:
        yield made


@pytest.fixture(scope="session")
def stand_in(driver, tmp_path_factory):
    """QuickBooks' stand-in, registered; no company is open in it."""
    made = StandIn(driver, tmp_path_factory.mktemp("quickbooks"))
    made.register()
    yield made
    made.stop()
    made.unregister()


@pytest.fixture
def program(driver, stand_in, tmp_path):
    """The window program, prepared and not started."""
    made = WindowProgram(tmp_path, driver)
    yield made
    made.kill()
    stand_in.stop()


@pytest.fixture
def shown(program):
    """The window program, listening, its window open; it must end orderly."""
    program.start()
    yield program
    assert program.stop() == 0, program.dialogs()
